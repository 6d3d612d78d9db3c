# Copyright: (c) Velorant
"""What the modules share: how trellan-update is called, and how what it says is read."""
from __future__ import absolute_import, division, print_function

__metaclass__ = type

import errno
import json
import os
import re
import signal
import subprocess
import tempfile

TOOL = "trellan-update"
TOOL_WORD = TOOL + ": "

# What the tool's exit statuses mean; any other is a failure that its own words explain.
SUCCESS, FAILED, USAGE, UNREADABLE, REFUSED, EMPTY, NOT_HELD, STALLED = 0, 1, 2, 3, 4, 5, 6, 8
NOT_STARTED = 126  # none of the tool's own: what a shell ends with where a program cannot be started
NOT_FOUND = 127  # what a shell ends with where there is no program, and the loader where a library is missing

# The members that the modules need of what a document lists, by the document's command for elements.
COMPARED = ("index", "state", "displayName", "name", "isFileSystemElement", "valid", "active", "installedVersion",
            "installedChecksum", "updateFile", "updateFileIndex", "availableVersion", "availableChecksum", "checksumDiffers",
            "downgrade")
ELEMENT_MEMBERS = {"update": COMPARED, "compare": COMPARED}
FURTHER_MEMBERS = {"runs": ("run", "phase"), "findings": ("rule", "severity", "file", "message")}

# What is kept for the tool's output and for its words before it is started. An update whose output then finds no room would
# have written and could not tell of it.
OUTPUT_ROOM, TEXT_ROOM = 1 << 20, 1 << 16
NOTHING_DONE = {
    NOT_STARTED: "trellan-update cannot be started",
    USAGE: "trellan-update was called wrongly",
    UNREADABLE: "the archive or the target cannot be read",
    REFUSED: "the archive does not support the target",
    EMPTY: "the filters select no element",
    NOT_HELD: "the check found errors, or the plan does not hold",
}
SIGNALS = {129: "SIGHUP", 130: "SIGINT", 143: "SIGTERM"}

# The arguments that select elements: the name of the module's option, and the tool's.
FILTERS = [("board_types", "--board-types"), ("serial_numbers", "--serial-numbers"), ("element_names", "--element-names")]
FILTER_SPEC = dict((name, dict(type="list", elements="str")) for name, unused in FILTERS)
PATHS = ("archive", "target", "plan", "events")


class Outcome(object):
    """How a call of the tool has ended: its exit status, negative for a signal that killed it, what it has put on standard
    output, that as a document (empty where it is none), and what it has said on standard error."""

    def __init__(self, status, output, text):
        self.status = status
        self.output = output
        self.text = text
        self.document = understood_document(output)

    def tells_of(self, command):
        """Whether there is the document of this command, and not the output of another program or a part of one."""
        return (self.document.get("schemaVersion"), self.document.get("command")) == (1, command)

    @property
    def elements(self):
        return self.document.get("elements", [])

    @property
    def own_words(self):
        """What the tool has said in its own name, in lines."""
        return [line[len(TOOL_WORD):] for line in self.text.splitlines() if line.startswith(TOOL_WORD)]


def understood_document(text):
    """The tool's document, empty for what is none: another program may be in the tool's place, or a part be missing."""
    try:
        document = json.loads(text)
    except (ValueError, RecursionError):
        return {}
    if not isinstance(document, dict) or not isinstance(document.get("error", {}), dict):
        return {}
    needed = dict(FURTHER_MEMBERS, elements=ELEMENT_MEMBERS.get(document.get("command"), ("displayName",)))
    return document if all(are_records(document.get(name, []), members) for name, members in needed.items()) else {}


def are_records(entries, members):
    """Whether this is a list of objects with these members."""
    return isinstance(entries, list) and all(isinstance(entry, dict) and all(name in entry for name in members)
                                             and are_errors(entry.get("errors", [])) for entry in entries)


def are_errors(entries):
    return isinstance(entries, list) and all(isinstance(entry, dict) and "text" in entry for entry in entries)


def find_tool(module, **result):
    """The tool's path; the module fails with RESULT where there is none."""
    path = module.get_bin_path(TOOL, opt_dirs=["/usr/local/bin"])
    if path is None:
        module.fail_json(msg="there is no %s on the path of this target: install it there, or add its folder to PATH with the "
                             "keyword 'environment' of the task or play" % TOOL, **result)
    return path


def understood(module, **result):
    """The module's parameters, with whole paths, which no option of the tool looks like; what ".." in them means is left to the
    kernel. The module fails with RESULT where a filter has a value that the tool would take for several or for none."""
    parameters = dict(module.params)
    mistake = no_single_name(parameters)
    if mistake:
        module.fail_json(msg=mistake, **result)
    for name in PATHS:
        if parameters.get(name):
            parameters[name] = os.path.join(os.getcwd(), parameters[name])
    return parameters


def no_single_name(parameters):
    """What is wrong with the filters where the tool would take a value for several or for none; else None."""
    for name, unused in FILTERS:
        for value in parameters.get(name) or []:
            if "," in value or not value.strip():
                return "%s: '%s' is no single name; nothing was done" % (name, value)
    return None


def run_tool(arguments, lasting=None):
    """Runs the tool to its end. It has a session of its own and writes into files, so that it goes on where the module is
    killed or the connection is lost; LASTING, an open file, stays open as long as it or a copy that it has started runs."""
    try:
        output, text = file_with_room(OUTPUT_ROOM), file_with_room(TEXT_ROOM)
    except OSError as error:
        return not_started("no room for the tool's output in the folder for temporary files: %s" % error.strerror)
    with output, text:
        try:
            process = subprocess.Popen(arguments, stdin=subprocess.DEVNULL, stdout=output, stderr=text, start_new_session=True,
                                       pass_fds=[] if lasting is None else [lasting.fileno()])
        except OSError as error:
            return not_started("%s: %s" % (arguments[0], error.strerror))
        status = process.wait()
        printed = whole_text(output)
        if status == NOT_FOUND and not printed:
            status = NOT_STARTED
        return Outcome(status, printed, whole_text(text))


def not_started(reason):
    return Outcome(NOT_STARTED, "", "%s%s\n" % (TOOL_WORD, reason))


def file_with_room(size):
    """A temporary file that so many bytes can be written to for certain; OSError where there is no room for them. It has them
    already, as zeros."""
    file = tempfile.TemporaryFile()
    try:
        os.posix_fallocate(file.fileno(), 0, size)
    except OSError as error:
        if error.errno not in (errno.EINVAL, errno.EOPNOTSUPP, errno.ENOSYS):  # a drive that cannot do that
            file.close()
            raise
    return file


def whole_text(file):
    file.seek(0)
    return file.read().rstrip(b"\0").decode("utf-8", "replace")


def reading_arguments(parameters):
    """The tool's arguments for what is read of a target: which one, and which of its elements."""
    arguments = ["--target", parameters["target"]] if parameters["target"] else []
    for name, option in FILTERS:
        if parameters.get(name):
            arguments += [option, ",".join(parameters[name])]
    return arguments + (["--configuration"] if parameters.get("configuration") else [])


def reported_errors(text):
    """The errors that the library and the platform have reported, each on one line, in the order of TEXT."""
    errors = []
    continued = False
    for line in text.splitlines():
        start = re.match(r"\s*(ERROR 0x\w+.*)", line)
        if start:
            errors.append(start.group(1).strip())
        elif continued and line.startswith("  ") and line.strip():
            errors[-1] += " " + line.strip()
        continued = bool(start) or (continued and line.startswith("  "))
    return list(dict.fromkeys(errors))


def failure_reasons(outcome):
    """Why a call did not succeed, each reason on one line: what was reported, then what the tool says to it. Where the tool says
    nothing, the last that was said, by the loader or by whatever is in its place; a kill leaves no time for words."""
    message = outcome.document.get("error", {}).get("message") or "\n".join(outcome.own_words)
    lines = [line.strip() for line in message.splitlines()]
    return [error for error in reported_errors(outcome.text) if error not in lines] + lines or (
        last_lines(outcome.text) if outcome.status != -signal.SIGKILL else [])


def last_lines(text, most=3):
    return [line.strip() for line in text.splitlines() if line.strip()][-most:]


def counted(count, one, several):
    """How many there are, in the words for one or for several."""
    return (one if count == 1 else several) % count


def sentence(beginning, reasons, most=3):
    """BEGINNING with the first reasons behind it, and how many more there are."""
    more = len(reasons) - most
    return beginning + (": " + "; ".join(reasons[:most]) if reasons else "") + (" (and %d more)" % more if more > 0 else "")
