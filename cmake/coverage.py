#!/usr/bin/env python3
"""What of each folder ran, from an export of llvm-cov as JSON, and a list of what did not.

    coverage.py EXPORT FOLDER_OF_THE_PROJECT LIST 'FOLDER LINES BRANCHES;...'

A branch is one outcome of one condition; those joined by && and || have their own, exceptions are none. Limits are in
percent, "-" is none. Ends with 1 when a folder is below one. In the list the instances of a template are taken together."""
import json
import sys


def missed_lines(segments):
    """The numbers of the lines that did not run. A segment reaches to the next one; a line counts what counted most of
    those that begin a region on it, and of the one that reaches into it."""
    by_line = {}
    for line, _, count, has_count, is_entry, is_gap in segments:
        by_line.setdefault(line, []).append((count, has_count, is_entry, is_gap))
    missed = []
    before = None
    for line in range(1, max(by_line, default=0) + 1):
        on_line = by_line.get(line, [])
        begun = [count for count, has_count, is_entry, is_gap in on_line if has_count and is_entry and not is_gap]
        is_skipped = bool(on_line) and not on_line[0][1] and on_line[0][2]
        counts = begun + ([before[0]] if before and before[1] else [])
        if counts and not is_skipped and max(counts) == 0:
            missed.append(line)
        before = on_line[-1] if on_line else before
    return missed


def missed_outcomes(branches):
    """Of the conditions that had one outcome only: line, what is missing, and where the text ends."""
    counts = {}
    for branch in branches:
        of_all = counts.setdefault(tuple(branch[:4]), [0, 0])
        of_all[0] += branch[4]
        of_all[1] += branch[5]
    for place, (true, false) in sorted(counts.items()):
        if true == 0 and false != 0:
            yield place, "never true"
        elif true != 0 and false == 0:
            yield place, "never false"


def list_missed(file, name, out):
    with open(file["filename"], encoding="utf-8") as source:
        lines = source.read().split("\n")
    missed = [((line, 0), "not run", lines[line - 1].strip()) for line in missed_lines(file["segments"])]
    for (line, column, last, end), what in missed_outcomes(file["branches"]):
        text = lines[line - 1][column - 1:end - 1 if last == line else None]
        missed.append(((line, column), what, text))
    for (line, _), what, text in sorted(missed):
        print(f"{name}:{line}: {what}: {text}", file=out)


def percent(counts, kind):
    return 100 * counts[kind][1] / counts[kind][0] if counts[kind][0] else 0


def main():
    export, root, missing, limits = sys.argv[1:]
    with open(export, encoding="utf-8") as text:
        files = json.load(text)["data"][0]["files"]
    folders = {}
    with open(missing, "w", encoding="utf-8") as out:
        for file in files:
            name = file["filename"][len(root) + 1:]
            counts = folders.setdefault(name.split("/")[0], {"lines": [0, 0], "branches": [0, 0]})
            for kind, (count, covered) in counts.items():
                summary = file["summary"][kind]
                counts[kind] = [count + summary["count"], covered + summary["covered"]]
            list_missed(file, name, out)
    failed = False
    for folder, *limit in (entry.split() for entry in limits.split(";")):
        counts = folders.get(folder, {"lines": [0, 0], "branches": [0, 0]})
        ran = {kind: percent(counts, kind) for kind in counts}
        low = any(least != "-" and ran[kind] < float(least) for kind, least in zip(("lines", "branches"), limit))
        print("%-11s %6.2f %% of %5d lines (limit %s), %6.2f %% of %5d branches (limit %s)%s"
              % (folder, ran["lines"], counts["lines"][0], limit[0], ran["branches"], counts["branches"][0], limit[1],
                 ": too few" if low else ""))
        failed = failed or low
    sys.exit(failed)


main()
