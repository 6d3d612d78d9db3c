# Sourced by the tests of this folder, which are called with the project's folder and its build folder. They end with 77 where
# they cannot be run, and say why in their last line.
# shellcheck shell=bash
set -euo pipefail
# shellcheck disable=SC2034 # source and build are read where this is sourced
source=$1 build=$2
work=$(mktemp -d /tmp/trellan-install-XXXXXX)
trap 'rm -rf "$work"' EXIT
cd "$work" # away from the sources
unset LD_LIBRARY_PATH DESTDIR PKG_CONFIG_PATH CMAKE_PREFIX_PATH
export LC_ALL=C

fail() {
    echo "$1" >&2
    exit 1
}

not_run() {
    echo "$1"
    exit 77
}

# expect WHAT EXPECTED ACTUAL
expect() {
    [ "$2" = "$3" ] || { printf '%s:\nexpected:\n%s\nactual:\n%s\n' "$1" "$2" "$3" >&2; exit 1; }
}

# needs_a_mount WHAT: the example has a flash drive, which its process mounts for itself.
needs_a_mount() {
    unshare --mount true 2>/dev/null || unshare --map-root-user --mount true 2>/dev/null ||
        not_run "$1 takes root, or a machine that allows user namespaces"
}

# copy_example INSTALLED FOLDER: the installed example, writable, on a clock that does not make anybody wait.
copy_example() {
    mkdir "$2"
    cp -R "$1/share/doc/trellan-update/examples/." "$2"
    chmod -R u+w "$2"
    sed -i 's/"clock": "real"/"clock": "virtual"/' "$2/target.json"
}
