"""One mutant in a sandbox of its own: a changed line, compiled, linked, and the tests that belong to it.

Run by mutate.py in name spaces for mounts and processes, with a job in JSON on standard input; the answer is JSON. A mutant
may do anything, also send signals to every process or write anywhere. So the tree lies under an overlay in memory, /tmp is
empty, everything else is read only, and nothing outside can be seen to be killed. What was changed goes away with the sandbox.
"""

import json
import os
import re
import resource
import signal
import subprocess
import sys
import time
from pathlib import Path

MEMORY = 8 << 30  # bytes of address space
MOST_BROKEN = 5  # tests of a step that end them all, until its others are given up
MOST_READ = 10 << 20  # characters of what a program prints: a mutant may print without an end
NO_TEST = 'the program itself'
PROCESSOR = 60  # seconds of one process
TOLD = re.compile(r'^\[ +(RUN|OK|FAILED|SKIPPED) +\] ([^ ,]+)')
TOOK = re.compile(r' \((\d+) ms\)$')


def hide(tree, scratch):
    """Mounts the overlay over the tree."""
    def mount(*words):
        subprocess.run(['mount', *words], check=True)
    mount('-t', 'tmpfs', '-o', 'size=4g', 'scratch', scratch)
    for folder in ('upper', 'work'):
        (Path(scratch) / folder).mkdir()
    subprocess.run(['mount', '-o', 'remount,bind,ro', '/'], check=os.environ['TRELLAN_ROOT'] == '1')
    mount('-t', 'overlay', '-o', f'lowerdir={tree},upperdir={scratch}/upper,workdir={scratch}/work', 'overlay', tree)
    mount('-t', 'tmpfs', '-o', 'size=1g', 'tmp', '/tmp')


def limit():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_CPU, (PROCESSOR, PROCESSOR))


def tests_of(step, names):
    """Runs tests of a step in one process: those that failed, milliseconds of those that passed, whether one ended it all."""
    output = Path('/tmp/output')
    with output.open('wb') as file:
        options = ['--gtest_color=no', f'--gtest_filter={names}', f"--gtest_fail_fast={int(not step['all'])}"]
        child = subprocess.Popen([step['program'], *options], stdin=subprocess.DEVNULL, stdout=file,
                                 stderr=subprocess.DEVNULL, start_new_session=True, preexec_fn=limit)
        try:
            status = child.wait(step['seconds'])
        except subprocess.TimeoutExpired:
            status = None
        try:
            os.killpg(child.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        child.wait()
    failed, passed, running = [], {}, ''
    with output.open(errors='replace') as file:
        text = file.read(MOST_READ)
    for line in text.split('\n'):
        told, took = TOLD.match(line), TOOK.search(line)
        if not told or not (took or told.group(1) == 'RUN'):
            continue  # those that failed are listed once more at the end
        running = told.group(2) if told.group(1) == 'RUN' else ''
        if told.group(1) == 'FAILED':
            failed.append(told.group(2))
        elif told.group(1) == 'OK':
            passed[told.group(2)] = int(took.group(1))
    if status != 0 and running:
        failed.append(running)  # it took the program with it, or does not end
    if status != 0 and not failed:
        failed.append(NO_TEST)
    return failed, passed, status is None or bool(running)


def ran(command):
    return subprocess.run(command, shell=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL, check=False).returncode == 0


def learned(job):
    """What of the unchanged tree fails, and how long the rest takes."""
    failed, times, broken = [], {}, False
    for step in job['steps']:
        more, passed, broken = tests_of(step, step['names'])
        failed += more
        times.update(passed)
    return {'failed': failed, 'times': times, 'broken': broken}


def noticing(step):
    """The tests of a step that notice a mutant, and whether one ended them all."""
    failed, _, broken = tests_of(step, step['names'])
    if not failed or broken:
        return failed, broken
    # On a busy machine, a test may fail for once. What does not end or crashes is not tried again.
    names = step['names'] if NO_TEST in failed else ':'.join(failed)
    return tests_of(step, names)[0], False


def all_noticing(step):
    """The same of all tests, also of those behind one that ends them all: it is left out of another run."""
    found, names = [], step['names']
    for _ in range(MOST_BROKEN):
        failed, broken = noticing({**step, 'names': names})
        found += [test for test in failed if test not in found]
        if not broken or NO_TEST in failed or names == failed[-1]:
            return found, False
        names += (':' if '-' in names else '-') + failed[-1]
    return found, True


def verdict(job):
    source, compiled = Path(job['tree']) / job['file'], Path(job['object'])
    optimised = compiled.read_bytes()
    lines = source.read_text().split('\n')
    lines[job['line']] = job['after']
    source.write_text('\n'.join(lines))
    if not ran(job['compile']) or not all(ran(command) for command in job['links']):
        return {'verdict': 'uncompiled'}
    told = []
    for step in job['steps']:
        if not all(ran(command) for command in step['links']):
            return {'verdict': 'uncompiled'}
        failed, broken = all_noticing(step) if job['everyone'] else noticing(step)
        if failed:
            told.append({'by': step['name'], 'tests': failed, 'broken': broken})
            if not job['everyone']:
                break
    if told:
        return {'verdict': 'killed', **told[0], **({'everyone': told} if job['everyone'] else {})}
    # What the optimising compiler makes the same of is the same.
    same = ran(job['optimise']) and compiled.read_bytes() == optimised
    return {'verdict': 'equivalent' if same else 'survived'}


def main():
    job = json.load(sys.stdin)
    began = time.monotonic()
    hide(job['tree'], job['scratch'])
    os.chdir(job['build'])
    answer = verdict(job) if 'file' in job else learned(job)
    print(json.dumps({**answer, 'seconds': round(time.monotonic() - began, 1)}))


if __name__ == '__main__':
    main()
