#!/usr/bin/env bash
# The installed tool, called from another folder, updates the installed example; nothing else tells where its libraries are.
# shellcheck source=tests/install/environment.bash
. "$(dirname "$0")/environment.bash"
needs_a_mount "the flash drive of the example"
prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >install.log
copy_example "$prefix" "$work/example"

states() { # of the elements, after the command of its arguments
    "$prefix/bin/trellan-update" "$@" example/archive --target example/target.json --json 2>log |
        grep -o '"state": *"[A-Za-z]*"' | sort | uniq -c | sed 's/^ *//; s/"state": *//; s/"//g'
}
expect "the states before" $'1 noFile\n1 upToDate\n12 update' "$(states compare)"
expect "the states of the update" $'1 noFile\n1 upToDate\n12 updated' "$(states update)"
expect "the states after" $'1 noFile\n13 upToDate' "$(states compare)"
