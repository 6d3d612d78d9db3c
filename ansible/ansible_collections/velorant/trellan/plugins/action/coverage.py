# Copyright: (c) Velorant
from __future__ import absolute_import, division, print_function

__metaclass__ = type

import json
import os
import shutil

from ansible.errors import AnsibleActionFail
from ansible_collections.velorant.trellan.plugins.module_utils.trellan import (
    FILTER_SPEC,
    FILTERS,
    Outcome,
    no_single_name,
    sentence,
)
from ansible_collections.velorant.trellan.plugins.plugin_utils.controller import (
    ControllerAction,
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


class ActionModule(ControllerAction):
    """Writes the inventories of hosts down, and holds the archive against them."""

    ARGUMENT_SPEC = dict(
        FILTER_SPEC,
        archive=dict(type="path", required=True),
        description=dict(type="str", default="archive.json"),
        hosts=dict(type="list", elements="str", required=True),
        variable=dict(type="str", required=True),
        folder=dict(type="path", required=True),
        others=dict(type="path"),
        fresh=dict(type="list", elements="path"),
        force=dict(type="bool", default=False),
        disable_custom_elements=dict(type="bool", default=False),
    )

    def run(self, tmp=None, task_vars=None):
        result = super().run(tmp, task_vars)
        args = self.arguments()
        self.tool = find_tool()
        self.options = selection(args)
        self.archive, folder = args["archive"], args["folder"]
        for old in args["fresh"]:
            remove_coverage(old)
        os.makedirs(folder, exist_ok=True)
        if args["others"] and not inventories(folder):
            take_over(args["others"], folder)
        unread = [host for host in args["hosts"]
                  if not keep_inventory(result_of(task_vars, host, args["variable"]), host, folder)]
        document, words = self.cover(folder)
        result.update(changed=False, folder=folder, page=folder + ".html", document=folder + ".document",
                      files=document["files"], no_file=document["noFile"], unused=document["unused"],
                      counts=sums(document["targets"]),
                      unread=unread,
                      unreadable=[target["target"] for target in document["targets"] if target["error"]],
                      boards_without_files=self.boards_without_files(document["targets"]))
        if selects_nothing(args, document["targets"]):
            result.update(failed=True, msg=sentence("the filters select no element of any target", words))
        return result

    def cover(self, folder):
        """The document of the coverage of all inventories in the folder, and the tool's words to it; beside it are written the
        page, and the document itself."""
        call = call_tool([self.tool, "coverage", self.archive, folder, "--json", "--html", folder + ".html"] + self.options)
        try:
            document = json.loads(call.stdout)
        except ValueError:
            document = {}
        if "targets" not in document:
            raise AnsibleActionFail("the archive cannot be held against the targets: %s" % call.stderr.strip())
        write_whole(folder + ".document", call.stdout)
        return document, Outcome(call.returncode, "", call.stderr).own_words

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


def keep_inventory(read, host, folder):
    """Writes the inventory that was READ of a host. Without one none stays that is of a time before; returns whether there is
    one."""
    path = os.path.join(folder, file_name(host) + ".json")
    text = read.get("inventory")
    if text:
        write_whole(path, text)
    elif os.path.exists(path):
        os.remove(path)
    return bool(text)


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
    """The tool's options for what is held against the archive."""
    mistake = no_single_name(args)
    if mistake:
        raise AnsibleActionFail(mistake)
    options = ["--description", args["description"]]
    for name, option in FILTERS:
        if args[name]:
            options += [option, ",".join(args[name])]
    for name, option in (("force", "--force"), ("disable_custom_elements", "--disable-custom-elements")):
        options += [option] if args[name] else []
    return options


def selects_nothing(args, targets):
    """Whether there are filters, and targets that can be read, but no element that is selected."""
    read = [target for target in targets if target["counts"]]
    return any(args[name] for name, unused in FILTERS) and bool(read) and not any(sums(read).values())


def sums(targets):
    """How many elements of all targets are in each state."""
    counts = {}
    for target in targets:
        for state, count in (target["counts"] or {}).items():
            counts[state] = counts.get(state, 0) + count
    return counts
