# Copyright: (c) Velorant
"""What has become of an update, from the tool's document: what was written, why, and what went wrong."""
from __future__ import absolute_import, division, print_function

__metaclass__ = type

WRITTEN, TO_WRITE = "updated", "update"
# States in which something may have been written although the update of the element has not succeeded.
UNCERTAIN = ("failed", "running")
INSTALLED = ("installedVersion", "installedChecksum", "valid")


def count_states(elements):
    """How many elements are in each state that there is."""
    counts = {}
    for element in elements:
        counts[element["state"]] = counts.get(element["state"], 0) + 1
    return counts


def names(elements):
    return [element["displayName"] for element in elements]


def unlisted_files(elements):
    """Files of the archive that the target does not list: the tool has made an element for each, named after its file."""
    return [element for element in elements if element["isFileSystemElement"] and not element["valid"]
            and element["name"] == "Updatable file (%s)" % element["updateFile"]]


def differs(before, now):
    """Whether the target shows another content of the element than before."""
    return any(before[key] != now[key] for key in INSTALLED)


def written_after_all(elements, now):
    """Of elements whose update has not succeeded those that have been written to all the same, with the content that the target
    shows NOW in place of the archive's; where it does not show an element, that counts as written."""
    present = dict((element["index"], element) for element in now)
    written = []
    for element in elements:
        shown = present.get(element["index"])
        if shown is None:
            written.append(dict(element, availableVersion="not known", availableChecksum=None))
        elif differs(element, shown):
            written.append(dict(element, availableVersion=shown["installedVersion"],
                                availableChecksum=shown["installedChecksum"]))
    return written


def content(version, checksum):
    """An element's content in words."""
    words = [version or "---"]
    if checksum is not None:
        words.append("(checksum %d)" % checksum)
    return " ".join(words)


def versions_diff(written):
    """What diff mode shows: a line for each element that is written, with its content before and after."""
    before = after = ""
    for element in written:
        before += "%s: %s\n" % (element["displayName"], content(element["installedVersion"], element["installedChecksum"]))
        after += "%s: %s\n" % (element["displayName"], content(element["availableVersion"], element["availableChecksum"]))
    return {"before_header": "installed", "after_header": "updated", "before": before, "after": after}


def change_reasons(written):
    """Why each of these elements is written."""
    unlisted = names(unlisted_files(written))
    return ["%s: the target does not list this file, so that each update writes it" % name if name in unlisted
            else "%s: %s" % (name, versions(element)) for name, element in zip(names(written), written)]


def versions(element):
    before, after = element["installedVersion"], element["availableVersion"]
    if after and before != after:
        return "%s -> %s" % (before or "---", after) + (" (downgrade)" if element["downgrade"] else "")
    if not element["valid"]:
        return "nothing sound is installed"
    if element["checksumDiffers"]:
        return "another checksum"
    in_use = element["active"] or element["isFileSystemElement"]
    return "written again, as it was asked for" if in_use else "what is installed is not in use"


STATE_WORDS = {
    "failed": "its update failed",
    "cancelled": "cancelled, since an update of its board failed",
    "missingFile": "its update file is missing",
    "running": "its update was still running",
}


def element_errors(elements):
    """What went wrong with each element, each on one line."""
    lines = []
    for element in elements:
        texts = list(dict.fromkeys(error["text"] for error in element.get("errors", [])))
        words = "; ".join(texts) or STATE_WORDS.get(element["state"])
        if words:
            lines.append("%s: %s" % (element["displayName"], words))
    return lines


def disagreements(elements, own_words):
    """Of each element that does not have its file's content after its update, what the tool has said to that."""
    found = names([element for element in elements if element.get("verified") is False])
    said = [line for line in own_words if line.startswith(tuple(found))] if found else []
    return said or ["%s does not have its file's content" % name for name in found]


def error_texts(elements):
    return [error["text"] for element in elements for error in element.get("errors", [])]
