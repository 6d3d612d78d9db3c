"""Parts of the collection in this process, as the engine loads them."""

import importlib
import os
from unittest import mock

from engine import COLLECTIONS

# The engine reads its configuration when it is first imported.
with mock.patch.dict(os.environ, ANSIBLE_COLLECTIONS_PATH=str(COLLECTIONS)):
    from ansible.plugins.loader import action_loader


def action(name):
    """The class of this action."""
    return action_loader.get("velorant.trellan." + name, class_only=True)


def utility(name):
    """What modules share under this name."""
    return importlib.import_module("ansible_collections.velorant.trellan.plugins.module_utils." + name)
