# Copyright: (c) Velorant
"""The file of events: whether an update that writes to it is running, and how the last one ended."""
from __future__ import absolute_import, division, print_function

__metaclass__ = type

import errno
import fcntl
import os
import stat
import time

from ansible_collections.velorant.trellan.plugins.module_utils.trellan import SUCCESS, failure_reasons, run_tool


# How often a lock is tried for before an update is taken to hold it: whoever looks for one holds it for a moment, too.
LOOKS = 10


class StillRunning(Exception):
    """An update that was started with this file of events has not ended."""


def still_running(path):
    return "an earlier update with the file of events %s is still running" % path


def not_writable(path, error):
    return "the file of events %s cannot be written: %s" % (path, error.strerror)


def hold_events(path):
    """Opens the file of events, makes it where it is missing, and locks it: what the file is given to holds the lock too.
    OSError where it cannot be opened, StillRunning where another update holds it. None for a pipe or a device, which is not
    locked."""
    if is_special(path):
        return None
    file = open(path, "ab")
    lock(file, fcntl.LOCK_EX, LOOKS)
    return file


def look_for_running(path):
    """As hold_events, but the file stays as it is; OSError also where it could not be made."""
    if is_special(path):
        return
    if is_missing(path):
        folder = os.path.dirname(os.path.realpath(path))
        os.stat(folder)
        expect_access(folder, os.W_OK | os.X_OK)
        return
    expect_access(path, os.W_OK)
    with open(path, "rb") as file:
        lock(file, fcntl.LOCK_SH)


def is_missing(path):
    """Whether a file could be made there, as far as the path tells, since nothing is; OSError for a path that is none."""
    try:
        os.stat(path)
    except OSError as error:
        if error.errno != errno.ENOENT:
            raise
        return True
    return False


def expect_access(path, mode):
    if not os.access(path, mode):
        raise OSError(errno.EACCES, os.strerror(errno.EACCES), path)


def is_special(path):
    """True for what is there and is neither a file nor a folder: events may go to a pipe."""
    try:
        mode = os.stat(path).st_mode
    except OSError:
        return False
    return not (stat.S_ISREG(mode) or stat.S_ISDIR(mode))


def lock(file, kind, tries=1):
    while not is_locked(file, kind):
        tries -= 1
        if tries == 0:
            file.close()
            raise StillRunning()
        time.sleep(0.05)


def is_locked(file, kind):
    """Locks it where nobody else does."""
    try:
        fcntl.flock(file, kind | fcntl.LOCK_NB)
        return True
    except OSError as error:
        if error.errno in (errno.EWOULDBLOCK, errno.EACCES):
            return False
        file.close()
        raise


def last_update(module, tool, path):
    """The last update in the file of events, as the tool's history has it; None for none, or where there is no such file."""
    if not os.path.isfile(path):
        return None
    outcome = run_tool([tool, "history", path, "--json"])
    if outcome.status != SUCCESS:
        module.warn("the file of events cannot be read: %s" % "; ".join(failure_reasons(outcome)))
    runs = outcome.document.get("runs", [])
    return runs[-1] if runs else None
