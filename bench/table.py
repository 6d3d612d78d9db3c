#!/usr/bin/env python3
"""Prints the results of the benchmarks as a table. Usage: table.py RESULTS.json

Medians of the processor time, and of what a benchmark has counted besides. A family is what has one name, but for the
size that ends it; in its last line stands its growth: the exponent x of the curve c * size^x that is nearest to its
medians, by least squares of the logarithms."""
import json
import math
import statistics
import sys

# Members of a result that are not counters.
OF_ALL = {"name", "family_index", "per_family_instance_index", "run_name", "run_type", "repetitions", "repetition_index",
          "threads", "iterations", "real_time", "cpu_time", "time_unit", "label", "error_occurred", "error_message"}
MILLISECONDS = {"ns": 1e-6, "us": 1e-3, "ms": 1, "s": 1e3}


def medians(results):
    """Of each benchmark, in the order of the results: the median of each of its values; "ms" is the time."""
    values = {}
    for result in results:
        if result["run_type"] != "iteration":
            continue
        of_name = values.setdefault(result["name"], {})
        of_name.setdefault("ms", []).append(result["cpu_time"] * MILLISECONDS[result["time_unit"]])
        for counter in result.keys() - OF_ALL:
            of_name.setdefault(counter, []).append(result[counter])
    return {name: {key: statistics.median(all_of_key) for key, all_of_key in of_name.items()}
            for name, of_name in values.items()}


def family_and_size(name):
    family, _, size = name.rpartition("/")
    return (family, int(size)) if family and size.isdigit() else (name, None)


def growths(times):
    """The growth of each family with two sizes or more, by the name of its last benchmark."""
    families = {}
    for name, milliseconds in times.items():
        family, size = family_and_size(name)
        if size and milliseconds > 0:
            families.setdefault(family, []).append((name, math.log(size), math.log(milliseconds)))
    return {points[-1][0]: statistics.linear_regression([x for _, x, _ in points], [y for _, _, y in points]).slope
            for points in families.values() if len(points) > 1}


def shown(value):
    """With three digits that count, or all those before the point."""
    digits = 2 - math.floor(math.log10(abs(value))) if value else 0
    return f"{value:.{max(digits, 0)}f}"


def table(results):
    of_names = medians(results)
    growth = growths({name: values["ms"] for name, values in of_names.items()})
    rows = [("benchmark", "median", "growth", "besides")]
    for name, values in of_names.items():
        counters = ", ".join(f"{key} {shown(values[key])}" for key in sorted(values.keys() - {"ms"}))
        rows.append((name, shown(values["ms"]) + " ms", f"{growth[name]:.2f}" if name in growth else "", counters))
    widths = [max(len(row[column]) for row in rows) for column in range(3)]
    return "".join(f"{name:<{widths[0]}} | {median:>{widths[1]}} | {exponent:>{widths[2]}} | {counters}".rstrip() + "\n"
                   for name, median, exponent, counters in rows)


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit("Usage: table.py RESULTS.json")
    with open(sys.argv[1], encoding="utf-8") as file:
        sys.stdout.write(table(json.load(file)["benchmarks"]))
