"""What check mode knows beforehand of an update that would do nothing or fail, and that the update then does the same."""

import shutil
import subprocess
import unittest

from fleet import NOTES, TOOL_FOLDER, elements, hcn
from single_target import Module


class AnUpdateThatIsKnownToDoNothing(Module):
    DIRECT = True

    def test_is_refused_where_a_board_has_no_file(self):
        self.change_target(lambda target: hcn(target)["parameters"].update({"PRODUCT/BOARD_TYPE": "KR9999"}))
        self.expect_red_in_both_modes("refused", "the archive does not support the target; nothing was done")

    def test_is_refused_where_nothing_is_selected(self):
        self.expect_red_in_both_modes("refused", "nothing has element name Nix", element_names=["Nix"])

    def test_is_refused_with_a_faulty_archive(self):
        faulty = self.folder / "faulty"
        shutil.copytree(self.fleet.archive, faulty)
        self.addCleanup(shutil.rmtree, faulty)
        (faulty / "site.cfg").write_text("# torn\n")
        self.expect_red_in_both_modes("refused", "the stated checksum is 77930046", archive=str(faulty))
        told = self.update("--check", archive=str(faulty))
        self.assertEqual([finding["rule"] for finding in told["findings"]], ["checksum"])

    def test_is_refused_with_an_archive_that_is_not_there(self):
        self.expect_red_in_both_modes("refused", "Cannot open archive description file", archive="/nonexistent")

    def test_is_refused_by_a_plan_that_no_longer_holds(self):
        plan = self.folder / "plan.json"
        self.make_plan(plan)
        self.change_target(lambda target: elements(hcn(target))[0]["parameters"].update(VERSION="22.0"))
        self.expect_red_in_both_modes("refused", 'installedVersion was "23.1" in the plan, and is "22.0"', plan=str(plan))

    def test_is_refused_by_a_plan_that_is_not_there(self):
        self.expect_red_in_both_modes("refused", "the plan /nonexistent cannot be read", plan="/nonexistent")

    def test_is_refused_where_its_events_cannot_be_written(self):
        file, dangling, loop = self.folder / "file", self.folder / "dangling", self.folder / "loop"
        file.write_text("")
        dangling.symlink_to("/nonexistent/events")
        loop.symlink_to(loop)
        for path, reason in (("/nonexistent/events", "No such file or directory"), (dangling, "No such file or directory"),
                             (file / "events", "Not a directory"), (loop, "Too many levels of symbolic links"),
                             (self.folder / ("e" * 300), "File name too long"), (self.folder, "Is a directory")):
            self.expect_red_in_both_modes("refused", "the file of events %s cannot be written: %s" % (path, reason),
                                          events=str(path))

    def test_is_refused_where_its_output_has_no_room_at_the_target(self):
        folder = self.folder / "temporary"
        folder.mkdir()
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=128k", "temporary", folder], check=True)
        self.addCleanup(subprocess.run, ["umount", folder], check=True)
        self.expect_red_in_both_modes("refused", "no room for the tool's output in the folder for temporary files: No space left",
                                      environment={"TMPDIR": str(folder)})

    def test_is_carried_out_where_its_events_are_made_behind_a_link(self):
        link = self.folder / "link"
        link.symlink_to("made-by-the-update")
        for flags in (["--check"], []):
            self.assertEqual(self.update(*flags, events=str(link))["task_status"], "ok")
        self.assertIn('"event":"result"', (self.folder / "made-by-the-update").read_text())

    def test_is_refused_where_there_is_no_tool(self):
        for flags in (["--check"], []):
            told = self.task("update", {"archive": str(self.fleet.archive)}, *flags, tool="/nonexistent")
            self.assertEqual(told["task_status"], "failed")
            self.assertIn("there is no trellan-update on the path of this target: install it there, or add its folder to PATH",
                          told["msg"])

    def test_is_refused_where_a_path_looks_like_an_option(self):
        self.expect_red_in_both_modes("refused", "the archive or the target cannot be read", archive="--help")

    def test_leaves_a_link_in_a_path_before_it_goes_up(self):
        here = self.folder / "here"
        here.mkdir()
        self.addCleanup(shutil.rmtree, here)
        (here / "current").symlink_to(self.fleet.archive)
        shutil.copytree(self.fleet.archive, here / "archive")  # not what is meant
        (here / "archive" / "archive.json").write_text('{"files": []}')
        (here / "old").symlink_to(self.target.parent)
        told = self.update("--check", archive=str(here / "current" / ".." / "archive"),
                           target=str(here / "old" / ".." / "target0000" / "target.json"))
        self.assertEqual((told["task_status"], len(told["written"])), ("ok", 12), told["msg"])

    def test_is_refused_where_its_stall_time_out_is_none(self):
        self.expect_red_in_both_modes("refused", "'0' is no number of seconds above 0", stall_timeout=0)

    def test_is_refused_where_a_filter_holds_several_names_or_none(self):
        self.expect_red_in_both_modes("refused", "element_names: 'UserFpga,UserCpld' is no single name; nothing was done",
                                      element_names=["UserFpga,UserCpld"])
        self.expect_red_in_both_modes("refused", "board_types: '' is no single name; nothing was done", board_types=[""])

    def test_is_refused_where_the_tool_cannot_be_started(self):
        tool = self.stand_in("\x7fELF of another machine")
        self.expect_red_in_both_modes("refused", "trellan-update cannot be started; nothing was done: %s/trellan-update: Exec "
                                      "format error" % tool, tool=tool)
        told = self.task("facts", {}, tool=tool)
        self.assertEqual((told["task_status"], told["status"]), ("failed", 126))
        self.assertIn("Exec format error", told["msg"])

    def make_plan(self, plan):
        with open(plan, "wb") as output:
            subprocess.run([TOOL_FOLDER / "trellan-update", "update", self.fleet.archive, "--target", self.target, "--dry-run",
                            "--json"], check=True, stdout=output, stderr=subprocess.DEVNULL)

    def test_is_carried_out_by_a_plan_that_holds(self):
        plan = self.folder / "plan.json"
        self.make_plan(plan)
        for flags in (["--check"], []):
            told = self.update(*flags, plan=str(plan))
            self.assertEqual((told["task_status"], len(told["written"])), ("ok", 12), told["msg"])


class AnUpdateWithoutTheCheck(Module):
    """What the check finds is no reason to refuse it; but it may fail of that, and check mode knows."""

    DIRECT = True

    def archive(self, name="copy"):
        archive = self.folder / name
        shutil.copytree(self.fleet.archive, archive)
        self.addCleanup(shutil.rmtree, archive)
        return archive

    def expect(self, status, part, written, archive, **options):
        """The same of check mode and of the update; of this the elements that are WRITTEN."""
        for flags in (["--check"], []):
            with self.subTest(flags=flags):
                told = self.update(*flags, archive=str(archive), check=False, **options)
                self.assertEqual((told["task_status"], len(told["written"]), told["changed"]), (status, written, written > 0),
                                 told["msg"])
                if flags:
                    self.assertIn(part, told["msg"])

    def test_fails_where_a_file_is_missing(self):
        archive = self.archive()
        (archive / "site.cfg").unlink()
        self.expect("failed", "the update would fail: site.cfg: the archive's folder has no such file", 11, archive)

    def test_fails_where_a_path_cannot_be_handed_to_a_shell(self):
        self.expect("failed", "must not have a blank: move the archive to another folder", 0, self.archive("with blank"),
                    element_names=["SiteSettings"])

    def test_fails_where_what_it_writes_is_not_what_was_stated_and_that_is_looked_at(self):
        archive = self.archive()
        (archive / "site.cfg").write_text("# other content\n")
        self.expect("failed", "the update would fail: site.cfg: the stated checksum is 77930046", 12, archive)
        self.fleet.restore()
        self.expect("ok", "12 elements would be updated", 12, archive, verify=False)

    def test_succeeds_where_the_target_does_not_tell_what_it_has(self):
        archive = self.archive()
        (archive / "notes.txt").write_text("%s and more" % NOTES)
        self.change_target(lambda target: hcn(target)["parameters"].update({"PRODUCT/VARIANT": "X"}))
        self.expect("ok", "13 elements would be updated", 13, archive)


del Module  # has no tests of its own

if __name__ == "__main__":
    unittest.main()
