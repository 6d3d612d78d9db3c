#!/usr/bin/env bash
# Checks that every header compiles by itself, and twice in one file. Usage: headers-alone.sh PROJECT_FOLDER COMPILER JOBS
set -u
root=${1:?project folder}
export compiler=${2:?compiler}
jobs=${3:?number of jobs}
cd "$root" || exit 1

check() {
    local includes
    case $1 in
        include/*) includes="-Iinclude" ;;
        platform/*) includes="-Iplatform" ;;
        src/*) includes="-Iinclude -Iplatform -Isrc" ;;
        json/*) includes="-I." ;;
        simulation/*) includes="-Iplatform -I." ;;
        tool/*) includes="-Iinclude -I." ;;
    esac
    # shellcheck disable=SC2086 # $includes: a word for each option
    if ! printf '#include "%s"\n#include "%s"\n' "$PWD/$1" "$PWD/$1" |
        "$compiler" -std=c++20 -Wall -Wextra -Wpedantic -Werror -fsyntax-only $includes -x c++ -; then
        echo "$1 does not compile by itself"
        return 1
    fi
}
export -f check

headers=$(find include platform src json simulation tool -name '*.h' -o -name '*.hpp' | sort)
[ -n "$headers" ] || { echo "no headers in $root"; exit 1; }
# shellcheck disable=SC2016 # $0 is of the shell that xargs starts
xargs -n 1 -P "$jobs" bash -c 'check "$0"' <<<"$headers" || exit 1
echo "$(wc -w <<<"$headers") headers compile by themselves"
