# Copyright: (c) Velorant
"""What the documentation of several modules says alike."""
from __future__ import absolute_import, division, print_function

__metaclass__ = type


class ModuleDocFragment(object):
    TARGET = r"""
options:
  target:
    description:
      - The file that is the simulated target. Without it the device that the tool runs on is meant.
    type: path
requirements:
  - C(trellan-update) on the target's path, or in /usr/local/bin
  - Python 3.6 or later on the target
"""

    FILTERS = r"""
options:
  board_types:
    description: Only elements of boards of these types. Without one, as with an empty list, of all.
    type: list
    elements: str
  serial_numbers:
    description: Only elements of boards with these serial numbers, as numbers or as they are displayed.
    type: list
    elements: str
  element_names:
    description: Only elements with these names, or of these displayed types.
    type: list
    elements: str
"""

    ARCHIVE = r"""
options:
  description:
    description: The name of the archive's description file.
    type: str
    default: archive.json
  disable_custom_elements:
    description: Leave out the customer's own elements.
    type: bool
    default: false
"""

    CONTROLLER = r"""
description:
  - Runs on the controller whatever host it is for. Use C(run_once).
attributes:
  check_mode:
    description: Does the same in check mode. It changes no target.
    support: full
  diff_mode:
    description: Shows no difference.
    support: none
"""

    ARCHIVE_HERE = r"""
options:
  archive:
    description: The folder of the firmware archive, on the controller.
    type: path
    required: true
"""
