"""The small faults that ./dev mutate puts into a source file: one operator, constant, condition, call or message each."""

import re
from dataclasses import dataclass

OPERATORS = [(' == ', ' != '), (' != ', ' == '), (' < ', ' <= '), (' <= ', ' < '), (' > ', ' >= '), (' >= ', ' > '),
             (' && ', ' || '), (' || ', ' && '), (' + ', ' - '), (' - ', ' + '), (' += ', ' -= '), ('++', '--'),
             (' | ', ' & '), (' & ', ' | ')]
CONSTANTS = re.compile(r"(?<![\w.'])(\d+|0x[0-9a-fA-F]+)(?=[uU]?\b)(?![\w.'])|\b(true|false)\b")
CONDITION = re.compile(r'\b(if|while) \((?!constexpr)(?!const )(?!auto )(.+)\) \{$')
NEGATION = re.compile(r'(?<![\w!])!(?=[\w(*])')
# A statement that is a call and nothing else: no declaration (a blank before its parenthesis), no return.
CALL = re.compile(r'^\s+(?!return\b|throw\b|delete\b|if\b|for\b|while\b|switch\b|static_assert\b|explicit\b)'
                  r'[A-Za-z_~*(][\w:.>\[\]()-]*\(.*\);$')
LITERAL = re.compile(r'"((?:[^"\\]|\\.)*)"')
# Lines that state no behaviour of the program when it runs.
PASSED_OVER = re.compile(r'^\s*(//|#|\*|using |namespace |template|static_assert|\}|case |class |struct |enum )|R"')


@dataclass(frozen=True)
class Mutant:
    """One changed line of one file."""
    file: str
    line: int  # from 0
    kind: str
    before: str
    after: str
    occurrence: int  # among the same changes of equal lines of the file

    def key(self):
        """What names it when lines have moved."""
        return f'{self.file}|{self.kind}|{self.before.strip()}|{self.after.strip()}|{self.occurrence}'


def without_texts(line):
    """The line with its literals and its comment blanked, of the same length."""
    blanked = LITERAL.sub(lambda found: '"' + ' ' * len(found.group(1)) + '"', line)
    blanked = re.sub(r"'(?:[^'\\]|\\.)'", lambda found: "'" + ' ' * (len(found.group(0)) - 2) + "'", blanked)
    comment = blanked.find('//')
    return blanked if comment < 0 else blanked[:comment] + ' ' * (len(line) - comment)


def changed_constant(text):
    if text in ('true', 'false'):
        return 'false' if text == 'true' else 'true'
    return '1' if text == '0' else f'({text} + 1)'


def changes_of_line(line):
    """(kind, the line after) of every change of one line."""
    if not line.strip() or PASSED_OVER.search(line):
        return
    code = without_texts(line)
    for before, after in OPERATORS:
        for found in re.finditer(re.escape(before), code):
            left, right = code[:found.start()], code[found.end():]
            if before == ' + ' and (not right or left.endswith('"') or right.startswith(('"', 'std::to_string'))):
                continue  # texts are joined and cannot be subtracted
            yield 'operator', line[:found.start()] + after + line[found.end():]
    for found in CONSTANTS.finditer(code):
        if not re.match(r'\s*enum|.*<\s*$', code[:found.start()]):
            yield 'constant', line[:found.start()] + changed_constant(found.group(0)) + line[found.end():]
    if found := CONDITION.search(code):
        yield 'condition', f'{line[:found.start(2)]}!({line[found.start(2):found.end(2)]}){line[found.end(2):]}'
    else:
        for found in NEGATION.finditer(code):
            yield 'condition', line[:found.start()] + line[found.end():]
    if CALL.search(code) and code.count('(') == code.count(')'):
        yield 'call', line[:len(line) - len(line.lstrip())] + '(void)0;'
    for found in LITERAL.finditer(line):
        if ' ' in found.group(1).strip() and re.search('[a-z]{2}', found.group(1)):
            yield 'message', line[:found.start(1)] + '~' + line[found.start(1):]


def mutants_of(file, text):
    """Every mutant of a file's text, in the order of its lines."""
    seen = {}
    for number, line in enumerate(text.split('\n')):
        for kind, after in changes_of_line(line):
            same = (kind, line.strip(), after.strip())
            seen[same] = seen.get(same, -1) + 1
            yield Mutant(file, number, kind, line, after, seen[same])
