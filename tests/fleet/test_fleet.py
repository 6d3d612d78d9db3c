"""Many targets in mixed state, a tenth of them faulty: what check mode foretells, what a run does, and a second one."""

import os
import tempfile
import unittest
from pathlib import Path

from engine import Engine
from fleet import Fleet

TARGETS = int(os.environ.get("TRELLAN_FLEET_TARGETS", "500"))

UPDATE = """
- hosts: trellan
  tasks:
    - name: Update
      velorant.trellan.update:
        archive: "{{ archive }}"
        target: "{{ rollout_target }}"
        stall_timeout: 20
"""


class AFleet(unittest.TestCase):
    """The steps are one story: each test goes on with the targets as the one before has left them."""

    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory(prefix="trellan-fleet-")
        folder = Path(cls.scratch.name)
        cls.fleet = Fleet(folder, TARGETS)
        cls.addClassCleanup(cls.scratch.cleanup)
        cls.addClassCleanup(cls.fleet.close)
        cls.engine = Engine(folder / "engine")
        cls.inventory = cls.fleet.inventory(folder / "hosts")

    @classmethod
    def tearDownClass(cls):
        print("\n" + cls.engine.table())

    def run_update(self, what, *arguments):
        run = self.engine.measured(what, TARGETS, UPDATE, self.inventory, "-e", "archive=%s" % self.fleet.archive, *arguments)
        updates = run.of("Update")
        self.assertEqual(sorted(updates), self.fleet.hosts, run.text[-2000:])
        return {host: dict(line["result"], status=line["status"]) for host, line in updates.items()}

    def expect_healthy(self, results, written):
        """Each healthy target succeeds and is changed just where elements are written, as many as WRITTEN says of its state."""
        for host, state in self.fleet.state_of.items():
            with self.subTest(host=host, state=state.name):
                result = results[host]
                self.assertEqual(result["status"], "ok", result["msg"])
                self.assertEqual(len(result["written"]), written(state), result["written"])
                self.assertEqual(result["changed"], written(state) > 0)

    def expect_faulty(self, host, result, failed, part, changed):
        self.assertEqual(result["status"], "failed" if failed else "ok", result["msg"])
        self.assertEqual(result["changed"], changed, result["msg"])
        if failed:
            self.assertIn(part, result["msg"])
            self.assertTrue(any(part in reason for reason in result["reasons"]), result["reasons"])

    def test_1_is_foretold_by_check_mode_which_writes_nothing(self):
        before = self.fleet.content()
        results = self.run_update("check mode", "--check")
        self.assertEqual(before, self.fleet.content())
        self.expect_healthy(results, lambda state: state.first)
        for host, fault in self.fleet.fault_of.items():
            with self.subTest(host=host, fault=fault.name):
                # What check mode cannot know of, it takes for a target that is updated.
                changed = fault.changed[0] if fault.check else True
                self.expect_faulty(host, results[host], fault.check is not None, fault.check, changed)

    def test_2_is_updated_and_each_fault_is_named_and_stops_no_other(self):
        before = self.fleet.content()
        results = self.run_update("update")
        after = self.fleet.content()
        self.expect_healthy(results, lambda state: state.first)
        for host, fault in self.fleet.fault_of.items():
            with self.subTest(host=host, fault=fault.name):
                self.expect_faulty(host, results[host], True, fault.run, fault.changed[0])
                self.assertEqual(results[host]["result"], fault.result)
        for host in self.fleet.hosts:
            with self.subTest(host=host):
                folder = str(self.fleet.targets / host) + os.sep
                differs = any(before[path] != after.get(path) for path in before if str(path).startswith(folder)) or any(
                    path not in before for path in after if str(path).startswith(folder))
                self.assertEqual(results[host]["changed"], differs)

    def test_3_is_as_it_should_be_so_that_a_second_update_changes_nothing(self):
        before = self.fleet.content()
        results = self.run_update("second update")
        self.expect_healthy(results, lambda state: state.second)
        for host, state in self.fleet.state_of.items():
            if state.second:
                self.assertEqual(results[host]["unlisted"], results[host]["written"])
                self.assertRegex(results[host]["msg"], r"Updatable file \(notes\.txt\): the target does not list this file")
        for host, fault in self.fleet.fault_of.items():
            with self.subTest(host=host, fault=fault.name):
                failed = fault.second != "success"
                self.expect_faulty(host, results[host], failed, fault.run, fault.changed[1])
                self.assertEqual(results[host]["result"], fault.second)
        self.assertEqual(before, self.fleet.content())


if __name__ == "__main__":
    unittest.main()
