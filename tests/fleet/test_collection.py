"""The collection as a product: its documentation, its examples, and that it can be built and installed."""

import importlib.util
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import yaml

from actions import action
from engine import COLLECTIONS, Engine
from fleet import PROJECT, TOOL_FOLDER, Fleet

COLLECTION = COLLECTIONS / "ansible_collections" / "velorant" / "trellan"
MODULES = ["coverage", "facts", "package", "report", "update"]
ACTIONS = ["coverage", "package", "report"]
sys.path.insert(0, str(COLLECTIONS))


def module(name):
    """The module as Python has it; it is not run."""
    found = importlib.util.spec_from_file_location(name, COLLECTION / "plugins" / "modules" / (name + ".py"))
    loaded = importlib.util.module_from_spec(found)
    found.loader.exec_module(loaded)
    return loaded


class Collection(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory(prefix="trellan-fleet-")
        cls.addClassCleanup(scratch.cleanup)
        cls.folder = Path(scratch.name)
        cls.engine = Engine(cls.folder / "engine")

    def call(self, *words, **further):
        process = subprocess.run([str(word) for word in words], cwd=self.folder, env=dict(self.engine.environment(), **further),
                                 stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8")
        self.assertEqual(process.returncode, 0, process.stderr)
        return process


class TheDocumentation(Collection):
    def test_is_shown_without_a_complaint(self):
        for kind, names in (("module", MODULES), ("role", ["rollout"])):
            for name in names:
                with self.subTest(name=name):
                    shown = self.call("ansible-doc", "-t", kind, "velorant.trellan." + name)
                    self.assertEqual(shown.stderr, "")
                    self.assertIn("VELORANT.TRELLAN." + name.upper(), shown.stdout)

    def test_has_the_options_that_the_modules_take(self):
        shown = json.loads(self.call("ansible-doc", "-t", "module", "--json",
                                     *["velorant.trellan." + name for name in MODULES]).stdout)
        for name in MODULES:
            documented = shown["velorant.trellan." + name]["doc"]["options"]
            taken_options = action(name).ARGUMENT_SPEC if name in ACTIONS else module(name).ARGUMENT_SPEC
            self.assertEqual(sorted(documented), sorted(taken_options))
            for option, taken in taken_options.items():
                with self.subTest(module=name, option=option):
                    told = documented[option]
                    for property_, default in (("type", "str"), ("elements", None), ("default", None), ("required", False)):
                        self.assertEqual(told.get(property_, default), taken.get(property_, default), property_)

    def test_stands_once(self):
        """What several modules take alike is in a fragment, not in their own documentation."""
        told = {}
        for name in MODULES:
            for option, text in yaml.safe_load(module(name).DOCUMENTATION)["options"].items():
                self.assertNotIn((option, str(text)), told)
                told[(option, str(text))] = name

    def test_of_the_role_has_the_defaults_that_it_uses(self):
        specified = yaml.safe_load((COLLECTION / "roles/rollout/meta/argument_specs.yml").read_text())["argument_specs"]
        used = yaml.safe_load((COLLECTION / "roles/rollout/defaults/main.yml").read_text())
        self.assertEqual({name: option["default"] for name, option in specified["main"]["options"].items()
                          if "default" in option}, used)


class TheExamples(Collection):
    """They are run as they stand, but for the places of the archive and of what lies on the target."""

    def in_place(self, text):
        for place, stand_in in (("/srv/firmware/23.2", self.archive), ("/srv/firmware", self.folder),
                                ("/var/lib/trellan", self.place), ("/var/tmp", self.place)):
            text = text.replace(place, str(stand_in))
        return text

    def playbook_of_the_document(self, name):
        document = (PROJECT / "docs" / "fleet.md").read_text()
        return self.in_place(document.split("```yaml %s\n" % name)[1].split("```")[0])

    def run_examples(self, name, target):
        tasks = yaml.safe_load(self.in_place(module(name).EXAMPLES))
        self.assertGreater(len(tasks), 1)
        play = [{"hosts": "trellan", "environment": {"TRELLAN_TARGET": str(target)}, "tasks": tasks}]
        run = self.engine.playbook(yaml.safe_dump(play, sort_keys=False), self.fleet.inventory(self.folder / "hosts"))
        self.assertEqual(run.status, 0, run.text)
        self.assertEqual(len({line["task"] for line in run.recorded}), len(tasks))

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.fleet = Fleet(cls.folder, 1)
        cls.addClassCleanup(cls.fleet.close)
        cls.archive = cls.fleet.archive
        cls.place = cls.folder / "place"
        cls.place.mkdir()
        (cls.engine.folder / "inventories").mkdir()

    def setUp(self):
        self.fleet.restore()
        self.target = self.fleet.target_file("target0000")

    def test_of_facts_run(self):
        self.run_examples("facts", self.target)
        kept = json.loads((self.engine.folder / "inventories" / "target0000.json").read_text())
        self.assertEqual(list(kept), ["tree"])

    def test_of_an_update_run(self):
        # The plan is made for what the examples before it leave.
        updated = self.fleet.folder / "done" / "target.json"
        shutil.copytree(self.fleet.folder / "done" / "flash", self.target.parent / "flash", dirs_exist_ok=True)
        shutil.copy(updated, self.target)
        self.make_plan()
        self.run_examples("update", self.target)

    def make_plan(self):
        with open(self.folder / "plan.json", "w", encoding="utf-8") as plan:
            subprocess.run([TOOL_FOLDER / "trellan-update", "update", self.archive, "--dry-run", "--json"], check=True,
                           stdout=plan, stderr=subprocess.DEVNULL, env=dict(os.environ, TRELLAN_TARGET=str(self.target)))

    def test_of_what_works_on_the_controller_run(self):
        for name in ("coverage", "package", "report"):
            with self.subTest(name=name):
                self.run_examples(name, self.target)


    def test_of_the_document_run(self):
        inventory = self.fleet.inventory(self.folder / "hosts")
        run = self.engine.playbook(self.playbook_of_the_document("update.yml"), inventory, TRELLAN_TARGET=str(self.target))
        self.assertEqual(run.status, 0, run.text)
        self.assertEqual(len(run.of("Update the modules")["target0000"]["result"]["written"]), 5)
        self.assertIn("Analog inputs, SN 815, IoFirmware: 6.2 -> 6.3", run.text)

    def test_of_the_document_run_where_a_target_fetches_them(self):
        repository = self.folder / "repository"
        repository.mkdir()
        (repository / "pull.yml").write_text(self.playbook_of_the_document("pull.yml"))
        git = ["git", "-C", repository, "-c", "user.name=a", "-c", "user.email=a@b.example"]
        self.call(*git, "init", "-q")
        self.call(*git, "add", "pull.yml")
        self.call(*git, "commit", "-q", "-m", "How the targets are updated")
        pulled = self.call("ansible-pull", "-U", "file://%s" % repository, "-d", self.folder / "pulled", "pull.yml",
                           TRELLAN_TARGET=str(self.target))
        self.assertIn("changed=1", pulled.stdout)


class TheProduct(Collection):
    def test_can_be_built_and_installed(self):
        self.call("ansible-galaxy", "collection", "build", COLLECTION, "--output-path", self.folder)
        built = self.folder / "velorant-trellan-1.0.0.tar.gz"
        self.call("ansible-galaxy", "collection", "install", built, "-p", self.folder / "installed")
        shown = self.call("ansible-doc", "-t", "module", "velorant.trellan.update",
                          ANSIBLE_COLLECTIONS_PATH=str(self.folder / "installed"))
        self.assertIn(str(self.folder / "installed"), shown.stdout)

    def test_is_python_that_compiles(self):
        files = sorted((COLLECTION / "plugins").rglob("*.py"))
        self.assertGreater(len(files), 10)
        for file in files:
            compile(file.read_text(), str(file), "exec")


del Collection  # has no tests of its own

if __name__ == "__main__":
    unittest.main()
