#!/usr/bin/env python3
"""Changes the sources one small fault at a time and runs the tests that belong: a mutant that no test notices survives.

Which mutants are tried is decided by their texts and not by chance: the same sources give the same mutants, in the same order.
What became of each is appended to build/mutate/verdicts.jsonl, and is not tried again. A survivor that behaves as the original,
or that no test can notice, stands with its reason in a table of docs/testing.md, in rows
"| `FILE` | `LINE AS CHANGED` | reason |", or "| `FILE` | without `CALL` | reason |"; it is not counted, nor is one that the
optimising compiler makes the same code of.
"""

import argparse
import hashlib
import json
import os
import queue
import re
import subprocess
import sys
import threading

import programs
from mutants import mutants_of
from tree import BUILD, FOLDER, ROOT, Tree
from worth import Worth, noticed_by

SOURCES = ['src/**/*.cpp', 'tool/**/*.cpp', 'simulation/target/*.cpp']
LIMIT = 97.0  # percent of the mutants that are counted
LOG = FOLDER.parent / 'verdicts.jsonl'
NOTICED = FOLDER.parent / 'noticed.jsonl'  # in its place with --all-tests
LONGEST = 900  # seconds that one mutant may take
NOT_TRIED = ('uncompiled', 'lost')  # lost: the sandbox could not be used


def chosen(patterns):
    """All mutants of the files in the order in which they are tried."""
    files = sorted({str(path.relative_to(ROOT)) for pattern in patterns for path in ROOT.glob(pattern)})
    mutants = [mutant for file in files for mutant in mutants_of(file, (ROOT / file).read_text())]
    return sorted(mutants, key=lambda mutant: hashlib.sha1(mutant.key().encode()).hexdigest())


def reasons():
    """The survivors that docs/testing.md lists: (file, change)."""
    row = re.compile(r'^\| `((?:src|tool|simulation)/[^`]+\.cpp)` \| ((?:without )?`.+?`) \| (.+) \|$')
    found = (row.match(line) for line in (ROOT / 'docs/testing.md').read_text().split('\n'))
    return {(match.group(1), match.group(2).replace('\\|', '|')) for match in found if match}


def change(entry):
    """A mutant as it stands in the table."""
    return f"without `{entry['before']}`" if entry['kind'] == 'call' else f"`{entry['after']}`"


def entry_of(mutant):
    """A mutant as it stands in the log."""
    return {'key': mutant.key(), 'file': mutant.file, 'line': mutant.line + 1, 'kind': mutant.kind,
            'before': mutant.before.strip(), 'after': mutant.after.strip()}


def logged(log):
    """What became of each mutant, by its key; the last time counts."""
    lines = log.read_text().split('\n') if log.is_file() else []
    return {entry['key']: entry for entry in (json.loads(line) for line in lines if line)}


def sandbox(job, worker=0):
    """Carries out a job of attempt.py."""
    scratch = FOLDER.parent / f'scratch{worker}'
    scratch.mkdir(exist_ok=True)
    root = os.geteuid() == 0
    command = ['unshare', '--mount', '--pid', '--fork', '--kill-child', '--mount-proc',
               *([] if root else ['--user', '--map-root-user']), sys.executable, str(FOLDER / 'tests/mutation/attempt.py')]
    try:
        done = subprocess.run(command, input=json.dumps({'tree': str(FOLDER), 'build': str(BUILD), 'scratch': str(scratch),
                                                         **job}), check=True, capture_output=True, text=True, timeout=LONGEST,
                              env={**os.environ, 'TRELLAN_ROOT': str(int(root)), 'TMPDIR': '/tmp',
                                   'PYTHONDONTWRITEBYTECODE': '1'})
    except subprocess.TimeoutExpired:
        return {'verdict': 'killed', 'by': 'time', 'tests': [], 'broken': True, 'seconds': LONGEST}
    except subprocess.CalledProcessError as fault:
        print(fault.stderr, file=sys.stderr)
        return {'verdict': 'lost', 'seconds': 0}
    return json.loads(done.stdout)


def job_of(mutant, tree, known, asked):
    wanted = [f'bin/test_{name}' for name in programs.that_belong(mutant.file)] + ['bin/trellan-update']
    links = tree.linked_from(mutant.file, wanted)
    steps = known.all_steps(mutant.file) if asked.all_tests else known.steps(mutant.file, asked.quick)
    linked = set()
    for step in steps:
        made = os.path.relpath(step['program'], BUILD)
        step['links'] = [tree.link_command(made)] if made in links and made not in linked else []
        linked.add(made)
    return {'file': mutant.file, 'line': mutant.line, 'after': mutant.after, 'object': tree.object(mutant.file),
            'compile': tree.unoptimised(mutant.file), 'optimise': tree.optimised(mutant.file),
            'links': [tree.link_command(made) for made in links if not made.startswith('bin/test_')], 'steps': steps,
            'everyone': asked.all_tests}


class Run:
    """The workers and what they have found out."""

    def __init__(self, asked, mutants, log):
        self.found, self.log = logged(log), log
        if asked.again:
            self.found = {key: entry for key, entry in self.found.items() if entry['verdict'] != 'survived'}
        self.asked = asked
        self.waiting = queue.Queue()
        for mutant in mutants:
            self.waiting.put(mutant)
        self.tried = 0
        self.lock = threading.Lock()
        self.tree = Tree(programs.ALL)
        self.programs = programs.Programs(sandbox)
        for name in programs.ALL:
            self.programs.learn(name)

    def next(self):
        with self.lock:
            while self.tried < self.asked.count and not self.waiting.empty():
                mutant = self.waiting.get()
                entry = self.found.get(mutant.key())
                if entry is None:
                    self.tried += 1  # taken back if it does not compile
                    return mutant
                self.tried += entry['verdict'] not in NOT_TRIED
        return None

    def work(self, worker):
        while mutant := self.next():
            with self.lock:
                job = job_of(mutant, self.tree, self.programs, self.asked)
            answer = sandbox(job, worker)
            with self.lock:
                self.tried -= answer['verdict'] in NOT_TRIED
                self.note(mutant, answer)

    def note(self, mutant, answer):
        entry = {**entry_of(mutant), **answer}
        self.found[mutant.key()] = entry
        with self.log.open('a', encoding='utf-8') as file:
            file.write(json.dumps(entry) + '\n')
        print(f"{self.tried:5} {answer['verdict']:10} {answer.get('by', ''):10} {answer['seconds']:5.0f} s  "
              f"{mutant.file}:{mutant.line + 1} [{mutant.kind}] {mutant.after.strip()}", flush=True)

    def carry_out(self, jobs):
        threads = [threading.Thread(target=self.work, args=(number,)) for number in range(jobs)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()


def tell(mutants, count, found):
    """What became of `mutants`, of which `count` were to be tried."""
    listed = reasons()
    tried = [found[mutant.key()] for mutant in mutants if mutant.key() in found]
    tried = [entry for entry in tried if entry['verdict'] not in NOT_TRIED][:count]
    survived = [entry for entry in tried if entry['verdict'] == 'survived']
    excused = [entry for entry in survived if (entry['file'], change(entry)) in listed]
    same = sum(entry['verdict'] == 'equivalent' for entry in tried)
    counted = len(tried) - len(excused) - same
    killed = sum(entry['verdict'] == 'killed' for entry in tried)
    for entry in survived:
        if entry not in excused:
            print(f"survived: {entry['file']}:{entry['line']} [{entry['kind']}]\n  - {entry['before']}\n  + {entry['after']}")
    share = 100.0 * killed / counted if counted else 0.0
    print(f'{len(tried)} mutants; {same} give the same code, {len(excused)} are listed with their reason; '
          f'{killed} of the other {counted} killed: {share:.1f} %')
    # Of few files, there may be fewer than that.
    missing = min(count, len(mutants) - sum(found.get(mutant.key(), {}).get('verdict') == 'uncompiled' for mutant in mutants))
    missing -= len(tried)
    if missing > 0:
        print(f'{missing} more are still to be tried')
    return 0 if share >= LIMIT and missing <= 0 else 1


def tell_tests(mutants, found):
    """What each quick test of the programs nearest to the files is worth, in build/mutate/tests.txt."""
    entries = [found[mutant.key()] for mutant in mutants if mutant.key() in found]
    ours = {programs.that_belong(entry['file'])[0] for entry in entries}
    tests = {test for test in programs.Programs(sandbox).quick_tests() if test[0] in ours}
    value = Worth(tests, [noticed_by(entry) for entry in entries if entry['verdict'] == 'killed'])
    with (FOLDER.parent / 'tests.txt').open('w', encoding='utf-8') as file:
        file.writelines(f'{line}\n' for line in value.lines())
    print(value.summary() + ': build/mutate/tests.txt')
    return 0


def main():
    options = argparse.ArgumentParser(prog='./dev mutate', description=__doc__.split('\n', maxsplit=1)[0])
    options.add_argument('--count', type=int, default=500, help='how many mutants that compile are tried (500)')
    options.add_argument('--jobs', type=int, default=len(os.sched_getaffinity(0)), help='how many are tried side by side')
    options.add_argument('--again', action='store_true', help='try those again that survived')
    options.add_argument('--quick', action='store_true', help='without the slow tests')
    options.add_argument('--list', action='store_true', help='print the mutants and try none')
    options.add_argument('--tell', action='store_true', help='say what became of those that were tried, and try none')
    options.add_argument('files', nargs='*', default=SOURCES, help='patterns of files instead of all')
    options.add_argument('--all-tests', action='store_true', help='run all quick tests of the nearest program for each mutant, '
                         'and say which of them notice nothing that others do not; its verdicts are kept apart')
    asked = options.parse_args()

    log = NOTICED if asked.all_tests else LOG
    mutants = chosen(asked.files)
    if asked.list:
        for mutant in mutants[:asked.count]:
            print(f'{mutant.file}:{mutant.line + 1} [{mutant.kind}] {mutant.after.strip()}')
        return 0
    if not asked.tell:
        FOLDER.mkdir(parents=True, exist_ok=True)
        Run(asked, mutants, log).carry_out(asked.jobs)
    if asked.all_tests:
        return tell_tests(mutants, logged(log))
    return tell(mutants, asked.count, logged(log))


if __name__ == '__main__':
    sys.exit(main())
