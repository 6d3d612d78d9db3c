"""Runs of the engine, with the results of each host, and the processor time that they and the tool in them have taken."""

import json
import os
import re
import resource
import shutil
import subprocess

from fleet import PROJECT, TOOL_FOLDER

COLLECTIONS = PROJECT / "ansible"
CALLBACKS = PROJECT / "tests" / "fleet" / "callbacks"

CONFIGURATION = """[defaults]
collections_path = %s
forks = %s
gathering = explicit
interpreter_python = /usr/bin/python3
retry_files_enabled = False
local_tmp = %s
remote_tmp = %s
[connection]
pipelining = True
"""

# Stands before the tool on the path where processor time is measured: bash tells that of its children to the millisecond.
MEASURING_TOOL = """#!/bin/bash
%s/trellan-update "$@"
status=$?
times >"%s/$$"
exit $status
"""


class Run:
    """A finished run: its exit status, its text, and of each result of a task host, task, status and result, in order."""

    def __init__(self, status, text, recorded):
        self.status, self.text, self.recorded = status, text, recorded

    def of(self, task):
        """What was recorded of this task for each host; a role's name may stand before the task's."""
        return {line["host"]: line for line in self.recorded if line["task"].split(" : ")[-1] == task}


class Engine:
    """The engine with a configuration of its own in FOLDER."""

    def __init__(self, folder, forks=4):
        self.folder = folder
        folder.mkdir()
        self.configuration = folder / "ansible.cfg"
        self.configuration.write_text(CONFIGURATION % (COLLECTIONS, forks, folder / "tmp", folder / "tmp"))
        self.recorded = folder / "recorded"
        self.times = []

    def environment(self, tool=TOOL_FOLDER, **further):
        """That of the engine: this collection, the tool in the folder TOOL, and nothing of the user's own."""
        return dict(os.environ, ANSIBLE_CONFIG=str(self.configuration), ANSIBLE_NOCOLOR="1",
                    ANSIBLE_CALLBACK_PLUGINS=str(CALLBACKS), ANSIBLE_CALLBACKS_ENABLED="recorded",
                    TRELLAN_RECORDED=str(self.recorded), ANSIBLE_ASYNC_DIR=str(self.folder / "async"),
                    PATH="%s:%s" % (tool, os.environ["PATH"]), PYTHONDONTWRITEBYTECODE="1", **further)

    def start(self, arguments, **further):
        return subprocess.Popen([str(argument) for argument in arguments], cwd=self.folder, env=self.environment(**further),
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8",
                                errors="replace")

    def playbook(self, playbook, inventory, *arguments, **further):
        """Runs a playbook, a file's text or the name of one of the collection."""
        if "\n" in playbook:
            (self.folder / "playbook.yml").write_text(playbook)
            playbook = self.folder / "playbook.yml"
        self.recorded.write_text("")
        process = self.start(["ansible-playbook", "-i", inventory, playbook] + list(arguments), **further)
        return self.finished(process)

    def finished(self, process):
        """The run that this process was started for, when it has ended."""
        text = process.communicate()[0]
        return Run(process.returncode, text, [json.loads(line) for line in self.recorded.read_text().splitlines()])

    def measured(self, what, hosts, *arguments):
        """As playbook; notes what processor time the engine and the tool have taken."""
        folder = self.folder / "measured"
        shutil.rmtree(folder, ignore_errors=True)
        (folder / "times").mkdir(parents=True)
        tool = folder / "trellan-update"
        tool.write_text(MEASURING_TOOL % (TOOL_FOLDER, folder / "times"))
        tool.chmod(0o755)
        before = children_time()
        run = self.playbook(*arguments, tool=folder)
        whole = children_time() - before
        calls = list((folder / "times").glob("*"))
        tools = sum(tool_time(file.read_text()) for file in calls)
        self.times.append((what, hosts, whole - tools, tools, len(calls)))
        return run

    def table(self):
        lines = ["%-34s %7s %12s %12s %12s %6s" % ("processor time in seconds", "targets", "engine", "per target", "tool",
                                                    "calls")]
        lines += ["%-34s %7d %12.1f %12.3f %12.2f %6d" % (what, hosts, engine, engine / hosts, tools, calls)
                  for what, hosts, engine, tools, calls in self.times]
        return "\n".join(lines)


def children_time():
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def tool_time(text):
    """The seconds that the children have taken, the second line of what bash prints: 0m0.004s 0m0.002s."""
    return sum(int(minutes) * 60 + float(seconds) for minutes, seconds in re.findall(r"(\d+)m([\d.]+)s", text.splitlines()[1]))
