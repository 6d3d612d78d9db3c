#!/usr/bin/python
# Copyright: (c) Velorant
from __future__ import absolute_import, division, print_function

__metaclass__ = type

DOCUMENTATION = r"""
module: facts
short_description: Tell what is installed on a target
description:
  - Reads what is installed on a target, and whether it can be rebooted by itself, with C(trellan-update).
  - Nothing is changed, so that it does the same in check mode.
options:
  configuration:
    description: Tell of the configuration elements instead of the others.
    type: bool
    default: false
  inventory:
    description:
      - Return the target's whole inventory too, as the text of a target file. Against it C(compare), C(explain) and a dry run
        tell on any machine what they tell at the target.
    type: bool
    default: false
  events:
    description:
      - Tell of the last update in this file of events, which the module M(velorant.trellan.update) has written, and whether
        one is running.
    type: path
attributes:
  check_mode:
    description: Can run in check mode, and changes nothing anyway.
    support: full
  diff_mode:
    description: Shows what has changed; nothing does.
    support: none
author:
  - Velorant (@velorant)
extends_documentation_fragment:
  - velorant.trellan.shared.filters
  - velorant.trellan.shared.target
seealso:
  - module: velorant.trellan.update
"""

EXAMPLES = r"""
- name: See what is installed
  velorant.trellan.facts:
  register: installed

- name: Name the firmware of each processor board
  ansible.builtin.debug:
    msg: "{{ item.displayName }}: {{ item.installedVersion }}"
  loop: "{{ trellan.elements | selectattr('name', 'equalto', 'UserFirmware') }}"

- name: Learn how an update ended whose connection was lost
  velorant.trellan.facts:
    events: /var/lib/trellan/events.jsonl

- name: Take the inventory along, to try archives without the target
  velorant.trellan.facts:
    inventory: true
  register: installed

- name: Keep it as a target file
  ansible.builtin.copy:
    content: "{{ installed.inventory }}"
    dest: "inventories/{{ inventory_hostname }}.json"
    mode: "0644"
  delegate_to: localhost
"""

RETURN = r"""
ansible_facts:
  description: What was found out.
  returned: success
  type: dict
  contains:
    trellan:
      description: The target.
      type: dict
      returned: success
      contains:
        elements:
          description: What can be updated on it, with versions and checksums, as C(trellan-update installed --json) has it.
          type: list
          elements: dict
          returned: success
        reboot:
          description: Whether it can be rebooted by itself.
          type: dict
          returned: success
          contains:
            supported:
              description: Whether it can.
              type: bool
              returned: success
            state:
              description: >-
                0, it can; 1, it has no active firmware; 2, the installed firmware does not support it; 3, the device does not;
                4, checking failed.
              type: int
              returned: success
        running:
          description: Whether an update with this file of events is running.
          type: bool
          returned: when C(events) is given
        hindrance:
          description: >-
            Why an update with this file of events would be refused now, since one is running or the file cannot be written;
            none for nothing.
          type: str
          returned: when C(events) is given
        missing_folder:
          description: Whether the hindrance is that the folder for this file of events is missing.
          type: bool
          returned: when C(events) is given
        last_update:
          description: The last update in the file of events, as C(trellan-update history --json) has it; none for none.
          type: dict
          returned: when C(events) is given
inventory:
  description: The text of a target file.
  returned: when C(inventory) is true
  type: str
reasons:
  description: Why the target, or something of it, cannot be read.
  returned: failure
  type: list
  elements: str
  sample: ["ERROR 0x26300001 (reported by Host PC): Parameter ACTIVE of /ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT does not exist."]
status:
  description: The tool's exit status.
  returned: failure
  type: int
"""

import errno
import os

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.velorant.trellan.plugins.module_utils.events import (
    StillRunning,
    last_update,
    look_for_running,
    not_writable,
    still_running,
)
from ansible_collections.velorant.trellan.plugins.module_utils.trellan import (
    FAILED,
    FILTER_SPEC,
    SUCCESS,
    failure_reasons,
    find_tool,
    reading_arguments,
    run_tool,
    sentence,
    understood,
)

ARGUMENT_SPEC = dict(
    FILTER_SPEC,
    target=dict(type="path"),
    configuration=dict(type="bool", default=False),
    inventory=dict(type="bool", default=False),
    events=dict(type="path"),
)


def read(module, arguments, member, statuses=(SUCCESS,)):
    """The outcome of a call that must end with one of these statuses, and have a document with this member; else the module
    fails."""
    outcome = run_tool(arguments)
    if outcome.status not in statuses or member not in outcome.document:
        reasons = failure_reasons(outcome) if outcome.status != SUCCESS else []
        reasons = reasons or ["%s has not told what it has read" % arguments[0]]
        module.fail_json(msg=sentence("the target cannot be read", reasons), reasons=reasons, status=outcome.status)
    return outcome


def hindrance(path):
    """Why an update with this file of events would be refused, and what of that can be told apart."""
    told = {"hindrance": None, "running": False, "missing_folder": False}
    try:
        look_for_running(path)
    except StillRunning:
        told.update(hindrance=still_running(path), running=True)
    except OSError as error:
        told.update(hindrance=not_writable(path, error),
                    missing_folder=error.errno == errno.ENOENT and not os.path.lexists(os.path.dirname(path)))
    return told


def main():
    module = AnsibleModule(argument_spec=ARGUMENT_SPEC, supports_check_mode=True)
    parameters = understood(module)
    tool = find_tool(module)
    selected = reading_arguments(parameters)
    elements = read(module, [tool, "installed", "--json"] + selected, "elements").elements
    # That a device cannot be rebooted by itself is an answer, which the tool ends with 1 for.
    reboot = read(module, [tool, "reboot-support", "--json"] + selected, "supported", (SUCCESS, FAILED)).document
    facts = {
        "elements": elements,
        "reboot": {"supported": reboot["supported"], "state": reboot.get("state")},
    }
    result = {"changed": False, "ansible_facts": {"trellan": facts}}
    if parameters["events"]:
        facts.update(hindrance(parameters["events"]))
        facts["last_update"] = last_update(module, tool, parameters["events"])
    if parameters["inventory"]:
        target = ["--target", parameters["target"]] if parameters["target"] else []
        result["inventory"] = read(module, [tool, "record"] + target, "tree").output
    module.exit_json(**result)


if __name__ == "__main__":
    main()
