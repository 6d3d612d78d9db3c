# Copyright: (c) Velorant
"""How a call of the update command has ended, in words that name the reasons."""
from __future__ import absolute_import, division, print_function

__metaclass__ = type

import signal

from ansible_collections.velorant.trellan.plugins.module_utils.results import (
    disagreements,
    element_errors,
    error_texts,
)
from ansible_collections.velorant.trellan.plugins.module_utils.trellan import (
    NOTHING_DONE,
    SIGNALS,
    STALLED,
    SUCCESS,
    failure_reasons,
    reported_errors,
    sentence,
)


def result_name(status):
    """How an update with this exit status has ended, in the words of the tool's history."""
    if status == SUCCESS:
        return "success"
    if status in NOTHING_DONE:
        return "refused"
    if status == STALLED:
        return "stalled"
    return "interrupted" if status in SIGNALS or status < 0 else "failed"


def reasons(outcome):
    """Why an update did not succeed, each reason on one line."""
    result = result_name(outcome.status)
    if result == "failed":
        return failed_reasons(outcome)
    # What was updated in spite of that is told by the elements' states.
    return [reason for reason in failure_reasons(outcome) if not reason.startswith("updated: ")]


def failed_reasons(outcome):
    lines = element_errors(outcome.elements) + disagreements(outcome.elements, outcome.own_words)
    told = error_texts(outcome.elements)
    lines += [error for error in reported_errors(outcome.text) if not any(error.endswith(text) for text in told)]
    return lines or failure_reasons(outcome)


def failure_message(outcome, failed):
    """One sentence about an update that did not succeed; FAILED is what to say of one that was begun."""
    result = result_name(outcome.status)
    if result == "refused":
        return sentence("%s; nothing was done" % NOTHING_DONE[outcome.status], reasons(outcome))
    if result == "stalled":
        return sentence("the update has stalled and was given up, and the target is unlocked", reasons(outcome))
    if result == "interrupted":
        return sentence(interruption(outcome.status), reasons(outcome))
    return sentence("the update " + failed, reasons(outcome))


def interruption(status):
    if status in SIGNALS:
        return "the update was interrupted by %s: it ended in order, and no target stays locked" % SIGNALS[status]
    try:
        name = signal.Signals(-status).name
    except ValueError:
        name = "signal %d" % -status
    return "trellan-update was killed by %s: run the update again to see how far it has come" % name
