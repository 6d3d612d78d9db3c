#!/usr/bin/python
# Copyright: (c) Velorant
from __future__ import absolute_import, division, print_function

__metaclass__ = type

DOCUMENTATION = r"""
module: update
short_description: Update the firmware of a target from an archive
description:
  - Updates the firmware of a target with C(trellan-update), which must be on the target, as the archive must.
  - Changed is told only where something was written. An element whose update failed counts where the target shows another
    content than before, or where it cannot be read again. Where the tool was killed or its output is lost, it is told unless
    C(events) tell that nothing was begun.
  - Files of the archive that the target does not list are written by each update. They count as a change, and the result
    names them.
  - The update goes on where the module is killed or the connection to the target is lost. With C(events) its result is found
    afterwards, as C(previous) of the next run or with M(velorant.trellan.facts), and a further run is refused as long as it is
    running. For updates that take longer than a connection lasts use an asynchronous task.
  - To stop an update that is running, send SIGTERM to C(trellan-update) at the target. It ends behind the phase that it is in.
options:
  archive:
    description:
      - The folder of the firmware archive, on the target. Files for the flash drive need a path without blanks and characters
        that are special to a shell.
    type: path
    required: true
  configuration:
    description: Update the configuration elements instead of the others.
    type: bool
    default: false
  exclude:
    description: Leave out the elements with these indices, as C(elements) of the result has them.
    type: list
    elements: int
  force:
    description: Update also what is up to date.
    type: bool
    default: false
  plan:
    description:
      - A file on the target that C(trellan-update update --dry-run --json) has written, with the same archive, filters and
        excluded elements. The update is refused where the target or the archive is no longer what it was then.
    type: path
  check:
    description:
      - Check the files that will be used before anything is written, and refuse the update where one is faulty. Without it the
        others are updated, and check mode tells that the update would fail.
    type: bool
    default: true
  verify:
    description:
      - Read the target again after the update, and fail where an element does not have its file's content. What becomes
        active only with a restart, and files that the target does not list, cannot be compared and are no failure.
    type: bool
    default: true
  stall_timeout:
    description:
      - Give the update up when it has made no progress for so many seconds, and unlock the target. A copy to the flash drive
        is waited for. Without it the update is waited for as long as it takes.
    type: float
  events:
    description:
      - A file on the target that a line of JSON is appended to for each event of the update. It lets the next run find the
        result of an update that has outlived its connection. Its folder must be there.
    type: path
attributes:
  check_mode:
    description:
      - Is the tool's dry run. It fails where it is known beforehand that the update would, and tells changed where the update
        would write. Nothing is written, and the target is not locked.
    support: full
  diff_mode:
    description: Shows version and checksum of each element that is written, before and after.
    support: full
  async:
    description: Can run as an asynchronous task; in check mode only with C(async) 0.
    support: full
author:
  - Velorant (@velorant)
extends_documentation_fragment:
  - velorant.trellan.shared.archive
  - velorant.trellan.shared.filters
  - velorant.trellan.shared.target
seealso:
  - module: velorant.trellan.facts
"""

EXAMPLES = r"""
- name: Update whatever is not up to date
  velorant.trellan.update:
    archive: /srv/firmware/23.2

- name: Update the modules of one type alone, and give up after ten minutes without progress
  velorant.trellan.update:
    archive: /srv/firmware/23.2
    board_types: [AI8100]
    stall_timeout: 600
    events: /var/lib/trellan/events.jsonl

- name: Update for up to an hour, also where the connection does not last so long
  velorant.trellan.update:
    archive: /srv/firmware/23.2
    stall_timeout: 600
    events: /var/lib/trellan/events.jsonl
  async: "{{ 0 if ansible_check_mode else 3600 }}"
  poll: 15

- name: Refuse the update where the target is no longer what it was when the plan was made
  velorant.trellan.update:
    archive: /srv/firmware/23.2
    plan: /srv/firmware/plan.json
"""

RETURN = r"""
msg:
  description: What was done, or why not, in a sentence.
  returned: always
  type: str
  sample: "the update failed: Processor board, SN 16(1), Firmware: no room"
result:
  description:
    - How the update ended; C(success), C(failed), C(refused) where nothing was done, C(stalled), or C(interrupted) by a signal.
    - In check mode, what is known of that beforehand.
  returned: always
  type: str
status:
  description: The tool's exit status, below 0 for the signal that has killed it; none where the tool was not called.
  returned: always
  type: int
elements:
  description:
    - The target's elements as the document of C(trellan-update update --json) has them, with the content before the update,
      the one in the archive, C(state), after an update C(errors), and with C(verify) C(verified).
  returned: where they could be read
  type: list
  elements: dict
counts:
  description: How many elements are in each state that there is.
  returned: where the elements could be read
  type: dict
  sample: {"noFile": 1, "upToDate": 3, "updated": 9}
written:
  description: The displayed names of the elements that were written, in check mode that would be.
  returned: always
  type: list
  elements: str
unlisted:
  description: Of these, the files that the target does not list, and that each update writes.
  returned: always
  type: list
  elements: str
reasons:
  description: Why each element was written, or why the update did not succeed.
  returned: always
  type: list
  elements: str
findings:
  description: What was found wrong with the files to be used.
  returned: where the files could be checked
  type: list
  elements: dict
previous:
  description:
    - The last update before this one in the file of events, as C(trellan-update history --json) has it. One without a
      result is shown as interrupted.
  returned: when C(events) is given and has one
  type: dict
running:
  description: True where an earlier update with the same file of events is still running, for which this one was refused.
  returned: in that case
  type: bool
"""

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.velorant.trellan.plugins.module_utils.course import (
    failure_message,
    reasons,
    result_name,
)
from ansible_collections.velorant.trellan.plugins.module_utils.events import (
    StillRunning,
    hold_events,
    last_update,
    look_for_running,
    not_writable,
    still_running,
)
from ansible_collections.velorant.trellan.plugins.module_utils.results import (
    TO_WRITE,
    UNCERTAIN,
    WRITTEN,
    change_reasons,
    count_states,
    names,
    unlisted_files,
    versions_diff,
    written_after_all,
)
from ansible_collections.velorant.trellan.plugins.module_utils.trellan import (
    FILTER_SPEC,
    NOTHING_DONE,
    SUCCESS,
    counted,
    failure_reasons,
    find_tool,
    reading_arguments,
    run_tool,
    sentence,
    understood,
)

ARGUMENT_SPEC = dict(
    FILTER_SPEC,
    archive=dict(type="path", required=True),
    target=dict(type="path"),
    description=dict(type="str", default="archive.json"),
    configuration=dict(type="bool", default=False),
    disable_custom_elements=dict(type="bool", default=False),
    exclude=dict(type="list", elements="int"),
    force=dict(type="bool", default=False),
    plan=dict(type="path"),
    check=dict(type="bool", default=True),
    verify=dict(type="bool", default=True),
    stall_timeout=dict(type="float"),
    events=dict(type="path"),
)


# A rule of the check whose findings do not keep a file from being written: the target shows another content afterwards.
FOUND_AFTERWARDS = ("checksum",)


class Update(object):
    """One update, or in check mode what it would be."""

    def __init__(self, module):
        self.module = module
        self.result = {"changed": False, "result": "refused", "status": None, "written": [], "unlisted": [], "reasons": []}
        self.parameters = understood(module, **self.result)
        self.tool = find_tool(module, **self.result)

    def command(self, name, further):
        return [self.tool, name, self.parameters["archive"], "--json"] + self.selection() + further

    def selection(self):
        """The arguments that tell what is to be updated from what."""
        parameters = self.parameters
        arguments = reading_arguments(parameters) + ["--description", parameters["description"]]
        for index in parameters["exclude"] or []:
            arguments += ["--exclude", str(index)]
        for name, option in (("force", "--force"), ("disable_custom_elements", "--disable-custom-elements")):
            arguments += [option] if parameters[name] else []
        return arguments

    def restrictions(self):
        """The arguments that tell under which conditions it is updated."""
        arguments = ["--plan", self.parameters["plan"]] if self.parameters["plan"] else []
        if self.parameters["stall_timeout"] is not None:
            arguments += ["--stall-timeout", ("%f" % self.parameters["stall_timeout"]).rstrip("0").rstrip(".")]
        return arguments + ([] if self.parameters["check"] else ["--no-check"])

    def fail(self, message):
        self.module.fail_json(msg=message, **self.result)

    def held_events(self):
        """What an update holds as long as it runs; the module fails where an earlier one still does."""
        path = self.parameters["events"]
        if not path:
            return None
        try:
            held = look_for_running(path) if self.module.check_mode else hold_events(path)
        except StillRunning:
            self.note_previous()
            self.result["running"] = True
            self.refuse(still_running(path))
        except OSError as error:
            self.refuse(not_writable(path, error))
        self.note_previous()
        return held

    def refuse(self, reason):
        self.result["reasons"] = [reason]
        self.fail("%s; nothing was done" % reason)

    def note_previous(self):
        previous = last_update(self.module, self.tool, self.parameters["events"])
        if previous:
            self.result["previous"] = previous

    def note(self, outcome, written):
        """Takes over what a call of the tool has told; WRITTEN are the elements that it has written, or would."""
        self.result.update(status=outcome.status, result=result_name(outcome.status), changed=bool(written),
                           written=names(written), unlisted=names(unlisted_files(written)))
        if outcome.elements:
            self.result.update(elements=outcome.elements, counts=count_states(outcome.elements))
        if "findings" in outcome.document:
            self.result["findings"] = outcome.document["findings"]
        if self.module._diff and written:
            self.result["diff"] = versions_diff(written)

    def end(self, outcome, written, words):
        if outcome.status != SUCCESS:
            self.result["reasons"] = reasons(outcome)
            self.fail(failure_message(outcome, "would fail" if self.module.check_mode else "failed"))
        for line in outcome.own_words:
            self.module.warn(line)
        self.result["reasons"] = change_reasons(written)
        words = sentence(counted(len(written), *words), self.result["reasons"]) if written else "nothing to do"
        self.module.exit_json(msg=words, **self.result)

    def foresee(self):
        """Check mode: what the update would do."""
        self.held_events()
        outcome = self.dry_run(self.restrictions())
        self.expect_document(outcome)
        written = elements_in(outcome, [TO_WRITE]) if outcome.status == SUCCESS else []
        faults = [] if self.parameters["check"] else self.faults_not_checked_for(written)
        without = set(fault["file"] for fault in faults if fault["rule"] not in FOUND_AFTERWARDS)
        self.note(outcome, [element for element in written if element["updateFileIndex"] not in without])
        if faults:
            self.result["findings"] = faults
            self.expect_failure(["%s: %s" % (file_name(fault["file"], written), fault["message"]) for fault in faults])
        if outcome.status == SUCCESS:
            self.expect_no_errors()
        self.end(outcome, written, ("%d element would be updated", "%d elements would be updated"))

    def dry_run(self, restrictions):
        return run_tool(self.command("update", ["--dry-run"] + restrictions))

    def faults_not_checked_for(self, written):
        """What the check would find wrong with the files of these elements, and the update will fail of without the check, too: a
        file that cannot be written, or one with another content than stated where the target shows that afterwards."""
        checked = self.dry_run([])
        used = files_of(written)
        compared = used - files_of(unlisted_files(written)) if self.parameters["verify"] else set()
        return [finding for finding in checked.document.get("findings", []) if finding["severity"] == "error"
                and finding["file"] in (compared if finding["rule"] in FOUND_AFTERWARDS else used)]

    def expect_failure(self, reasons):
        self.result.update(result="failed", reasons=reasons)
        self.fail(sentence("the update would fail", reasons))

    def expect_document(self, outcome):
        """Fails where a call has ended with success and has not told of what: another program may be in the tool's place."""
        if outcome.status == SUCCESS and not outcome.tells_of("update"):
            self.result.update(status=outcome.status, result="failed",
                               changed=not self.module.check_mode and self.may_have_written(),
                               reasons=["%s has not told what it has done" % self.tool])
            self.fail("%s: see whether it is the tool, and run the update again" % self.result["reasons"][0])

    def expect_no_errors(self):
        """Fails where reading the target reports errors: an update ends as failed then, whatever it has done."""
        scan = run_tool([self.tool, "scan", "--json"] + reading_arguments(self.parameters))
        if scan.status != SUCCESS:
            self.expect_failure(failure_reasons(scan))

    def carry_out(self):
        held = self.held_events()
        arguments = ["--progress", "never"] + self.restrictions()
        arguments += ["--verify"] if self.parameters["verify"] else []
        arguments += ["--events", self.parameters["events"]] if self.parameters["events"] else []
        outcome = run_tool(self.command("update", arguments), lasting=held)
        self.expect_document(outcome)
        written = elements_in(outcome, [WRITTEN])
        self.note(outcome, written + self.written_nevertheless(outcome))
        if outcome.status not in NOTHING_DONE and not outcome.tells_of("update"):
            self.result["changed"] = self.may_have_written()
        self.end(outcome, written, ("%d element was updated", "%d elements were updated"))

    def written_nevertheless(self, outcome):
        """The elements that have been written to although their update has not succeeded; where the target cannot be read, all
        whose update was begun."""
        uncertain = elements_in(outcome, UNCERTAIN)
        if not uncertain:
            return []
        now = run_tool(self.command("compare", []))
        return written_after_all(uncertain, now.elements if now.tells_of("compare") else [])

    def may_have_written(self):
        """Whether an update whose end is not known may have written something: unless its events tell that it had begun no
        phase."""
        path = self.parameters["events"]
        last = last_update(self.module, self.tool, path) if path else None
        is_told = last is not None and last["run"] != self.result.get("previous", {}).get("run")
        return not is_told or last["phase"] is not None


def files_of(elements):
    """The positions of the files that these elements get."""
    return set(element["updateFileIndex"] for element in elements)


def file_name(position, elements):
    """The name of the file at this position, which at least one of the elements gets."""
    return next(element["updateFile"] for element in elements if element["updateFileIndex"] == position)


def elements_in(outcome, states):
    return [element for element in outcome.elements if element["state"] in states]


def main():
    module = AnsibleModule(argument_spec=ARGUMENT_SPEC, supports_check_mode=True)
    update = Update(module)
    if module.check_mode:
        update.foresee()
    else:
        update.carry_out()


if __name__ == "__main__":
    main()
