# Copyright: (c) Velorant
from __future__ import absolute_import, division, print_function

__metaclass__ = type

import datetime
import json
import os

from ansible.plugins.action import ActionBase
from ansible_collections.velorant.trellan.plugins.plugin_utils.controller import read_document, result_of, write_whole

TAKEN_OVER = ("status", "reasons", "written", "unlisted", "counts", "elements", "previous")


class ActionModule(ActionBase):
    """Writes the report of a rollout, or brings it up to date with what hosts have come to."""

    TRANSFERS_FILES = False
    _VALID_ARGS = frozenset(["path", "fresh", "about", "hosts", "batch", "survey", "update"])

    def run(self, tmp=None, task_vars=None):
        result = super().run(tmp, task_vars)
        args = self._task.args
        path = os.path.abspath(args["path"])
        os.makedirs(os.path.dirname(path), exist_ok=True)
        report = {} if args.get("fresh") else read_document(path)
        report.setdefault("schemaVersion", 1)
        report.setdefault("begun", now())
        report.update(args.get("about") or {})
        report["written"] = now()
        hosts = report.setdefault("hosts", {})
        for host in args["hosts"]:
            entry = self.entry(task_vars, host)
            entry["batch"] = args.get("batch")
            hosts[host] = entry
        report["counts"] = count(hosts.values())
        write_whole(path, json.dumps(report, indent=1, ensure_ascii=False) + "\n")
        result.update(changed=False, path=path, counts=report["counts"])
        return result

    def entry(self, task_vars, host):
        """What has become of one host: the update's result or, without one, what kept it from being reached."""
        survey = result_of(task_vars, host, self._task.args["survey"])
        update = result_of(task_vars, host, self._task.args["update"]) if self._task.args.get("update") else {}
        if update and not update.get("skipped"):
            return update_entry(update)
        if survey.get("inventory"):
            return {"result": "not reached", "changed": False, "msg": "its turn did not come"}
        return unread_entry(survey)


def now():
    return datetime.datetime.now(datetime.timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ")


def update_entry(update):
    if update.get("unreachable"):
        return {"result": "unreachable", "changed": None, "msg": update.get("msg", "")}
    entry = {"result": update.get("result", "failed"), "changed": update.get("changed", False),
             "msg": update.get("msg") or update.get("module_stderr", "")}
    entry.update((key, update[key]) for key in TAKEN_OVER if key in update)
    return entry


def unread_entry(survey):
    entry = {"result": "unreachable" if survey.get("unreachable") or not survey else "unreadable", "changed": False,
             "msg": survey.get("msg") or survey.get("module_stderr") or "the target could not be reached"}
    if "reasons" in survey:
        entry["reasons"] = survey["reasons"]
    return entry


def count(entries):
    counts = {"changed": 0}
    for entry in entries:
        counts[entry["result"]] = counts.get(entry["result"], 0) + 1
        counts["changed"] += 1 if entry["changed"] else 0
    return counts
