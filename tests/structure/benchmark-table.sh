#!/usr/bin/env bash
# Checks the table of the benchmarks' results: medians, the growth of each family, and what was counted.
# Usage: benchmark-table.sh PROJECT_FOLDER
#
# In results.json the medians of read are 1, 10 and 1000 ms at sizes 10, 100 and 1000. Of the logarithms to 10, which are
# 0, 1 and 3 at 1, 2 and 3, the line of least squares rises by ((1-2)(0-4/3) + (3-2)(3-4/3)) / 2 = 1.5.
set -u
root=${1:?project folder}
data=$root/tests/structure/benchmark-table

diff "$data/table.txt" <("$root/bench/table.py" "$data/results.json") || exit 1

if "$root/bench/table.py" "$data/none.json" >/dev/null 2>&1; then
    echo "a file that there is not has a table"
    exit 1
fi
echo "the table is right"
