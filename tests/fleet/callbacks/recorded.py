"""Appends a line of JSON for each result of a task to the file that TRELLAN_RECORDED names."""

import json
import os

from ansible.plugins.callback import CallbackBase

DOCUMENTATION = """
name: recorded
type: aggregate
short_description: Record each result of a task for the tests
description: Appends a line of JSON for each result to a file.
"""


class CallbackModule(CallbackBase):
    CALLBACK_VERSION = 2.0
    CALLBACK_TYPE = "aggregate"
    CALLBACK_NAME = "recorded"

    def write(self, status, result):
        with open(os.environ["TRELLAN_RECORDED"], "a", encoding="utf-8") as file:
            file.write(json.dumps({"host": result._host.get_name(), "task": result._task.get_name(), "status": status,
                                   "result": result._result}, default=str) + "\n")

    def v2_runner_on_ok(self, result):
        self.write("ok", result)

    def v2_runner_on_failed(self, result, ignore_errors=False):
        self.write("failed", result)

    def v2_runner_on_unreachable(self, result):
        self.write("unreachable", result)

    def v2_runner_on_skipped(self, result):
        self.write("skipped", result)
