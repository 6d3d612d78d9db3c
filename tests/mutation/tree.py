"""The copy of the sources that is built once, and how a file of it is compiled and linked again, fast."""

import json
import os
import re
import shlex
import shutil
import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
FOLDER = ROOT / 'build/mutate/tree'
BUILD = FOLDER / 'build/release'


def output(*command):
    return subprocess.run(command, cwd=ROOT, check=True, capture_output=True, text=True).stdout


def copy_sources():
    """What is as it was keeps its time, so that little is built anew."""
    names = {name for name in output('git', 'ls-files', '-co', '--exclude-standard', '-z').split('\0')
             if name and (ROOT / name).is_file()}
    for folder, folders, files in os.walk(FOLDER):
        here = Path(folder).relative_to(FOLDER)
        folders[:] = [name for name in folders if str(here / name) != 'build']
        for name in files:
            if str(here / name) not in names:
                (FOLDER / here / name).unlink()
    for name in names:
        source, copy = ROOT / name, FOLDER / name
        if not copy.is_file() or copy.read_bytes() != source.read_bytes():
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)


class Tree:
    """Built as the release is; a mutant is compiled without optimisation, by clang from a precompiled header if there is one."""

    def __init__(self, programs):
        copy_sources()
        subprocess.run(['cmake', '--preset', 'release'], cwd=FOLDER, check=True,
                       stdout=subprocess.DEVNULL)
        subprocess.run(['cmake', '--build', BUILD, '--target', *(f'test_{name}' for name in programs)], check=True,
                       stdout=subprocess.DEVNULL)
        self.commands = {}
        for entry in json.loads((BUILD / 'compile_commands.json').read_text()):
            if (BUILD / self.made_by(entry['command'])).is_file():  # and not of another program that is not built
                self.commands[os.path.relpath(entry['file'], FOLDER)] = entry['command']
        self.edges = self.read_edges()
        self.link_commands = {}
        self.fast = shutil.which('clang++')
        if self.fast:
            self.precompile()

    def precompile(self):
        """The standard headers that are included often."""
        included = output('git', 'grep', '-hE', '^#include <', '--', 'src', 'tool', 'simulation').split('\n')
        often = sorted({line for line in included if included.count(line) > 3})
        self.header = BUILD / 'standard.h'
        self.header.write_text('\n'.join(often))
        subprocess.run([self.fast, '-w', '-O0', '-DNDEBUG', '-fPIC', '-std=c++20', '-fpch-instantiate-templates',
                        '-x', 'c++-header', str(self.header), '-o', f'{self.header}.pch'], check=True)

    @staticmethod
    def made_by(command):
        return re.search(r' -o (\S+)', command).group(1)

    def object(self, file):
        return self.made_by(self.commands[file])

    def optimised(self, file):
        """The command that the build compiles a file with; a mutant may give warnings."""
        return 'CCACHE_DISABLE=1 ' + self.commands[file].replace(' -Werror ', ' ')

    def unoptimised(self, file):
        words = [word for word in shlex.split(self.commands[file]) if not re.match(r'-W|-O|-fno-semantic|-fvisibility|.*ccache$', word)]
        words[1:1] = ['-O0', '-w']
        if self.fast:
            words[0] = self.fast
            words[1:1] = ['-include-pch', f'{self.header}.pch']
        return shlex.join(words)

    @staticmethod
    def read_edges():
        """What is linked or archived: its inputs."""
        edges = {}
        for block in (BUILD / 'build.ninja').read_text().split('\n\n'):
            found = re.search(r'^build ([^ :]+)[^:]*: CXX_(?:EXECUTABLE|SHARED_LIBRARY|STATIC_LIBRARY)_LINKER\S* (.*)', block, re.M)
            if found:
                libraries = re.search(r'^  LINK_LIBRARIES = (.*)', block, re.M)  # objects of other targets among them
                inputs = found.group(2).split(' || ')[0] + ' ' + (libraries.group(1) if libraries else '')
                edges[found.group(1)] = {os.path.normpath(name) for name in inputs.split()}
        return edges

    def link_command(self, made):
        if made not in self.link_commands:
            command = output('ninja', '-C', str(BUILD), '-t', 'commands', '-s', made).strip().split('\n')[-1]
            command = re.sub(r' && cd .*', '', command)  # which only asks a program for its tests
            if shutil.which('ld.lld'):
                command = re.sub(r'(\S+\+\+) ', r'\1 -fuse-ld=lld ', command, count=1)
            self.link_commands[made] = command
        return self.link_commands[made]

    def linked_from(self, file, wanted):
        """What has to be linked again for some programs when a file has changed, in order; no program of shared libraries."""
        changed, links = {self.object(file)}, []
        for _ in range(3):  # object, archive, program
            for made, inputs in self.edges.items():
                if made not in links and inputs & changed and (not made.startswith('bin/') or made in wanted):
                    links.append(made)
                    if made.endswith('.a'):
                        changed.add(made)
        return links
