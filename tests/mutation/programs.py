"""The test programs: which belong to a source file, and which of their tests are run in which order."""

import json

from tree import BUILD, FOLDER

SOURCE_FOLDERS = ['operation', 'archive', 'inventory', 'assignment', 'inspection', 'updater']
ALL = ['base', *SOURCE_FOLDERS, 'simulation', 'tool', 'host', 'scenarios']
BROWSER = 'CoverageInBrowser.*'  # not run: a browser needs more address space than a mutant gets
SLOW = 250  # milliseconds from which a test is run late


def that_belong(file):
    """The test programs of a source file, the nearest one first."""
    top, folder = file.split('/')[:2]
    if top == 'tool':
        return ['tool', 'scenarios']
    if top == 'simulation':
        return ['simulation', 'operation', 'scenarios', 'host', 'tool']
    near = [folder] if folder != 'base' else ['base', 'operation']
    return near + [name for name in SOURCE_FOLDERS if name not in near] + ['host', 'scenarios', 'tool']


class Programs:
    """What is known of them is kept in a file, as long as they are the same."""

    def __init__(self, sandbox):
        self.sandbox = sandbox
        self.file = FOLDER.parent / 'tests.json'
        self.known = json.loads(self.file.read_text()) if self.file.is_file() else {}

    @staticmethod
    def binary(name):
        return str(BUILD / f'bin/test_{name}')

    def learn(self, name):
        """Which tests fail after others in one process, which fail at all here, and which take long."""
        stamp = (BUILD / f'bin/test_{name}').stat().st_mtime
        if self.known.get(name, {}).get('stamp') == stamp and 'together' in self.known[name]:
            return
        step = {'program': self.binary(name), 'names': f'-{BROWSER}', 'seconds': 600, 'all': True}
        together = self.sandbox({'steps': [step]})
        breaking = []  # tests that take the program with them
        while together['broken']:
            breaking.append(together['failed'][-1])
            together = self.sandbox({'steps': [{**step, 'names': '-' + ':'.join([BROWSER, *breaking])}]})
        failed = together['failed'] + breaking
        alone = self.sandbox({'steps': [{**step, 'names': test, 'seconds': 60} for test in failed]})
        slow = [test for test, time in together['times'].items() if time >= SLOW]
        self.known[name] = {'stamp': stamp, 'together': sorted(together['times']), 'alone': [test for test in failed if test not in alone['failed']],
                            'failing': alone['failed'], 'slow': slow, 'seconds': together['seconds']}
        self.file.write_text(json.dumps(self.known, indent=1))
        print(f"test_{name}: {len(together['times'])} tests together, {len(self.known[name]['alone'])} alone, "
              f"{len(slow)} of them slow, not used as they fail in the sandbox: {alone['failed']}", flush=True)

    def all_steps(self, file):
        """The quick tests of the nearest program, all of which are run."""
        return [{**step, 'all': True} for step in self.quick_steps(that_belong(file)[0])]

    def steps(self, file, quick):
        """The tests named after the file, the quick tests of each program, and at last the slow ones of the nearest."""
        programs = that_belong(file)
        near, stem = programs[0], file.rsplit('/', 1)[1].removesuffix('.cpp')
        steps = [self.step(near, f'{stem}*:*/{stem}*')] if near not in SOURCE_FOLDERS else []
        steps += [step for name in programs for step in self.quick_steps(name)]
        if self.known[near]['slow'] and not quick:
            steps.append(self.step(near, ':'.join(self.known[near]['slow'])))
        return steps

    def quick_steps(self, name):
        known = self.known[name]
        together = self.step(name, '-' + ':'.join([BROWSER] + known['alone'] + known['failing'] + known['slow']))
        return [together] + [self.step(name, test) for test in known['alone']]

    def quick_tests(self):
        """All of them: (program, test)."""
        return {(name, test) for name, known in self.known.items()
                for test in known['together'] + known['alone'] if test not in known['slow'] + known['failing']}

    def step(self, name, names):
        """Of the library's folders, whose tests are quick, all tests are run that may notice a mutant; else until one does."""
        return {'name': name, 'program': self.binary(name), 'names': names, 'seconds': 60 + 4 * self.known[name]['seconds'],
                'all': name in SOURCE_FOLDERS}
