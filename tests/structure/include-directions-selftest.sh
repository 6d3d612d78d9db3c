#!/usr/bin/env bash
# Checks that include-directions.sh finds each kind of violation. Usage: include-directions-selftest.sh
set -u
checker=$(dirname "$(realpath "$0")")/include-directions.sh
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failures=0

# put FILE INCLUDE...: makes a file with these includes.
put() {
    local file=$tree/$1
    shift
    mkdir -p "$(dirname "$file")"
    printf '#include %s\n' "$@" >"$file"
}

# A small project without violations.
fresh() {
    rm -rf "${tree:?}"/*
    put include/ZoITrellanUpdater.h '<string>'
    put platform/libZoX/ZoCX.h '<string>'
    put src/base/ErrorGuard.h '"libZoX/ZoCX.h"'
    put src/updater/ZoCTrellanUpdater.h '"ZoITrellanUpdater.h"'
    put src/archive/ZoSUpdateFile.h '"libZoX/ZoCX.h"'
    put src/archive/ZoCUpdateArchive.h '"archive/ZoSUpdateFile.h"'
    put src/inventory/ZoCUpdateInventory.h '"base/ErrorGuard.h"'
    put src/assignment/ZoCUpdateAssignment.h '"archive/ZoCUpdateArchive.h"' '"inventory/ZoCUpdateInventory.h"'
    put src/operation/ZoCUpdateOperation.h '"assignment/ZoCUpdateAssignment.h"'
    put src/inspection/Findings.h '"operation/ZoCUpdateOperation.h"'
    put src/updater/Creation.cpp '"operation/ZoCUpdateOperation.h"' '<sys/stat.h>'
    put json/Json.h '<nlohmann/json.hpp>'
    put simulation/base/Clock.h '<nlohmann/json.hpp>'
    put tool/Run.h '"ZoITrellanUpdater.h"' '<CLI/CLI.hpp>'
}

# expect RESULT WHAT: the checker must give this exit status for the tree as it is.
expect() {
    local output status
    output=$("$checker" "$tree")
    status=$?
    if [ "$status" -ne "$1" ]; then
        echo "FAILED: $2 (exit status $status)"
        echo "$output"
        failures=$((failures + 1))
    fi
}

# forbid FILE INCLUDE: adding this file must be found.
forbid() {
    fresh
    put "$1" "$2"
    expect 1 "$1 including $2 must be found"
}

# allow FILE INCLUDE: adding this file must not be complained about.
allow() {
    fresh
    put "$1" "$2"
    expect 0 "$1 including $2 must pass"
}

# loop FILE...: the headers, each including the next and the last one the first, must be found.
loop() {
    local files=("$@" "$1") i
    fresh
    for ((i = 0; i < $#; i++)); do
        put "${files[i]}" "\"${files[i + 1]}\""
    done
    expect 1 "the loop from $1 must be found"
}

fresh
expect 0 "a project without violations must pass"
forbid include/More.h '"libZoX/ZoCX.h"'
forbid include/More.h '<unistd.h>'
forbid platform/libZoX/More.h '"ZoITrellanUpdater.h"'
forbid platform/libZoX/More.h '<nlohmann/json.hpp>'
forbid src/base/More.h '"archive/ZoCUpdateArchive.h"'
forbid src/base/More.h '"updater/ZoCTrellanUpdater.h"'
forbid src/base/More.h '"archive/ZoSUpdateFile.h"'
forbid src/archive/More.h '"archive/ZoCUpdateArchive.h"'
forbid src/inventory/ZoSUpdateElement.h '"archive/ZoSUpdateFile.h"'
forbid src/inventory/ZoSUpdateElement.h '"updater/ZoCTrellanUpdater.h"'
forbid src/inventory/More.h '"inventory/ZoCUpdateInventory.h"'
forbid src/assignment/More.h '"assignment/ZoCUpdateAssignment.h"'
forbid src/operation/More.h '"operation/ZoCUpdateOperation.h"'
allow src/archive/More.cpp '"archive/ZoCUpdateArchive.h"'
allow src/operation/More.cpp '"operation/ZoCUpdateOperation.h"'
allow src/inspection/More.h '"operation/ZoCUpdateOperation.h"'
forbid src/inspection/More.h '"inspection/Findings.h"'
forbid src/operation/More.cpp '"inspection/Findings.h"'
forbid src/updater/More.cpp '"inspection/Findings.h"'
allow src/base/More.h '"base/ErrorGuard.h"'
allow tool/More.cpp '"json/Json.h"'
allow simulation/base/More.cpp '"json/Json.h"'
forbid json/More.h '"simulation/base/Clock.h"'
forbid src/operation/More.cpp '"json/Json.h"'
loop src/base/More.h
loop src/base/More.h src/base/Other.h
loop src/base/More.h src/base/Other.h src/base/Third.h
loop platform/libZoX/One.h platform/libZoX/Two.h
loop simulation/base/One.h simulation/target/Two.h
loop tool/One.h tool/Two.h
forbid src/archive/More.h '"inventory/ZoCUpdateInventory.h"'
forbid src/archive/More.cpp '"assignment/ZoCUpdateAssignment.h"'
forbid src/inventory/More.cpp '"archive/ZoCUpdateArchive.h"'
forbid src/inventory/More.cpp '"simulation/base/Clock.h"'
forbid src/assignment/More.cpp '"operation/ZoCUpdateOperation.h"'
forbid src/operation/More.cpp '<nlohmann/json.hpp>'
forbid src/operation/More.cpp '"nosuch.h"'
forbid src/operation/More.cpp '"../../tool/Run.h"'
forbid simulation/base/More.cpp '"updater/ZoCTrellanUpdater.h"'
forbid simulation/base/More.cpp '"ZoITrellanUpdater.h"'
forbid simulation/base/More.cpp '<ZoITrellanUpdater.h>'
forbid tool/More.cpp '"base/ErrorGuard.h"'
forbid tool/More.cpp '"libZoX/ZoCX.h"'
forbid tool/More.cpp '"simulation/base/Clock.h"'

[ "$failures" -eq 0 ] || exit 1
echo "all violations were found"
