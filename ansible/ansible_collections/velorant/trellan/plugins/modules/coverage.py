#!/usr/bin/python
# Copyright: (c) Velorant
from __future__ import absolute_import, division, print_function

__metaclass__ = type

DOCUMENTATION = r"""
module: coverage
short_description: Hold an archive against the targets of a group
description:
  - Writes the inventories that M(velorant.trellan.facts) has returned into a folder on the controller, and holds an archive
    against all that are there with C(trellan-update coverage), which must be on the controller.
  - Fails where the filters select nothing of any target that can be read; the result is whole all the same.
options:
  hosts:
    description: The hosts whose inventories are written. One of which there is none now has none afterwards either.
    type: list
    elements: str
    required: true
  variable:
    description: What a task with M(velorant.trellan.facts) and C(inventory) has registered its result as.
    type: str
    required: true
  folder:
    description:
      - The folder for the inventories, a file for each host. Beside it are written the page, with C(.html) behind the folder's
        name, and the document, with C(.document).
    type: path
    required: true
  others:
    description: A folder from which those of all hosts are taken over first, where C(folder) has none yet.
    type: path
  fresh:
    description: Folders from which the inventories are removed first, with the page and the document beside them.
    type: list
    elements: path
  force:
    description: Count as to update also what is up to date.
    type: bool
    default: false
author:
  - Velorant (@velorant)
extends_documentation_fragment:
  - velorant.trellan.shared.archive_here
  - velorant.trellan.shared.archive
  - velorant.trellan.shared.controller
  - velorant.trellan.shared.filters
seealso:
  - module: velorant.trellan.facts
"""

EXAMPLES = r"""
- name: Read what is installed
  velorant.trellan.facts:
    inventory: true
  register: installed

- name: Hold the archive against the group
  velorant.trellan.coverage:
    archive: /srv/firmware/23.2
    hosts: "{{ ansible_play_hosts }}"
    variable: installed
    folder: coverage
  register: covered
  run_once: true

- name: Name the boards that would get nothing
  ansible.builtin.debug:
    var: covered.boards_without_files
  run_once: true
"""

RETURN = r"""
folder:
  description: The folder of the inventories.
  returned: success
  type: str
page:
  description: The page for a browser.
  returned: success
  type: str
document:
  description: The document of C(trellan-update coverage --json).
  returned: success
  type: str
counts:
  description: How many elements of all targets are in each state.
  returned: success
  type: dict
files:
  description: The archive's entries, and how many elements get each.
  returned: success
  type: list
  elements: dict
unused:
  description: The positions of the entries that no element gets.
  returned: success
  type: list
  elements: int
no_file:
  description: The elements without a file, grouped by their keys.
  returned: success
  type: list
  elements: dict
unread:
  description: Of the hosts those without an inventory.
  returned: success
  type: list
  elements: str
unreadable:
  description: Inventories that cannot be read.
  returned: success
  type: list
  elements: str
boards_without_files:
  description: The boards of which no element would ever get anything, those aside that have the customer's own elements alone.
  returned: success
  type: list
  elements: dict
  sample:
    - {"host": "rack7", "board": "Analog inputs, SN 815", "boardType": "AI8100", "reason": "the archive has no file for it"}
"""
