#!/usr/bin/env bash
# Checks that each benchmark still runs, at its smallest size, and that the results are what the table expects.
# Usage: benchmarks-run.sh PROJECT_FOLDER BENCHMARKS
set -u
root=${1:?project folder}
benchmarks=${2:?program}
results=$(mktemp)
trap 'rm -f "$results"' EXIT

TRELLAN_BENCH_SMALLEST=1 "$benchmarks" --benchmark_min_time=0.000001 --benchmark_out="$results" 2>/dev/null ||
    { echo "the benchmarks fail"; exit 1; }
table=$("$root/bench/table.py" "$results") || exit 1
for name in apply apply-four-lists-of-10 apply-many-boards-and-ids apply-many-types-and-ids apply-one-key-for-all assign \
    assign-four-lists-of-10 assign-many-types-and-ids assign-one-key-for-all assign-plain-walk check \
    check-used-files-of-1kb check-used-files-of-100kb compare compare-boards-of-1 compare-boards-of-1-simdjson \
    compare-boards-of-4 compare-boards-of-4-simdjson compare-simdjson coverage description-read \
    description-read-nlohmann description-read-rapidjson description-read-simdjson description-read-fread element-search \
    explain explain-foreign-types headers installed installed-nlohmann phases reach-lists-of-200-values \
    reach-many-types-and-ids reach-plain table-compare table-installed table-list update update-few-polls \
    update-many-polls; do
    grep -qE "^$name/[0-9]+ +\| +[0-9.]+ ms" <<<"$table" || { echo "there is no benchmark $name with a size"; exit 1; }
done
for name in version version-program-that-does-nothing; do
    grep -qE "^$name +\| +[0-9.]+ ms" <<<"$table" || { echo "there is no benchmark $name"; exit 1; }
done
echo "$(($(wc -l <<<"$table") - 1)) benchmarks run"
