#!/usr/bin/env bash
# What is installed with the simulated target runs wherever it is put: nothing else tells where its libraries are.
#   installation.sh SOURCE_FOLDER BUILD_FOLDER
set -euo pipefail
source=$1 build=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
unset LD_LIBRARY_PATH DESTDIR

cmake --install "$build" --prefix "$work/installed" >/dev/null
mv "$work/installed" "$work/moved"
for header in "$source"/include/*; do
    cmp "$header" "$work/moved/include/${header##*/}" || { echo "a public header is not installed" >&2; exit 1; }
done
"$work/moved/bin/trellan-update" installed --target "$source/examples/target.json" >"$work/output"
grep -q '^Processor board, SN 16(1), Firmware  *| 23.1 *$' "$work/output" || { cat "$work/output" >&2; exit 1; }

# Everything that the project brings along comes from there, not from the build folder.
ldd "$work/moved/bin/trellan-update" | grep -E '^[[:space:]]*lib(Zo|Trellan)' >"$work/libraries"
if grep -vF "=> $work/moved/" "$work/libraries"; then
    echo "these libraries are not the installed ones" >&2
    exit 1
fi
