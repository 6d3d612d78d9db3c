# Copyright: (c) Velorant
from __future__ import absolute_import, division, print_function

__metaclass__ = type

import json
import os
import shutil

from ansible.errors import AnsibleActionFail
from ansible.plugins.action import ActionBase
from ansible_collections.velorant.trellan.plugins.module_utils.trellan import FILTERS
from ansible_collections.velorant.trellan.plugins.plugin_utils.controller import (
    call_tool,
    file_name,
    find_tool,
    host_of,
    result_of,
    write_whole,
)

# States of an element that an update leaves as it is because the archive does not have it, or does not have the target.
WITHOUT = ("noFile", "blocked")
BOARD = ("boardType", "serialNumber", "boardName", "unitDescription", "slot")


class ActionModule(ActionBase):
    """Writes the inventories of hosts down, and holds the archive against them."""

    TRANSFERS_FILES = False
    _VALID_ARGS = frozenset(["archive", "description", "hosts", "variable", "folder", "others", "fresh", "force",
                             "disable_custom_elements"] + [name for name, unused in FILTERS])

    def run(self, tmp=None, task_vars=None):
        result = super().run(tmp, task_vars)
        args = self._task.args
        for name in ("archive", "hosts", "variable", "folder"):
            if not args.get(name):
                raise AnsibleActionFail("the argument %s is missing" % name)
        self.tool = find_tool()
        self.options = selection(args)
        self.archive = os.path.abspath(args["archive"])
        folder = os.path.abspath(args["folder"])
        for old in args.get("fresh") or []:
            remove_coverage(old)
        os.makedirs(folder, exist_ok=True)
        if args.get("others") and not inventories(folder):
            take_over(args["others"], folder)
        unread = [host for host in args["hosts"] if not self.keep_inventory(task_vars, host, folder)]
        document = self.cover(folder)
        result.update(changed=False, folder=folder, page=folder + ".html", document=folder + ".document",
                      files=document["files"], no_file=document["noFile"], unused=document["unused"],
                      counts=sums(document["targets"]),
                      unread=unread,
                      unreadable=[target["target"] for target in document["targets"] if target["error"]],
                      boards_without_files=self.boards_without_files(document["targets"]))
        return result

    def keep_inventory(self, task_vars, host, folder):
        """Writes a host's inventory. Without one none stays that is of a time before; returns whether there is one."""
        path = os.path.join(folder, file_name(host) + ".json")
        text = result_of(task_vars, host, self._task.args["variable"]).get("inventory")
        if text:
            write_whole(path, text)
        elif os.path.exists(path):
            os.remove(path)
        return bool(text)

    def cover(self, folder):
        """The document of the coverage of all inventories in the folder; beside it the page, and the document itself."""
        call = call_tool([self.tool, "coverage", self.archive, folder, "--json", "--html", folder + ".html"] + self.options)
        try:
            document = json.loads(call.stdout)
        except ValueError:
            document = {}
        if "targets" not in document:
            raise AnsibleActionFail("the archive cannot be held against the targets: %s" % call.stderr.strip())
        write_whole(folder + ".document", call.stdout)
        return document

    def boards_without_files(self, targets):
        boards = []
        for target in targets:
            counts = target["counts"]
            if counts and any(counts[state] for state in WITHOUT):
                boards += self.boards_of(target["target"])
        return boards

    def boards_of(self, target):
        """The boards of one target of which nothing would be updated, ever: all elements, those aside that are the customer's
        own, are without a file or are blocked."""
        call = call_tool([self.tool, "compare", self.archive, "--target", target, "--json"] + self.options)
        states, labels = {}, {}
        for element in json.loads(call.stdout)["elements"]:
            board = tuple(element[key] for key in BOARD)
            states.setdefault(board, [])
            labels[board] = element["displayName"].rsplit(", ", 1)[0]
            if not element["custom"]:
                states[board].append(element["state"])
        return [{"host": host_of(target), "board": labels[board], "boardType": board[0],
                 "reason": "the archive has no file for it" if all(state == "noFile" for state in found)
                 else "the archive does not support the target"}
                for board, found in states.items() if found and all(state in WITHOUT for state in found)]


def inventories(folder):
    return [name for name in sorted(os.listdir(folder)) if name.endswith(".json")] if os.path.isdir(folder) else []


def remove_coverage(folder):
    """The inventories, and what was told of them."""
    for path in [os.path.join(folder, name) for name in inventories(folder)] + [folder + ".html", folder + ".document"]:
        if os.path.exists(path):
            os.remove(path)


def take_over(source, folder):
    for name in inventories(source):
        shutil.copyfile(os.path.join(source, name), os.path.join(folder, name))


def selection(args):
    options = ["--description", args["description"]] if args.get("description") else []
    for name, option in FILTERS:
        if args.get(name):
            options += [option, ",".join(str(value) for value in args[name])]
    for name, option in (("force", "--force"), ("disable_custom_elements", "--disable-custom-elements")):
        options += [option] if args.get(name) else []
    return options


def sums(targets):
    """How many elements of all targets are in each state."""
    counts = {}
    for target in targets:
        for state, count in (target["counts"] or {}).items():
            counts[state] = counts.get(state, 0) + count
    return counts
