"""What a rollout tells of targets whose update or state afterwards is not known, and of hosts with odd names."""

import json
import os
import shutil
import signal
import tempfile
import unittest
from pathlib import Path

from engine import Engine
from fleet import TOOL_FOLDER, Fleet
from tool_processes import processes_of_target, wait_for

PLAYBOOK = "velorant.trellan.rollout"

# The tool, but for a target that cannot be read as soon as its update has begun.
LOST_AFTERWARDS = """#!/bin/sh
case "$1 $*" in
installed*%(target)s*) [ ! -e %(events)s ] || { echo "trellan-update: gone" >&2; exit 1; } ;;
esac
exec %(tool)s/trellan-update "$@"
"""


class ARolloutWhoseEndIsNotKnown(unittest.TestCase):
    """Of four targets one is lost behind its update, and of one the module is killed while its update is running."""

    def setUp(self):
        scratch = tempfile.TemporaryDirectory(prefix="trellan-fleet-")
        self.addCleanup(scratch.cleanup)
        self.folder = Path(scratch.name)
        self.fleet = Fleet(self.folder, 4, False)
        self.addCleanup(self.fleet.close)
        self.engine = Engine(self.folder / "engine")
        self.inventory = self.fleet.inventory(self.folder / "hosts")
        self.report_folder = self.engine.folder / "rollout-report"
        (self.folder / "lib").mkdir()
        # An inventory file for each host, whatever its name: "/" and "_" are different names.
        text = self.inventory.read_text()
        for host, name in zip(self.fleet.hosts, ("lost-after", "rack/1", "rack_1", "killed")):
            text = text.replace("%s rollout_target" % host, "%s rollout_target" % name)
        self.inventory.write_text(text)
        self.slow = self.fleet.target_file("target0003")
        target = json.loads(self.slow.read_text())
        target.update(clock="real", bytesPerSecond=4000)
        self.slow.write_text(json.dumps(target))
        self.addCleanup(self.end_tools)

    def end_tools(self):
        for process in processes_of_target(self.slow):
            os.kill(process.pid, signal.SIGKILL)

    def arguments(self, *further, **variables):
        variables = dict({"rollout_archive": str(self.fleet.archive), "rollout_batches": [1, "100%"],
                          "rollout_max_fail_percentage": 100}, **variables)
        return ["-e", json.dumps(variables)] + list(further)

    def tool_that_loses(self):
        folder = self.folder / "stand-in"
        folder.mkdir()
        tool = folder / "trellan-update"
        tool.write_text(LOST_AFTERWARDS % {"target": self.fleet.target_file("target0000"), "tool": TOOL_FOLDER,
                                           "events": self.folder / "lib" / "target0000" / "events.jsonl"})
        tool.chmod(0o755)
        return folder

    def run_and_kill_a_module(self):
        """The finished rollout; the update that it has begun on the slow target is stopped, but alive."""
        self.engine.recorded.write_text("")
        engine = self.engine.start(["ansible-playbook", "-i", self.inventory, PLAYBOOK] + self.arguments(),
                                   tool=self.tool_that_loses())
        events = self.folder / "lib" / "target0003" / "events.jsonl"
        wait_for(lambda: engine.poll() is not None or (events.exists() and '"event":"progress"' in events.read_text()), 120)
        self.told_meanwhile = self.told()
        for tool in processes_of_target(self.slow):
            os.kill(tool.pid, signal.SIGSTOP)
            os.kill(tool.parent, signal.SIGKILL)
        return self.engine.finished(engine)

    def report(self):
        return json.loads((self.report_folder / "report.json").read_text())

    def told(self):
        return {host: (entry["result"], entry["changed"], len(entry.get("written", [])))
                for host, entry in self.report()["hosts"].items()}

    def test_tells_what_is_not_known_and_check_mode_of_an_update_that_runs(self):
        fresh = self.folder / "fresh"
        shutil.copytree(self.fleet.targets / "target0002", fresh)
        run = self.run_and_kill_a_module()
        self.assertEqual(run.status, 2, run.text[-3000:])
        # Where the engine is killed with the module, nobody tells of more.
        self.assertEqual(self.told_meanwhile, {"lost-after": ("success", True, 12), "rack/1": ("unknown", None, 0),
                                               "rack_1": ("unknown", None, 0), "killed": ("unknown", None, 0)})
        self.expect_report_of_what_is_not_known()
        # The archive has a blank in its path, which it has not at the targets.
        archive = self.folder / "with blank"
        shutil.copytree(self.fleet.archive, archive)
        shutil.copytree(fresh, self.fleet.targets / "target0002", dirs_exist_ok=True)
        run = self.engine.playbook(PLAYBOOK, self.inventory, *self.arguments("--check", rollout_archive=str(archive)))
        self.assertEqual(run.status, 2, run.text[-3000:])
        self.assertEqual(self.told(), {"lost-after": ("success", False, 0), "rack/1": ("success", False, 0),
                                       "rack_1": ("success", True, 9), "killed": ("refused", False, 0)})
        self.assertIn("is still running; nothing would be done", self.report()["hosts"]["killed"]["msg"])

    def expect_report_of_what_is_not_known(self):
        self.assertEqual(self.told(), {"lost-after": ("success", True, 12), "rack/1": ("success", False, 0),
                                       "rack_1": ("success", True, 9), "killed": ("running", None, 0)})
        report = self.report()
        self.assertEqual(report["counts"], {"changed": 2, "success": 3, "running": 1, "unreadAfter": 1})
        self.assertIn("the update is still running", report["hosts"]["killed"]["msg"])
        self.assertEqual(report["hosts"]["lost-after"]["after"],
                         {"result": "unreadable", "changed": False, "msg": "the target cannot be read: gone", "reasons": ["gone"]})
        self.assertEqual(sorted(path.name for path in (self.report_folder / "after").iterdir()),
                         ["killed.json", "rack%2F1.json", "rack_1.json"])
        self.assertNotIn("lost-after", (self.report_folder / "after.html").read_text())

    def test_begins_not_with_a_folder_whose_files_cannot_be_copied_or_a_host_that_is_a_template(self):
        run = self.engine.playbook(PLAYBOOK, self.inventory, *self.arguments(rollout_folder="/proc/with blank"))
        self.assertEqual(run.status, 2)
        self.assertIn("no target was touched: rollout_folder must have no blank and no character that is special to a shell, "
                      "and not be '/proc/with blank'", run.text)
        self.inventory.write_text(self.inventory.read_text().replace("rack_1", "rack{{7}}"))
        run = self.engine.playbook(PLAYBOOK, self.inventory, *self.arguments())
        self.assertEqual(run.status, 2)
        self.assertIn("the inventory has no host 'rack7': a host must not have a name that the engine takes for a template",
                      run.text)
        self.assertEqual(list((self.folder / "lib").iterdir()), [])


REPORT = """
- hosts: all
  gather_facts: false
  tasks:
    - name: Report
      velorant.trellan.report:
        path: report.json
        fresh: true
        hosts: "{{ ansible_play_hosts }}"
        survey: survey
        update: update
        after: after
      run_once: true
"""


class AReport(unittest.TestCase):
    """Of results as ansible-core 2.14 registers them."""

    def entries(self, **hosts):
        with tempfile.TemporaryDirectory(prefix="trellan-fleet-") as scratch:
            engine = Engine(Path(scratch) / "engine")
            inventory = Path(scratch) / "hosts.json"
            inventory.write_text(json.dumps({"all": {"hosts": hosts}}))
            run = engine.playbook(REPORT, inventory)
            self.assertEqual(run.status, 0, run.text)
            return json.loads((engine.folder / "report.json").read_text())

    def test_tells_that_the_end_is_not_known_where_the_module_has_told_none(self):
        late = {"failed": True, "msg": "async task did not complete within the requested time - 4s", "changed": False}
        killed = {"failed": True, "msg": "MODULE FAILURE", "rc": -9, "changed": False}
        told = {"failed": True, "msg": "the update failed", "result": "failed", "changed": True, "status": 1}
        free = {"inventory": "{}", "ansible_facts": {"trellan": {"running": False}}}
        running = {"inventory": "{}", "ansible_facts": {"trellan": {"running": True}}}
        report = self.entries(late={"update": late, "after": running}, killed={"update": killed, "after": free},
                              told={"update": told, "after": free})
        self.assertEqual(report["counts"], {"changed": 1, "running": 1, "unknown": 1, "failed": 1})
        self.assertEqual(report["hosts"], {
            "late": {"result": "running", "changed": None, "batch": None,
                     "msg": "async task did not complete within the requested time - 4s; the update is still running"},
            "killed": {"result": "unknown", "changed": None, "batch": None,
                       "msg": "MODULE FAILURE; how the update has ended is not known"},
            "told": {"result": "failed", "changed": True, "batch": None, "msg": "the update failed", "status": 1}})


if __name__ == "__main__":
    unittest.main()
