#!/usr/bin/python
# Copyright: (c) Velorant
from __future__ import absolute_import, division, print_function

__metaclass__ = type

DOCUMENTATION = r"""
module: report
short_description: Write one report about the updates of a group
description:
  - Writes a JSON document on the controller that tells of each host what has become of its update. A report that is there is
    brought up to date with the hosts given, so that it may be written after each batch.
options:
  path:
    description: The report.
    type: path
    required: true
  fresh:
    description: Begin a new report.
    type: bool
    default: false
  about:
    description: Further members for its top.
    type: dict
  hosts:
    description: The hosts to report about.
    type: list
    elements: str
    required: true
  begun:
    description:
      - Note that updates of these hosts are begun. They count as C(unknown) until the report is brought up to date, which nobody
        does where the controller is killed meanwhile.
    type: bool
    default: false
  batch:
    description: What their batch is called.
    type: str
  survey:
    description: What a task with M(velorant.trellan.facts) has registered its result as.
    type: str
    required: true
  update:
    description: What a task with M(velorant.trellan.update) has registered its result as.
    type: str
  after:
    description:
      - What a task with M(velorant.trellan.facts) behind the update has registered its result as. With C(events) it tells
        whether an update is running whose module has not come to its end.
    type: str
author:
  - Velorant (@velorant)
extends_documentation_fragment:
  - velorant.trellan.shared.controller
"""

EXAMPLES = r"""
- name: Read what is installed
  velorant.trellan.facts:
  register: installed
  ignore_errors: true

- name: Update
  velorant.trellan.update:
    archive: /srv/firmware/23.2
  register: updated
  ignore_errors: true

- name: Report about all
  velorant.trellan.report:
    path: report.json
    fresh: true
    about:
      archive: /srv/firmware/23.2
    hosts: "{{ ansible_play_hosts }}"
    survey: installed
    update: updated
  run_once: true
"""

RETURN = r"""
path:
  description: The report.
  returned: success
  type: str
counts:
  description:
    - How many hosts have come to each result, how many were changed, and where there are some, how many could not be read behind
      their update.
    - The results are those of M(velorant.trellan.update), and C(unreachable), C(unreadable), C(not reached); C(running) and
      C(unknown) where the module has not come to its end. Of these and of those that became unreachable it is not known whether
      they were changed.
  returned: success
  type: dict
  sample: {"changed": 9, "success": 9, "failed": 1}
"""
