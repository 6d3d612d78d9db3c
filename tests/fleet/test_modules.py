"""The modules on single targets: what they foretell, do and tell, whatever happens to them."""

import fcntl
import os
import signal
import tempfile
import unittest
from unittest import mock

from actions import utility
from fleet import TOOL_FOLDER, elements, hcn
from single_target import Module
from tool_processes import processes_of_target, wait_for


class AnUpdate(Module):
    def test_tells_what_it_writes_and_why(self):
        told = self.update(element_names=["UserFirmware"], serial_numbers=["5000"])
        self.assertEqual(told["task_status"], "ok")
        self.assertTrue(told["changed"])
        self.assertEqual(told["written"], ["Processor board, SN 5000, Firmware"])
        self.assertEqual(told["reasons"], ["Processor board, SN 5000, Firmware: 23.1 -> 23.2"])
        self.assertEqual(told["msg"], "1 element was updated: Processor board, SN 5000, Firmware: 23.1 -> 23.2")
        self.assertEqual(told["counts"], {"updated": 1})
        self.assertEqual((told["elements"][0]["state"], told["elements"][0]["verified"]), ("updated", True))
        again = self.update(element_names=["UserFirmware"])
        self.assertEqual((again["changed"], again["msg"], again["written"]), (False, "nothing to do", []))

    def test_names_as_the_reason_what_is_otherwise_than_in_the_archive(self):
        self.update(board_types=["KR5120"])

        def change(target):
            firmware, fpga, loader, cpld = [element["parameters"] for element in elements(hcn(target))]
            firmware.update(VERSION="24.0")
            fpga.update(CHECKSUM_CRC32=4)
            loader.update(ACTIVE=0)
            cpld.update(VALID=0)

        self.change_target(change)
        self.assertEqual(self.update("--check", board_types=["KR5120"])["reasons"], [
            "Processor board, SN 5000, Firmware: 24.0 -> 23.2 (downgrade)",
            "Processor board, SN 5000, FPGA: another checksum",
            "Processor board, SN 5000, Bootloader: what is installed is not in use",
            "Processor board, SN 5000, CPLD: nothing sound is installed"])
        self.fleet.restore()
        self.assertEqual(self.update("--check", element_names=["UserIpl"], force=True)["reasons"], [
            "Processor board, SN 5000, Bootloader: written again, as it was asked for"])

    def test_shows_the_versions_before_and_after_in_diff_mode(self):
        expected = {"before_header": "installed", "after_header": "updated",
                    "before": "Processor board, SN 5000, Firmware: 23.1 (checksum 305419896)\n"
                              "Compute node, SN 4711, Firmware: 23.1 (checksum 2596069104)\n",
                    "after": "Processor board, SN 5000, Firmware: 23.2 (checksum 2091406745)\n"
                             "Compute node, SN 4711, Firmware: 23.2 (checksum 1280176282)\n"}
        options = {"element_names": ["UserFirmware", "CnFirmware"]}
        self.assertEqual(self.update("--check", "--diff", **options)["diff"], expected)
        self.assertEqual(self.update("--diff", **options)["diff"], expected)
        self.assertNotIn("diff", self.update("--diff", **options))

    def test_takes_the_tools_filters_and_flags(self):
        for options, written in ((dict(board_types=["AI8100"]), 3), (dict(board_types=["AI8100", "CN7210"]), 7),
                                 (dict(exclude=[0, 1, 3]), 9), (dict(force=True), 13), (dict(configuration=True), 0)):
            with self.subTest(options=options):
                told = self.update("--check", **options)
                self.assertEqual((told["task_status"], len(told["written"])), ("ok", written), told["msg"])

    def test_warns_of_a_filter_that_selects_nothing(self):
        told = self.update("--check", serial_numbers=["815", "99"])
        self.assertEqual(told["task_status"], "ok")
        self.assertIn("nothing has serial number 99", told["warnings"][0])

    def test_is_changed_where_it_failed_half_way_and_not_where_nothing_was_written(self):
        self.change_target(lambda target: target.update(script={"elements": {"/ROOT/HCN#1": {
            "start": [{"errors": [{"code": 7, "text": "no room"}]}]}}}))
        told = self.update(element_names=["UserFirmware"])
        self.assertEqual((told["task_status"], told["changed"], told["written"]), ("failed", False, []), told["msg"])
        told = self.update()
        self.assertEqual((told["task_status"], told["changed"], len(told["written"])), ("failed", True, 11), told["msg"])
        self.assertEqual(told["reasons"], ["Processor board, SN 5000, Firmware: no room"])

    def test_is_changed_where_an_element_failed_that_has_been_written_to(self):
        self.change_target(lambda target: target.update(script={"elements": {"/ROOT/HCN#1": {
            "finish": [{"results": [{"code": 9, "text": "worn out"}]}]}}}))
        told = self.update("--diff", element_names=["UserFirmware"])
        self.assertEqual((told["task_status"], told["changed"]), ("failed", True), told["msg"])
        self.assertEqual(told["written"], ["Processor board, SN 5000, Firmware"])
        self.assertEqual(told["diff"]["after"], "Processor board, SN 5000, Firmware: 23.2 (checksum 2091406745)\n")

    def test_verifies_only_where_that_is_asked_for(self):
        told = self.update(element_names=["UserFirmware"], verify=False)
        self.assertNotIn("verified", told["elements"][0])


class WhatAProgramInTheToolsPlaceTells(Module):
    DIRECT = True

    def test_is_no_success_where_it_is_nothing_or_only_a_part_or_another_document(self):
        head = '{"schemaVersion": 1, "command": "update"'
        for content in ("", "echo null", "echo '[]'", "echo '%s, \"elements\": null}'" % head,
                        "echo '%s, \"elements\": [{\"index\": 0, \"state\": \"updated\"}]}'" % head,
                        "echo '%s, \"elements\": [7]}'" % head, "echo '%s, \"error\": \"none\"}'" % head,
                        "head -c 100000 /dev/zero | tr '\\0' '['",
                        "%s/trellan-update \"$@\" | head -c 300" % TOOL_FOLDER):
            with self.subTest(content):
                tool = self.stand_in("#!/bin/sh\n%s\n" % content)
                for flags in (["--check"], []):
                    told = self.update(*flags, tool=tool)
                    # What was written by then is not known.
                    self.assertEqual((told["task_status"], told["result"], told["changed"]),
                                     ("failed", "failed", flags == []), told["msg"])
                    self.assertIn("trellan-update has not told what it has done", told["msg"])
                facts = self.task("facts", {}, tool=tool)
                self.assertEqual(facts["task_status"], "failed")
                self.assertIn("trellan-update has not told what it has read", facts["msg"])

    def test_is_nothing_done_where_the_loader_finds_no_library(self):
        reason = "/usr/bin/trellan-update: error while loading shared libraries: libx.so.1: cannot open shared object file"
        tool = self.stand_in("#!/bin/sh\necho '%s' >&2\nexit 127\n" % reason)
        for flags in (["--check"], []):
            told = self.update(*flags, tool=tool)
            self.assertEqual((told["task_status"], told["result"], told["changed"], told["reasons"]),
                             ("failed", "refused", False, [reason]))
            self.assertEqual(told["msg"], "trellan-update cannot be started; nothing was done: " + reason)
        facts = self.task("facts", {}, tool=tool)
        self.assertEqual(facts["reasons"], [reason])

    def test_is_told_with_its_last_words_where_it_dies(self):
        tool = self.stand_in("#!/bin/sh\nprintf 'one\\ntwo\\n\\nthree\\nlogic.cpp:7: assertion failed\\n' >&2\nkill -6 $$\n")
        told = self.update(tool=tool)
        self.assertEqual((told["result"], told["status"], told["changed"]), ("interrupted", -6, True))
        self.assertEqual(told["reasons"], ["two", "three", "logic.cpp:7: assertion failed"])

    def test_may_have_been_written_where_it_failed_and_its_output_is_lost(self):
        lost = "#!/bin/sh\n[ $1 = update ] || exec %s/trellan-update \"$@\"\n%s/trellan-update \"$@\" >/dev/full\n" % (
            TOOL_FOLDER, TOOL_FOLDER)
        for options in ({}, {"events": str(self.events)}):
            self.fleet.restore()
            before = self.fleet.content()
            told = self.update(tool=self.stand_in(lost), **options)
            self.assertNotEqual(before, self.fleet.content())
            self.assertEqual((told["task_status"], told["result"], told["changed"]), ("failed", "failed", True))
            self.assertIn("the update failed: standard output cannot be written", told["msg"])
        again = self.update(tool=self.stand_in(lost), **options)
        self.assertFalse(again["changed"], again["msg"])  # its events tell that it had nothing to do

    def test_may_have_been_written_where_it_was_killed_and_its_events_are_not_kept(self):
        told = self.update(tool=self.stand_in("#!/bin/sh\nkill -9 $$\n"), events="/dev/null")
        self.assertEqual((told["task_status"], told["result"], told["changed"]), ("failed", "interrupted", True))


class AFileOfEvents(unittest.TestCase):
    def test_is_held_as_soon_as_another_has_looked_whether_an_update_is_running(self):
        events = utility("events")
        with tempfile.NamedTemporaryFile() as file, open(file.name, "rb") as looking:
            fcntl.flock(looking, fcntl.LOCK_SH)
            with mock.patch("time.sleep", lambda seconds: fcntl.flock(looking, fcntl.LOCK_UN)):
                with events.hold_events(file.name):
                    self.assertRaises(events.StillRunning, events.look_for_running, file.name)
            fcntl.flock(looking, fcntl.LOCK_EX)
            self.assertRaises(events.StillRunning, events.hold_events, file.name)


class AnUpdateThatIsDisturbed(Module):
    """The processor board's firmware has 29,000 bytes, and no element of the first phase more than 20,092."""

    def setUp(self):
        super().setUp()
        self.options = {"archive": str(self.fleet.archive), "events": str(self.events)}

    def be_slow(self, bytes_per_second):
        self.change_target(lambda target: target.update(clock="real", bytesPerSecond=bytes_per_second))

    def begin(self):
        """An engine at work, when the tool has begun a phase, and the tool's process."""
        self.engine.recorded.write_text("")
        playbook = self.engine.folder / "playbook.yml"
        playbook.write_text(self.playbook("update", self.options))
        engine = self.engine.start(["ansible-playbook", "-i", self.inventory, playbook])
        self.addCleanup(engine.stdout.close)
        wait_for(lambda: self.events.exists() and '"event":"progress"' in self.events.read_text())
        tools = processes_of_target(self.target)
        self.assertEqual(len(tools), 1)
        self.addCleanup(self.end_tool)
        return engine, tools[0]

    def end_tool(self):
        for process in processes_of_target(self.target):
            os.kill(process.pid, signal.SIGKILL)

    def end(self, engine):
        line = self.engine.finished(engine).of("Task")["target0000"]
        return dict(line["result"], task_status=line["status"])

    def test_is_told_as_interrupted_where_a_signal_ended_it(self):
        self.be_slow(2500)
        engine, tool = self.begin()
        os.kill(tool.pid, signal.SIGTERM)
        told = self.end(engine)
        self.assertEqual((told["task_status"], told["result"], told["status"]), ("failed", "interrupted", 143), told["msg"])
        self.assertIn("the update was interrupted by SIGTERM: it ended in order, and no target stays locked", told["msg"])
        self.assertTrue(told["changed"])
        self.assertEqual(told["counts"], {"updated": 5, "notStarted": 7, "upToDate": 1, "noFile": 1})

    def test_is_a_success_where_a_signal_came_in_its_last_phase(self):
        self.options["board_types"] = ["KR5120"]
        self.be_slow(4000)
        engine, tool = self.begin()
        os.kill(tool.pid, signal.SIGTERM)
        told = self.end(engine)
        self.assertEqual((told["task_status"], told["status"]), ("ok", 0), told["msg"])

    def test_is_told_as_killed_where_the_tool_was_killed(self):
        self.be_slow(2000)
        engine, tool = self.begin()
        os.kill(tool.pid, signal.SIGKILL)
        told = self.end(engine)
        self.assertEqual((told["task_status"], told["result"], told["status"]), ("failed", "interrupted", -9), told["msg"])
        self.assertEqual(told["reasons"], [])
        self.assertIn("trellan-update was killed by SIGKILL", told["msg"])
        self.assertTrue(told["changed"])  # a phase had begun, so that it cannot be ruled out

    def test_goes_on_where_the_module_is_killed_and_the_next_run_finds_its_result(self):
        self.options["board_types"] = ["KR5120"]
        self.be_slow(4000)
        engine, tool = self.begin()
        os.kill(tool.pid, signal.SIGSTOP)  # so that it has not ended however long the further runs take
        os.kill(tool.parent, signal.SIGKILL)
        self.assertEqual(self.end(engine)["task_status"], "failed")
        for flags in (["--check"], []):
            told = self.task("update", self.options, *flags)
            self.assertEqual((told["task_status"], told["changed"], told.get("running")), ("failed", False, True), told["msg"])
            self.assertIn("an earlier update with the file of events %s is still running; nothing was done" % self.events,
                          told["msg"])
        os.kill(tool.pid, signal.SIGCONT)
        wait_for(lambda: not processes_of_target(self.target))
        told = self.task("update", self.options)
        self.assertEqual((told["task_status"], told["changed"], told["msg"]), ("ok", False, "nothing to do"))
        self.assertEqual(told["previous"]["result"], "success")
        self.assertEqual([(element["name"], element["state"]) for element in told["previous"]["elements"]],
                         [("UserFirmware", "updated"), ("UserFpga", "updated"), ("UserCpld", "updated")])
        facts = self.task("facts", {"events": str(self.events)})
        self.assertEqual(facts["ansible_facts"]["trellan"]["last_update"]["elements"], [])

    def test_is_told_as_stalled_and_given_up(self):
        self.change_target(lambda target: target.update(script={"elements": {"/ROOT/HCN#1": {
            "polls": [{"status": 1, "done": 5, "total": 100}] * 400}}}))
        told = self.update(stall_timeout=10, board_types=["KR5120"])
        self.assertEqual((told["task_status"], told["result"], told["status"]), ("failed", "stalled", 8), told["msg"])
        self.assertIn("the update has stalled and was given up, and the target is unlocked: no progress for 10 s", told["msg"])
        self.assertIn("not updated: Processor board, SN 5000, Firmware, 23.1 -> 23.2 (still running)", told["reasons"])
        self.assertEqual(told["counts"], {"running": 1, "upToDate": 1, "updated": 2})


class Facts(Module):
    def test_tell_what_is_installed_and_whether_it_can_be_rebooted(self):
        told = self.task("facts", {})["ansible_facts"]["trellan"]
        self.assertEqual(len(told["elements"]), 14)
        self.assertEqual((told["elements"][0]["displayName"], told["elements"][0]["installedVersion"]),
                         ("Processor board, SN 5000, Firmware", "23.1"))
        self.assertEqual(told["reboot"], {"supported": False, "state": 2})
        self.update()
        told = self.task("facts", {"element_names": ["UserFirmware"]}, "--check")["ansible_facts"]["trellan"]
        self.assertEqual([element["installedVersion"] for element in told["elements"]], ["23.2"])
        self.assertEqual(told["reboot"], {"supported": True, "state": 0})

    def test_have_an_inventory_against_which_check_mode_tells_the_same(self):
        there = self.update("--check", "--diff")
        recorded = self.folder / "recorded.json"
        recorded.write_text(self.task("facts", {"inventory": True})["inventory"])
        here = self.update("--check", "--diff", target=str(recorded))
        for member in ("written", "reasons", "elements", "counts", "diff", "changed"):
            self.assertEqual(there[member], here[member])

    def test_tell_what_an_update_with_a_file_of_events_would_be_refused_for(self):
        file = self.folder / "file"
        file.write_text("")
        for events, hindered, missing in ((file, False, False), (self.folder / "none" / "events", True, True),
                                          (file / "none" / "events", True, False), (self.folder, True, False)):
            with self.subTest(events):
                told = self.task("facts", {"events": str(events)})["ansible_facts"]["trellan"]
                self.assertEqual((told["hindrance"] is not None, told["running"], told["missing_folder"]),
                                 (hindered, False, missing))

    def test_fail_with_the_reason_where_the_target_cannot_be_read(self):
        told = self.task("facts", {"target": "/nonexistent"})
        self.assertEqual(told["task_status"], "failed")
        self.assertIn("The target file /nonexistent cannot be read: No such file or directory.", told["msg"])


del Module  # has no tests of its own

if __name__ == "__main__":
    unittest.main()
