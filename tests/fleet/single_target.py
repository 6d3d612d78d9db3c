"""What the tests of single modules share: one old target, and calls of a module with it."""

import json
import subprocess
import tempfile
import unittest
from pathlib import Path

from engine import COLLECTIONS, Engine
from fleet import TOOL_FOLDER, Fleet

ONE = """
- hosts: all
  tasks:
    - name: Task
      velorant.trellan.%s: %s
"""


MODULES = COLLECTIONS / "ansible_collections" / "velorant" / "trellan" / "plugins" / "modules"


class Module(unittest.TestCase):
    """One old target, and the engine. Where what is tested is the module's alone, tests call it DIRECTly, as the engine does at
    a target: that takes a tenth of the time."""

    DIRECT = False

    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory(prefix="trellan-fleet-")
        cls.addClassCleanup(scratch.cleanup)
        cls.folder = Path(scratch.name)
        cls.fleet = Fleet(cls.folder, 1)
        cls.engine = Engine(cls.folder / "engine")
        cls.inventory = cls.fleet.inventory(cls.folder / "hosts")
        cls.target = cls.fleet.target_file("target0000")
        cls.events = cls.folder / "events.jsonl"

    def setUp(self):
        self.fleet.restore()
        self.events.unlink(missing_ok=True)

    def stand_in(self, content):
        """A folder with a program in the tool's place."""
        folder = self.folder / "stand-in"
        folder.mkdir(exist_ok=True)
        tool = folder / "trellan-update"
        tool.write_text(content)
        tool.chmod(0o755)
        return folder

    def change_target(self, change):
        target = json.loads(self.target.read_text())
        change(target)
        self.target.write_text(json.dumps(target))

    def playbook(self, name, options):
        return ONE % (name, json.dumps(dict({"target": str(self.target)}, **options)))

    def task(self, name, options, *flags, **further):
        """The result of one task, with its status."""
        if self.DIRECT:
            return self.call(name, dict({"target": str(self.target)}, **options), flags, **further)
        run = self.engine.playbook(self.playbook(name, options), self.inventory, *flags, **further)
        line = run.of("Task").get("target0000")
        self.assertIsNotNone(line, run.text)
        return dict(line["result"], task_status=line["status"])

    def call(self, name, options, flags, **further):
        arguments = self.folder / "arguments.json"
        arguments.write_text(json.dumps({"ANSIBLE_MODULE_ARGS": dict(
            options, _ansible_check_mode="--check" in flags, _ansible_diff="--diff" in flags,
            _ansible_remote_tmp=str(self.folder))}))
        environment = dict(self.engine.environment(**further), PYTHONPATH=str(COLLECTIONS))
        run = subprocess.run(["/usr/bin/python3", MODULES / (name + ".py"), arguments], env=environment, check=False,
                             stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8")
        self.assertEqual(run.stderr, "")
        result = json.loads(run.stdout)
        return dict(result, task_status="failed" if result.get("failed") else "ok")

    def update(self, *flags, tool=TOOL_FOLDER, environment=None, **options):
        options = dict({"archive": str(self.fleet.archive)}, **options)
        return self.task("update", options, *flags, tool=tool, **environment or {})

    def expect_red_in_both_modes(self, result, part, **options):
        """An update that is known beforehand to do nothing fails in check mode and without it, and writes nothing."""
        before = self.fleet.content()
        for flags in (["--check"], []):
            with self.subTest(flags=flags):
                told = self.update(*flags, **options)
                self.assertEqual((told["task_status"], told["result"], told["changed"]), ("failed", result, False), told["msg"])
                self.assertIn(part, told["msg"])
                self.assertEqual(before, self.fleet.content())
