"""The tool's processes, and waiting for what they do."""

import time
from pathlib import Path


class Process:
    def __init__(self, pid, parent):
        self.pid, self.parent = pid, parent


def processes_of_target(target):
    """The tool's running processes that were called for this target file."""
    found = []
    for folder in Path("/proc").glob("[0-9]*"):
        try:
            words = (folder / "cmdline").read_bytes().split(b"\0")
            fields = (folder / "stat").read_text().rpartition(")")[2].split()
        except OSError:
            continue
        if words[0].endswith(b"/trellan-update") and str(target).encode() in words and fields[0] != "Z":
            found.append(Process(int(folder.name), int(fields[1])))
    return found


def wait_for(condition, seconds=60):
    """Returns when the condition holds; an AssertionError after that many seconds."""
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise AssertionError("what was waited for did not happen")
        time.sleep(0.02)
