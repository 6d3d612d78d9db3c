"""What works on the controller, called as the engine's own process calls it, and with arguments as a command line gives them."""

import json
import os
import shutil
import subprocess
import tarfile
import tempfile
import types
import unittest
from pathlib import Path
from unittest import mock

from ansible.errors import AnsibleActionFail

from actions import action
from fleet import EXAMPLES, TOOL_FOLDER


class OnTheController(unittest.TestCase):
    """A scratch folder that the engine was begun in, and one old target, of which "installed" is registered."""

    @classmethod
    def setUpClass(cls):
        cls.inventory = subprocess.run([TOOL_FOLDER / "trellan-update", "record", "--target", EXAMPLES / "target.json"],
                                       check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                       encoding="utf-8").stdout

    def setUp(self):
        scratch = tempfile.TemporaryDirectory(prefix="trellan-fleet-")
        self.addCleanup(scratch.cleanup)
        self.folder = Path(scratch.name).resolve()
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(self.folder)
        self.variables = {"hostvars": {"rack": {"installed": {"inventory": self.inventory}}}}

    def act(self, name, **arguments):
        task = types.SimpleNamespace(args=arguments, async_val=0, check_mode=False, action="action")
        connection = types.SimpleNamespace(_shell=types.SimpleNamespace(tmpdir=str(self.folder)))
        with mock.patch.dict(os.environ, PATH="%s:%s" % (TOOL_FOLDER, os.environ["PATH"]), HOME=str(self.folder / "home")):
            return action(name)(task, connection, None, None, None, None).run(None, self.variables)

    def cover(self, **arguments):
        return self.act("coverage", **dict({"archive": str(EXAMPLES / "archive"), "hosts": ["rack"], "variable": "installed",
                                          "folder": "before"}, **arguments))

    def refusal(self, name, **arguments):
        with self.assertRaises(AnsibleActionFail) as raised:
            self.act(name, **arguments)
        return str(raised.exception)


class Coverage(OnTheController):
    def test_takes_lists_and_booleans_that_are_texts(self):
        told = self.cover(board_types="AI8100, CN7210", force="false", hosts="rack", fresh="before")
        self.assertEqual({state: count for state, count in told["counts"].items() if count}, {"update": 7})
        self.assertEqual(self.cover(board_types=["AI8100"])["counts"]["update"], 3)
        told = self.cover(serial_numbers=815)
        self.assertEqual(told["counts"]["update"], 3)

    def test_fails_where_nothing_of_any_target_is_selected(self):
        told = self.cover(board_types="Nix")
        self.assertTrue(told["failed"])
        self.assertEqual(told["msg"], "the filters select no element of any target: nothing has board type Nix on any target")
        self.assertEqual(sum(told["counts"].values()), 0)
        self.variables["hostvars"]["rack"] = {}
        told = self.cover(board_types="Nix")  # nothing is known of any target
        self.assertEqual((told.get("failed"), told["unread"]), (None, ["rack"]))

    def test_fails_with_a_filter_that_holds_several_names_or_none(self):
        self.assertIn("element_names: 'A,B' is no single name", self.refusal(
            "coverage", archive=str(EXAMPLES / "archive"), hosts=["rack"], variable="installed", folder="before",
            element_names=["A,B"]))


class Report(OnTheController):
    def entry(self, **options):
        self.act("report", path="report.json", hosts="rack", survey="installed", **options)
        report = json.loads((self.folder / "report.json").read_text())
        return report["hosts"]["rack"], report["counts"]

    def test_tells_of_an_update_that_is_begun_that_its_end_is_not_known(self):
        told = {"failed": True, "msg": "the update failed", "result": "failed", "changed": True}
        self.variables["hostvars"]["rack"]["updated"] = told
        self.assertEqual(self.entry(begun=True, batch="first"), (
            {"result": "unknown", "changed": None, "batch": "first",
             "msg": "the update was begun; how it has ended is not known"}, {"changed": 0, "unknown": 1}))
        self.assertEqual(self.entry(update="updated"), (
            {"result": "failed", "changed": True, "batch": None, "msg": "the update failed"}, {"changed": 1, "failed": 1}))

    def test_has_the_last_words_of_a_module_that_died(self):
        died = {"failed": True, "msg": "MODULE FAILURE\nSee stdout/stderr for the exact error", "rc": 127,
                "module_stdout": "/bin/sh: 1: /usr/bin/python3: not found\r\n",
                "module_stderr": "Shared connection to rack closed.\r\n"}
        self.variables["hostvars"]["rack"].update(installed=died, updated=died)
        words = "MODULE FAILURE: /bin/sh: 1: /usr/bin/python3: not found"
        self.assertEqual(self.entry()[0], {"result": "unreadable", "changed": False, "batch": None, "msg": words})
        self.assertEqual(self.entry(update="updated")[0]["msg"], words + "; how the update has ended is not known")


class APackage(OnTheController):
    def pack(self, archive):
        packed = self.act("package", archive=archive, folder="packed")
        with tarfile.open(packed["path"]) as content:
            return packed, [name.partition("/")[2] for name in content.getnames()]

    def test_has_the_files_and_leaves_out_what_is_none(self):
        archive, elsewhere = self.folder / "archive", self.folder / "elsewhere"
        (archive / "sub").mkdir(parents=True)
        elsewhere.mkdir()
        for file in (archive / "a.bin", archive / "sub" / "b.bin", elsewhere / "c.bin"):
            file.write_text(file.name)
        (archive / "linked").symlink_to(elsewhere)
        (archive / "again").symlink_to(elsewhere)
        (archive / "d.bin").symlink_to(elsewhere / "c.bin")
        (archive / "nothing").symlink_to("/nonexistent")
        (archive / "sub" / "up").symlink_to("..")
        (archive / "sub" / "across").symlink_to(archive / "sub2")
        (archive / "sub2").mkdir()
        (archive / "sub2" / "back").symlink_to(archive / "sub")
        os.mkfifo(archive / "pipe")
        packed, names = self.pack("archive")
        self.assertEqual(names, ["a.bin", "again/c.bin", "d.bin", "linked/c.bin", "sub/b.bin", "sub2/back/b.bin", ""])
        self.assertEqual(packed["warnings"],
                         ["left out, since they are neither files nor folders that end: nothing, pipe, sub/across/back, sub/up, "
                          "sub2/back/across, sub2/back/up"])

    def test_that_cannot_be_written_is_told_with_the_reason(self):
        (self.folder / "file").write_text("")
        self.assertIn("cannot be packed: [Errno 20] Not a directory", self.refusal(
            "package", archive=str(EXAMPLES / "archive"), folder="file/folder"))


class Paths(OnTheController):
    def test_have_the_users_folder_for_a_tilde(self):
        home = self.folder / "home"
        home.mkdir()
        shutil.copytree(EXAMPLES / "archive", home / "archive")
        told = self.cover(archive="~/archive", folder="~/before", others="~/other")
        self.assertEqual(told["page"], str(home / "before.html"))
        self.assertEqual(Path(self.act("package", archive="$HOME/archive", folder="~")["path"]).parent, home)
        self.act("report", path="~/report.json", hosts="rack", survey="installed", fresh="false")
        self.assertEqual(json.loads((home / "report.json").read_text())["hosts"]["rack"]["result"], "not reached")
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()), ["home"])

    def test_leave_a_link_before_they_go_up(self):
        new, here = self.folder / "data" / "new", self.folder / "here"
        shutil.copytree(EXAMPLES / "archive", new)
        (self.folder / "data" / "old").mkdir()
        here.mkdir()
        (here / "current").symlink_to(self.folder / "data" / "old")
        (here / "new").mkdir()  # not what is meant
        archive = "here/current/../new"
        self.assertEqual(self.cover(archive=archive)["counts"]["update"], 12)
        packed = self.act("package", archive=archive, folder=".")
        with tarfile.open(packed["path"]) as content:
            self.assertIn(packed["name"] + "/hcn-firmware.bin", content.getnames())

    def test_of_an_action_may_not_be_empty(self):
        self.assertEqual(self.refusal("package", archive="", folder="."), "the argument archive is empty")


del OnTheController  # has no tests of its own

if __name__ == "__main__":
    unittest.main()
