#!/usr/bin/env bash
# Updates a copy of the example target twice, the second time with nothing left to do. The copy is in BUILD_FOLDER/demo.
# Usage: examples/demo.sh BUILD_FOLDER [options of the update command]
set -euo pipefail

build=${1:?"Usage: examples/demo.sh BUILD_FOLDER [options]"}
shift
example=$(cd "$(dirname "$0")" && pwd)
tool=$build/bin/trellan-update
demo=$build/demo

# The files for a flash drive come from a path that a shell takes literally.
case $(realpath "$build") in
    *[![:alnum:]/._+,:=@%-]*)
        demo=$(mktemp -d /tmp/trellan-demo-XXXXXX)
        echo "The path of the build folder holds blanks or the like; the copy of the example is in $demo"
        ;;
esac

rm -rf "$demo"
mkdir -p "$demo"
cp -R "$example/target.json" "$example/flash" "$example/archive" "$demo"
chmod -R u+w "$demo" # also where the sources may only be read

fail() {
    echo "demo: $1" >&2
    exit 1
}

echo "=== Update of the example target ==="
"$tool" update "$demo/archive" --target "$demo/target.json" "$@" | tee "$demo/first.txt" ||
    fail "the first update failed"
grep -q "Update completed successfully!" "$demo/first.txt" || fail "the first update does not report success"

echo
echo "=== The same update again ==="
"$tool" update "$demo/archive" --target "$demo/target.json" "$@" | tee "$demo/second.txt" ||
    fail "the second update failed"
grep -q "Update completed successfully!" "$demo/second.txt" || fail "the second update does not report success"

echo
if [ $# -gt 0 ]; then # what is updated depends on the options
    echo "Shown: two updates of the example target with the options $*"
    exit 0
fi
grep -q "^Updating:" "$demo/first.txt" || fail "the first update updated nothing"
! grep -q "^Updating:" "$demo/second.txt" || fail "the second update still found something to do"
echo "Shown: a target with four boards was updated in three phases, and a second update found nothing left to do."
printf 'By hand: %q compare %s --target %s   (fresh copies are in %s)\n' \
    "$tool" "$demo/archive" "$demo/target.json" "$example"
