#!/usr/bin/env bash
# Checks that every behaviour in the ledger names the tests that show it, and that these exist.
# Usage: behaviours.sh PROJECT_FOLDER
#
# A row of docs/behaviours.md is "| behaviour | `Suite.Name`, `scenarios/FOLDER`, `structure/NAME`,
# `install/NAME`, `fleet/Class.test_name` |".
set -u
root=${1:?project folder}
ledger=$root/docs/behaviours.md
failures=0

complain() {
    echo "$1"
    failures=$((failures + 1))
}

# Every "Suite.Name" of a TEST macro, on one line or on several.
macros=$(find "$root/tests/" -name '*.cpp' -exec cat {} + | tr '\n' ' ' |
    grep -oE '\bTEST(_F|_P)?\( *[A-Za-z0-9_]+, *[A-Za-z0-9_]+ *\)' |
    sed -E 's/^[A-Z_]*\( *([A-Za-z0-9_]+), *([A-Za-z0-9_]+) *\)$/\1.\2/')
declare -A known=()
for name in $macros; do
    known[$name]=1
done
while IFS= read -r name; do
    known[structure/$name]=1
done < <(sed -nE 's/^ *add_structure_test\(([^ )]+).*/\1/p' "$root/tests/CMakeLists.txt")
for folder in "$root"/tests/scenarios/*/; do
    [ -f "$folder/arguments" ] && known[scenarios/$(basename "$folder")]=1
done
while IFS= read -r name; do
    known[fleet/$name]=1
done < <(awk '/^class / { class = $2; sub(/[(:].*/, "", class) }
              /^    def test_/ { name = $2; sub(/[(].*/, "", name); print class "." name }' "$root"/tests/fleet/test_*.py)
for script in "$root"/tests/install/*.sh; do
    known[install/$(basename "$script" .sh)]=1
done

rows=0
while IFS= read -r row; do
    case $row in
        '| behaviour | test |' | '|---|---|') continue ;;
    esac
    rows=$((rows + 1))
    tests=${row%|*}
    tests=${tests##*|}
    # shellcheck disable=SC2016 # backticks are what is looked for
    names=$(grep -oE '`[^`]*`' <<<"$tests" | tr -d '`')
    [ -n "$names" ] || complain "no test is named in: $row"
    while IFS= read -r name; do
        [ -z "$name" ] || [ -n "${known[$name]:-}" ] || complain "there is no test $name"
    done <<<"$names"
done < <(grep '^|' "$ledger")
[ "$rows" -gt 0 ] || complain "no behaviours in $ledger"

[ "$failures" -eq 0 ] || exit 1
echo "$rows behaviours name tests that exist"
