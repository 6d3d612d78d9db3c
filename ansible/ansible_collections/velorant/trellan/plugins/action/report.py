# Copyright: (c) Velorant
from __future__ import absolute_import, division, print_function

__metaclass__ = type

import datetime
import json
import os

from ansible_collections.velorant.trellan.plugins.plugin_utils.controller import (
    ControllerAction,
    read_document,
    result_of,
    write_whole,
)

TAKEN_OVER = ("status", "reasons", "written", "unlisted", "counts", "elements", "previous")


class ActionModule(ControllerAction):
    """Writes the report of a rollout, or brings it up to date with what hosts have come to."""

    ARGUMENT_SPEC = dict(
        path=dict(type="path", required=True),
        fresh=dict(type="bool", default=False),
        about=dict(type="dict"),
        hosts=dict(type="list", elements="str", required=True),
        begun=dict(type="bool", default=False),
        batch=dict(type="str"),
        survey=dict(type="str", required=True),
        update=dict(type="str"),
        after=dict(type="str"),
    )

    def run(self, tmp=None, task_vars=None):
        result = super().run(tmp, task_vars)
        args = self.arguments()
        path = args["path"]
        os.makedirs(os.path.dirname(path), exist_ok=True)
        report = {} if args["fresh"] else read_document(path)
        report.setdefault("schemaVersion", 1)
        report.setdefault("begun", now())
        report.update(args["about"] or {})
        report["written"] = now()
        hosts = report.setdefault("hosts", {})
        for host in args["hosts"]:
            hosts[host] = self.entry(args, task_vars, host)
            hosts[host]["batch"] = args["batch"]
        report["counts"] = count(hosts.values())
        write_whole(path, json.dumps(report, indent=1, ensure_ascii=False) + "\n")
        result.update(changed=False, path=path, counts=report["counts"])
        unread = [host for host in args["hosts"] if "after" in hosts[host]]
        if unread:
            result["warnings"] = ["%d could not be read behind the update: %s" % (len(unread), ", ".join(unread[:10]))]
        return result

    def entry(self, args, task_vars, host):
        if args["begun"]:
            return begun_entry()
        return host_entry(*(result_of(task_vars, host, args[name]) if args[name] else {}
                            for name in ("survey", "update", "after")))


def host_entry(survey, update, after):
    """What has become of one host: the update's result or, without one, what kept it from being reached."""
    if update and not update.get("skipped"):
        entry = update_entry(update, after)
    elif survey.get("inventory"):
        entry = {"result": "not reached", "changed": False, "msg": "its turn did not come"}
    else:
        entry = unread_entry(survey)
    if after and not after.get("skipped") and not after.get("inventory"):
        entry["after"] = unread_entry(after)
    return entry


def now():
    return datetime.datetime.now(datetime.timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ")


def begun_entry():
    """What is told of a host as long as nothing is known of the update that it has been sent, also where nobody waits for it."""
    return {"result": "unknown", "changed": None, "msg": "the update was begun; how it has ended is not known"}


def told(result):
    """The message of a task and, where its module has died, what was said last; the ssh client's words to that aside."""
    lines = [line.strip() for name in ("module_stdout", "module_stderr") for line in result.get(name, "").splitlines()]
    lines = [line for line in lines if line and not line.startswith("Shared connection to ")]
    msg = result.get("msg", "")
    # Behind the engine's first line it says where else to look for what stands here.
    return ": ".join(filter(None, [msg.partition("\n")[0], lines[-1]])) if lines else msg


def update_entry(update, after):
    """What an update has told; AFTER is what a task has read behind it, if one has."""
    if update.get("unreachable"):
        return {"result": "unreachable", "changed": None, "msg": told(update)}
    msg = told(update)
    if "result" not in update:
        # The module did not come to its end: its time was over, or it was killed. The update does not end by that.
        running = after.get("ansible_facts", {}).get("trellan", {}).get("running", False)
        state = "the update is still running" if running else "how the update has ended is not known"
        return {"result": "running" if running else "unknown", "changed": None, "msg": "%s; %s" % (msg, state)}
    entry = {"result": update["result"], "changed": update.get("changed", False), "msg": msg}
    entry.update((key, update[key]) for key in TAKEN_OVER if key in update)
    return entry


def unread_entry(survey):
    entry = {"result": "unreachable" if survey.get("unreachable") or not survey else "unreadable", "changed": False,
             "msg": told(survey) or "the target could not be reached"}
    if "reasons" in survey:
        entry["reasons"] = survey["reasons"]
    return entry


def count(entries):
    """How many hosts have come to each result, were changed, and could not be read behind their update."""
    counts = {"changed": 0}
    for entry in entries:
        for name in [entry["result"]] + (["unreadAfter"] if "after" in entry else []):
            counts[name] = counts.get(name, 0) + 1
        counts["changed"] += 1 if entry["changed"] else 0
    return counts
