#!/usr/bin/env bash
# Updates a copy of the example target twice, the second time with nothing left to do.
# Usage: examples/demo.sh BUILD_FOLDER [options of the update command]
set -euo pipefail

build=${1:?"Usage: examples/demo.sh BUILD_FOLDER [options]"}
shift
example=$(cd "$(dirname "$0")" && pwd)
tool=$build/bin/trellan-update
demo=$build/demo

rm -rf "$demo"
mkdir -p "$demo"
cp -R "$example/target.json" "$example/flash" "$example/archive" "$demo"

fail() {
    echo "demo: $1" >&2
    exit 1
}

echo "=== Update of the example target ==="
"$tool" update "$demo/archive" --target "$demo/target.json" "$@" | tee "$demo/first.txt" ||
    fail "the first update failed"
grep -q "Update completed successfully!" "$demo/first.txt" || fail "the first update does not report success"
grep -q "^Updating:" "$demo/first.txt" || fail "the first update updated nothing"

echo
echo "=== The same update again ==="
"$tool" update "$demo/archive" --target "$demo/target.json" "$@" | tee "$demo/second.txt" ||
    fail "the second update failed"
grep -q "Update completed successfully!" "$demo/second.txt" || fail "the second update does not report success"
if grep -q "^Updating:" "$demo/second.txt"; then
    fail "the second update still found something to do"
fi

echo
echo "Shown: a target with four boards was updated in three phases, and a second update found nothing left to do."
echo "By hand: $tool compare $demo/archive --target $demo/target.json   (fresh copies are in $example)"
