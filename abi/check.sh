#!/usr/bin/env bash
# Compares the interface of the public headers, and what the library exports, with the record of version 1, and names what
# makes hosts that were built with the recorded interface fail. Ends with 0 when there is no such difference.
#   check.sh INCLUDE_FOLDER LIBRARY [RECORD]     compares; RECORD is version-1.xml beside this script unless it is named
#   check.sh --record INCLUDE_FOLDER LIBRARY     compares, and writes the record anew when that finds nothing
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
write=no
if [ "$1" = --record ]; then
    write=yes
    shift
fi
include=$(realpath "$1") library=$(realpath "$2") record=${3:-$here/version-1.xml}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The record is made from the headers alone, compiled as a host compiles them: of the library itself it would have all that is
# hidden in it, and change with that. Records of other headers are declarations in it, so that no standard library stands there.
soname=$(readelf -dW "$library" | sed -n 's/.*Library soname: \[\(.*\)\]/\1/p')
(cd "$here" && g++ -std=c++11 -O0 -g -femit-struct-debug-detailed=base -fPIC -shared -I"$include" ./*.cpp \
    -Wl,-soname,"$soname" -o "$work/interface.so")
abidw --exported-interfaces-only --type-id-style hash --no-parameter-names --no-show-locs --no-corpus-path \
    --no-comp-dir-path --no-elf-needed --out-file "$work/current.xml" "$work/interface.so"
if [ "$write" = yes ] && [ ! -e "$record" ]; then
    cp "$work/current.xml" "$record"
fi
nm -D --defined-only "$library" | awk '{ print $NF }' >"$work/symbols"
python3 "$here/compare.py" "$record" "$work/current.xml" "$work/symbols"
[ "$write" = no ] || cp "$work/current.xml" "$record"
