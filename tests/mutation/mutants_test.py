"""Which faults are put into a line."""

import unittest

from mutants import changes_of_line, mutants_of


class Changes(unittest.TestCase):
    def of(self, line, *expected):
        self.assertEqual([f'{kind}: {after.strip()}' for kind, after in changes_of_line(line)], list(expected))

    def test_a_condition_has_its_operator_and_its_constant_changed_and_is_negated(self):
        self.of('    if (size > 7) {', 'operator: if (size >= 7) {', 'constant: if (size > (7 + 1)) {',
                'condition: if (!(size > 7)) {')

    def test_a_negation_goes_away(self):
        self.of('    return !isOpen;', 'condition: return isOpen;')

    def test_zero_becomes_one_and_true_becomes_false(self):
        self.of('    int left = 0;', 'constant: int left = 1;')
        self.of('    return true;', 'constant: return false;')

    def test_a_call_whose_result_nobody_uses_goes_away(self):
        self.of('    file.close();', 'call: (void)0;')
        self.of('    return file.close();')

    def test_a_message_is_another(self):
        self.of('    print("no such file");', 'call: (void)0;', 'message: print("~no such file");')
        self.of('    set("kind");', 'call: (void)0;')

    def test_texts_are_joined_and_not_subtracted(self):
        self.of('    text = name + ".tmp";')

    def test_what_stands_in_texts_and_comments_is_no_operator(self):
        self.of("    put('!', \"a==1 == 2\");", 'call: (void)0;')
        self.of('    return value;  // 2 > 1')

    def test_what_says_nothing_when_it_runs_is_left_alone(self):
        for line in ('', '#include <array>', '// if (a == b) {', 'using Names = std::array<int, 3>;', 'template <int N = 3>',
                     'static_assert(sizeof(long) == 8);', 'enum class Kind : int {'):
            self.of(line)

    def test_the_same_change_of_equal_lines_has_a_number(self):
        self.assertEqual([(mutant.line, mutant.occurrence) for mutant in mutants_of('a.cpp', 'f();\n  f();\n  f();\n')],
                         [(1, 0), (2, 1)])


if __name__ == '__main__':
    unittest.main()
