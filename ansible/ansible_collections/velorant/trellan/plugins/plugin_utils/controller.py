# Copyright: (c) Velorant
"""What the role's plugins share, which all work on the controller."""
from __future__ import absolute_import, division, print_function

__metaclass__ = type

import json
import os
import shutil
import subprocess
import tempfile
from urllib.parse import quote, unquote

from jinja2 import UndefinedError

from ansible.errors import AnsibleActionFail
from ansible.plugins.action import ActionBase
from ansible_collections.velorant.trellan.plugins.module_utils.trellan import TOOL


class ControllerAction(ActionBase):
    """An action that works on the controller."""

    TRANSFERS_FILES = False
    ARGUMENT_SPEC = {}

    def arguments(self):
        """The task's arguments, with each option of ARGUMENT_SPEC. They may be written as a module's may, such as a list as one
        text with commas, or a path with "~"; paths are whole, and without links and ".."."""
        arguments = self.validate_argument_spec(self.ARGUMENT_SPEC)[1]
        for name, option in self.ARGUMENT_SPEC.items():
            if option.get("type") == "path" and arguments[name] is not None:
                arguments[name] = whole_path(name, arguments[name])
            elif option.get("elements") == "path":
                arguments[name] = [whole_path(name, path) for path in arguments[name] or []]
        return arguments


def whole_path(name, path):
    if not path:
        raise AnsibleActionFail("the argument %s is empty" % name)
    return os.path.realpath(path)


def find_tool():
    """The tool's path on the controller; an action fails where there is none."""
    path = shutil.which(TOOL) or shutil.which(TOOL, path="/usr/local/bin")
    if path is None:
        raise AnsibleActionFail("there is no %s on the path of the controller, which needs it to hold the archive against the "
                                "targets: install it there" % TOOL)
    return path


def call_tool(arguments):
    """The finished call of the tool, with what it has printed as text."""
    return subprocess.run(arguments, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False,
                          encoding="utf-8", errors="replace")


def file_name(host):
    """The name of a host's file, without its ending: each host has its own, whatever its name has in it."""
    return quote(host, safe="")


def host_of(path):
    """The host that this file is of."""
    return unquote(os.path.splitext(os.path.basename(path))[0])


def write_whole(path, text):
    """Writes a file so that a reader finds the old or the new one."""
    handle, temporary = tempfile.mkstemp(dir=os.path.dirname(path), prefix=".", suffix=".part")
    with os.fdopen(handle, "w", encoding="utf-8") as file:
        file.write(text)
    os.chmod(temporary, 0o644)
    os.replace(temporary, path)


def read_document(path):
    """The JSON document in a file, or nothing where there is none."""
    if not os.path.exists(path):
        return {}
    with open(path, encoding="utf-8") as file:
        return json.load(file)


def result_of(task_vars, host, variable):
    """What a task of this host has registered; empty for none. An action fails where the inventory has no such host."""
    try:
        return task_vars["hostvars"][host].get(variable) or {}
    except (KeyError, UndefinedError):
        raise AnsibleActionFail("the inventory has no host '%s': a host must not have a name that the engine takes for a "
                                "template, with '{{' or '{%%'" % host)
