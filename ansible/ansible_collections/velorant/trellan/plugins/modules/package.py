#!/usr/bin/python
# Copyright: (c) Velorant
from __future__ import absolute_import, division, print_function

__metaclass__ = type

DOCUMENTATION = r"""
module: package
short_description: Pack an archive's folder for sending
description:
  - Packs an archive's folder into a tar file on the controller. Its name depends on the paths and contents of the archive's
    files alone, so that an archive that is at a target already need not be sent again.
  - The files lie in a folder of that name; an empty file with C(.complete) behind the name is the last one to be unpacked.
  - Links are followed. What is neither a file nor a folder is left out with a warning, as are links to nothing and links to a
    folder that they are in.
options:
  folder:
    description: The folder for the tar file.
    type: path
    required: true
author:
  - Velorant (@velorant)
extends_documentation_fragment:
  - velorant.trellan.shared.archive_here
  - velorant.trellan.shared.controller
"""

EXAMPLES = r"""
- name: Pack the archive
  velorant.trellan.package:
    archive: /srv/firmware/23.2
    folder: /var/tmp
  register: packed
  run_once: true

- name: Send it where it is missing
  ansible.builtin.unarchive:
    src: "{{ packed.path }}"
    dest: /var/lib/trellan
    creates: "/var/lib/trellan/{{ packed.name }}.complete"
"""

RETURN = r"""
path:
  description: The tar file.
  returned: success
  type: str
name:
  description: The name of the folder in it, a digest of the archive's files.
  returned: success
  type: str
"""
