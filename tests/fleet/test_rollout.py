"""The role and its playbook: the survey, batches, the share of failures, and the report."""

import json
import os
import shutil
import tempfile
import unittest
from pathlib import Path

from engine import Engine
from fleet import Fleet, children

TARGETS = int(os.environ.get("TRELLAN_FLEET_TARGETS", "500"))
PLAYBOOK = "velorant.trellan.rollout"


class Rollout(unittest.TestCase):
    """A fleet of COUNT targets, and the engine; new for each class."""

    COUNT = 6
    FAULTY = False

    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory(prefix="trellan-fleet-")
        cls.addClassCleanup(scratch.cleanup)
        cls.folder = Path(scratch.name)
        cls.fleet = Fleet(cls.folder, cls.COUNT, cls.FAULTY)
        cls.addClassCleanup(cls.fleet.close)
        cls.engine = Engine(cls.folder / "engine")
        cls.inventory = cls.fleet.inventory(cls.folder / "hosts")
        cls.report_folder = cls.engine.folder / "rollout-report"

    def setUp(self):
        self.fleet.restore()
        shutil.rmtree(self.fleet.folder / "lib", ignore_errors=True)
        (self.fleet.folder / "lib").mkdir()
        shutil.rmtree(self.report_folder, ignore_errors=True)

    def arguments(self, further, variables):
        variables = dict({"rollout_archive": str(self.fleet.archive), "rollout_stall_timeout": 20}, **variables)
        return [PLAYBOOK, self.inventory, "-e", json.dumps(variables)] + list(further)

    def rollout(self, *further, **variables):
        return self.engine.playbook(*self.arguments(further, variables))

    def report(self):
        return json.loads((self.report_folder / "report.json").read_text())

    def results(self):
        return {host: entry["result"] for host, entry in self.report()["hosts"].items()}


class ARolloutWithFaults(Rollout):
    COUNT = TARGETS
    FAULTY = True

    def test_stops_at_its_share_of_failures_in_the_first_batch(self):
        before = self.fleet.content()
        run = self.engine.measured("rollout stopped in its first batch", TARGETS, *self.arguments(
            [], {"rollout_allow_boards_without_files": True, "rollout_batches": [16, "100%"],
                 "rollout_max_fail_percentage": 5}))
        print("\n" + self.engine.table())
        self.assertEqual(run.status, 2, run.text[-3000:])
        # Those that cannot be read were left out.
        unread = [host for host, fault in self.fleet.fault_of.items() if fault.name in ("missing parameter", "no target file")]
        batch = [host for host in self.fleet.hosts if host not in unread][:16]
        failing = [host for host in batch if host in self.fleet.fault_of]
        self.assertGreater(len(failing) / len(batch), 0.05)
        self.assertEqual(sorted(run.of("Update")), batch)
        self.assertEqual(sorted(path.name for path in (self.fleet.folder / "lib").iterdir()), batch)
        results = self.results()
        self.assertEqual(sorted(results), self.fleet.hosts)
        for host in self.fleet.hosts:
            with self.subTest(host=host):
                if host in unread:
                    self.assertEqual(results[host], "unreadable")
                elif host not in batch:
                    self.assertEqual(results[host], "not reached")
                else:
                    fault = self.fleet.fault_of.get(host)
                    self.assertEqual(results[host], fault.result if fault else "success")
                    self.assertIn(fault.run if fault else "", self.report()["hosts"][host]["msg"])
        others = [host for host in self.fleet.hosts if host not in batch]
        after = self.fleet.content(others)
        self.assertEqual({path: content for path, content in before.items() if path in after}, after)
        self.assertTrue((self.report_folder / "after.html").exists())


class ARolloutToTheEnd(Rollout):
    COUNT = max(TARGETS // 10, 2)

    def test_updates_all_targets_in_batches(self):
        run = self.engine.measured("whole rollout", self.COUNT, *self.arguments([], {}))
        print("\n" + self.engine.table())
        self.assertEqual(run.status, 0, run.text[-3000:])
        self.assertEqual(self.results(), dict.fromkeys(self.fleet.hosts, "success"))
        written = {host: len(entry["written"]) for host, entry in self.report()["hosts"].items()}
        self.assertEqual(written, {host: state.first for host, state in self.fleet.state_of.items()})


class ABoardWithoutFiles(Rollout):
    COUNT = 3

    def setUp(self):
        super().setUp()
        path = self.fleet.target_file("target0001")
        target = json.loads(path.read_text())
        board = children(children(target["tree"], "IOROUTER")[0], "IOMODULE")[0]
        board["parameters"]["PRODUCT/BOARD_TYPE"] = "AI9900"
        path.write_text(json.dumps(target))

    def test_stops_the_rollout_before_anything_is_touched(self):
        before = self.fleet.content()
        self.report_folder.mkdir()
        (self.report_folder / "after.html").write_text("of a rollout before")
        run = self.rollout(rollout_folder="~/trellan-$USER")  # which only the targets know
        self.assertEqual(run.status, 2)
        self.assertIn("1 board would get nothing, and no target was touched: target0001: Analog inputs, SN 815.", run.text)
        self.assertEqual(self.report()["boardsWithoutFiles"], [
            {"host": "target0001", "board": "Analog inputs, SN 815", "boardType": "AI9900",
             "reason": "the archive has no file for it"}])
        self.assertEqual(self.results(), dict.fromkeys(self.fleet.hosts, "not reached"))
        self.assertEqual(before, self.fleet.content())
        self.assertEqual(list((self.fleet.folder / "lib").iterdir()), [])
        self.assertFalse((self.report_folder / "after.html").exists())

    def test_stops_nothing_where_that_is_allowed(self):
        run = self.rollout(rollout_allow_boards_without_files=True, rollout_archive="../archive")
        self.assertEqual(run.status, 0, run.text[-3000:])
        self.assertEqual(self.results(), dict.fromkeys(self.fleet.hosts, "success"))


class ACompleteRollout(Rollout):
    def test_sends_the_archive_updates_in_batches_and_reports(self):
        run = self.rollout(rollout_batches=[1, "100%"])
        self.assertEqual(run.status, 0, run.text[-3000:])
        report = self.report()
        self.assertEqual(report["counts"], {"changed": 5, "success": 6})
        self.assertEqual([entry["batch"] for entry in report["hosts"].values()], ["target0000"] + ["target0001"] * 5)
        self.assertEqual(len(report["hosts"]["target0000"]["written"]), 12)
        self.assertEqual(report["elementsBefore"]["update"], 30)
        self.assertEqual(report["elementsAfter"]["update"], 1)  # the file that a target does not list
        self.assertEqual(report["check"], ["0 errors, 0 warnings, 0 notes"])
        for page in ("before.html", "after.html"):
            self.assertIn("target0005", (self.report_folder / page).read_text())
        for host in self.fleet.hosts:
            sent = [path for path in (self.fleet.folder / "lib" / host).iterdir() if path.is_dir()]
            self.assertEqual(len(sent), 1)
            self.assertEqual({file.name: file.read_bytes() for file in sent[0].iterdir()},
                             {file.name: file.read_bytes() for file in self.fleet.archive.iterdir()})
            self.assertIn('"event":"result","status":0', (self.fleet.folder / "lib" / host / "events.jsonl").read_text())
        # The targets know what a variable in the folder's path stands for.
        self.inventory.write_text(self.inventory.read_text().replace("rollout_folder=%s" % self.folder, "rollout_folder=$HERE"))
        self.addCleanup(self.fleet.inventory, self.inventory)
        again = self.engine.playbook(*self.arguments([], {}), HERE=str(self.folder))
        self.assertEqual(again.status, 0, again.text[-3000:])
        self.assertEqual({line["status"] for line in again.of("Send the archive").values()}, {"skipped"})
        self.assertEqual(self.report()["counts"], {"changed": 1, "success": 6})

    def test_foretells_all_in_check_mode_and_writes_nothing_to_the_targets(self):
        before = self.fleet.content()
        # A target may tell in a language of its own that there is no folder yet for what the rollout would send.
        run = self.engine.playbook(*self.arguments(["--check"], {}), LC_ALL="C.UTF-8", LANGUAGE="de")
        self.assertEqual(run.status, 0, run.text[-3000:])
        self.assertEqual(before, self.fleet.content())
        self.assertEqual(list((self.fleet.folder / "lib").iterdir()), [])
        report = self.report()
        self.assertTrue(report["checkMode"])
        self.assertEqual(report["counts"], {"changed": 5, "success": 6})
        self.assertEqual([len(entry["written"]) for entry in report["hosts"].values()], [12, 0, 9, 7, 1, 1])

    def test_sends_nothing_where_the_targets_have_the_archive(self):
        run = self.engine.playbook(*self.arguments(
            ["--limit", "target0000,target0003", "-e", "rollout_send=false", "-e", "rollout_strict=false",
             "-e", "rollout_board_types=AI8100,CN7210"], {}), ANSIBLE_STRATEGY="free")
        self.assertEqual(run.status, 0, run.text[-3000:])
        report = self.report()
        self.assertEqual(report["elementsBefore"]["update"], 11)
        self.assertEqual(report["elementsAfter"]["update"], 0)
        self.assertEqual(len(report["hosts"]["target0000"]["written"]), 7)
        self.assertEqual([path.name for path in (self.fleet.folder / "lib" / "target0000").iterdir()], ["events.jsonl"])

    def test_runs_its_updates_asynchronously_where_that_is_asked_for(self):
        run = self.rollout("--limit", "target0000,target0003", rollout_async=60, rollout_poll=1)
        self.assertEqual(run.status, 0, run.text[-3000:])
        self.assertIn("ansible_job_id", run.of("Update")["target0003"]["result"])
        self.assertEqual(self.results(), {"target0000": "success", "target0003": "success"})

    def test_names_a_target_that_cannot_be_reached_and_goes_on(self):
        lost = self.engine.folder / "lost"
        lost.write_text("#!/bin/sh\necho no route to host >&2\nexit 255\n")
        lost.chmod(0o755)
        with open(self.inventory, "a", encoding="utf-8") as inventory:
            inventory.write("[trellan]\nlost ansible_connection=ssh ansible_ssh_executable=%s\n" % lost)
        self.addCleanup(self.fleet.inventory, self.inventory)
        run = self.rollout(rollout_max_fail_percentage=50)
        self.assertEqual(run.status, 2, run.text[-3000:])
        results = self.results()
        self.assertEqual(results.pop("lost"), "unreachable")
        self.assertEqual(set(results.values()), {"success"})
        self.assertIn("no route to host", self.report()["hosts"]["lost"]["msg"])

    def test_begins_not_with_an_archive_that_has_errors(self):
        broken = self.folder / "broken"
        shutil.copytree(self.fleet.archive, broken)
        self.addCleanup(shutil.rmtree, broken)
        (broken / "hcn-cpld.bin").unlink()
        before = self.fleet.content()
        run = self.rollout(rollout_archive=str(broken))
        self.assertEqual(run.status, 2)
        self.assertEqual(run.of("Stop with an archive that is not sound")["target0000"]["result"]["msg"],
                         "no target was touched: archive.json:42:4: error: files[3] \"hcn-cpld.bin\": the archive's folder has "
                         "no such file: add it, or correct the name [missing-file]\n1 error, 0 warnings, 0 notes")
        self.assertEqual(before, self.fleet.content())
        run = self.rollout(rollout_archive="/nonexistent")
        self.assertEqual(run.status, 2)
        self.assertIn("no target was touched: ", run.text)
        self.assertIn("/nonexistent/archive.json", run.text)

    def test_begins_not_where_nothing_is_selected(self):
        before = self.fleet.content()
        run = self.engine.playbook(*self.arguments(["-e", "rollout_board_types=Nix"], {}))
        self.assertEqual(run.status, 2)
        self.assertEqual(run.of("Stop where nothing is selected")["target0000"]["result"]["msg"],
                         "no target was touched: the filters select no element of any target: nothing has board type Nix on "
                         "any target")
        self.assertEqual(before, self.fleet.content())
        self.assertEqual(list((self.fleet.folder / "lib").iterdir()), [])
        self.assertEqual(self.results(), dict.fromkeys(self.fleet.hosts, "not reached"))

    def test_tells_that_the_controller_needs_the_tool(self):
        run = self.engine.playbook(*self.arguments([], {}), tool="/nonexistent")
        self.assertEqual(run.status, 2)
        self.assertIn("no target was touched: the controller needs trellan-update on its path", run.text)


del Rollout  # has no tests of its own

if __name__ == "__main__":
    unittest.main()
