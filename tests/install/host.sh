#!/usr/bin/env bash
# The installed example of a host is built with CMake and a program of the host's guide with pkg-config alone, and both update
# the installed example. The folder is none of the system's, so LD_LIBRARY_PATH names it when they run.
# shellcheck source=tests/install/environment.bash
. "$(dirname "$0")/environment.bash"
needs_a_mount "the flash drive of the example"
prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >install.log
libraries=$(dirname "$(find "$prefix" -name libZoTrellanUpdateLib.so.1)")

# As if the compiler's own default were the other layout of strings.
cat >old-strings.h <<'TEXT'
#ifndef _GLIBCXX_USE_CXX11_ABI
#define _GLIBCXX_USE_CXX11_ABI 0
#endif
TEXT

# run_host PROGRAM ARGUMENT...: with a fresh copy of the example in "example", whose target begins with $script where it is set.
script=''
run_host() {
    ! readelf -d "$1" | grep -E 'RPATH|RUNPATH' || fail "$1 knows a folder of libraries"
    rm -rf example
    copy_example "$prefix" example
    [ -z "$script" ] || sed -i "1s/{/$script/" example/target.json
    LD_LIBRARY_PATH=$libraries TRELLAN_TARGET=$work/example/target.json "$@"
}

# With CMake.
mkdir wanted
cat >wanted/CMakeLists.txt <<'TEXT'
cmake_minimum_required(VERSION 3.13)
project(wanted LANGUAGES NONE)
find_package(ZoTrellanUpdateLib ${WANTED} REQUIRED)
TEXT
for version in 1.1 2.0; do
    ! cmake -S wanted -B "wanted-$version" -G Ninja -DWANTED=$version -DCMAKE_PREFIX_PATH="$prefix" >cmake.log 2>&1 ||
        fail "CMake takes version $version for installed"
    grep -q "compatible with requested version \"$version\"" cmake.log || { cat cmake.log; fail "CMake failed otherwise"; }
done
cmake -S "$prefix/share/doc/trellan-update/examples/host" -B host -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
    -DCMAKE_SKIP_RPATH=ON -DCMAKE_CXX_FLAGS="-include $work/old-strings.h" >cmake.log 2>&1 ||
    { cat cmake.log; fail "CMake does not find what is installed"; }
cmake --build host >cmake.log 2>&1 || { cat cmake.log; fail "the host does not build with CMake"; }
run_host host/trellan-host example/archive <<<y >host.log || { cat host.log; fail "the host built with CMake fails"; }
expect "the host's last words" "Done." "$(tail -n 1 host.log)"
expect "the elements to be updated" 12 "$(grep -c 'to be updated$' host.log)"
expect "the elements that were updated" 12 "$(grep -v 'to be' host.log | grep -c ' updated$')"

# What fails and is no element's is told with its reason.
for call in lock unlock; do
    error="{\"errors\": [{\"code\": 19, \"text\": \"the $call is out of order\"}]}"
    script="{ \"script\": { \"$call\": [$error] }," status=0
    run_host host/trellan-host example/archive <<<y >host.log 2>errors.log || status=$?
    expect "the status where the $call fails" 1 "$status"
    grep -q "the $call is out of order" errors.log || { cat host.log errors.log; fail "the host does not tell why it fails"; }
done
script=''

# Also where whoever starts it ignores that its children end. (A shell that is not interactive cannot undo that.)
(trap '' CHLD; run_host host/trellan-host example/archive <<<y >host.log) || { cat host.log; fail "the host fails where SIGCHLD is ignored"; }
cmp example/archive/site.cfg example/flash/config/site.cfg || fail "the file was not copied where SIGCHLD is ignored"

# Stopped by Ctrl-C or by SIGTERM, which its children get too, while a file is copied in the second phase of three.
mkdir slow
cat >slow/cp <<TEXT
#!/bin/sh
touch '$work/copying'
sleep 1
exec /bin/cp "\$@"
TEXT
chmod +x slow/cp
set -m # a process group of its own for what is started
# stop_by SIGNAL: updates a fresh copy of the example, whose target begins with $script where it is set, and sends the signal.
stop_by() {
    rm -rf example copying
    copy_example "$prefix" example
    [ -z "$script" ] || sed -i "1s/{/$script/" example/target.json
    echo old >example/flash/config/site.cfg
    status=0
    PATH=$work/slow:$PATH LD_LIBRARY_PATH=$libraries TRELLAN_TARGET=$work/example/target.json \
        host/trellan-host example/archive <<<y >host.log 2>errors.log &
    for ((i = 0; i < 100; i++)); do
        [ ! -e copying ] || break
        sleep 0.1
    done
    [ -e copying ] || { cat host.log errors.log; fail "no file is copied"; }
    kill -"$1" -- -$!
    wait $! || status=$?
}
for signal in INT TERM; do
    stop_by "$signal"
    expect "the status behind SIG$signal" 3 "$status"
    expect "the host's last words" "Stopped." "$(tail -n 1 host.log)"
    cmp example/archive/site.cfg example/flash/config/site.cfg || fail "the file that was being copied is not whole"
    expect "the elements that were updated" 9 "$(grep -v 'to be' host.log | grep -c ' updated$')"
    expect "the elements that were not" 3 "$(grep -v 'to be' host.log | grep -c ' not begun$')"
    # Nothing is left locked: the rest is updated at once.
    LD_LIBRARY_PATH=$libraries TRELLAN_TARGET=$work/example/target.json host/trellan-host example/archive <<<y >host.log
    expect "the elements of the next update" 3 "$(grep -c 'to be updated$' host.log)"
    expect "the next update's last words" "Done." "$(tail -n 1 host.log)"
done
script='{ "script": { "unlock": [{"errors": [{"code": 19, "text": "the unlock is out of order"}]}] },'
stop_by INT
script=''
grep -q "the unlock is out of order" errors.log || { cat host.log errors.log; fail "a host that is stopped does not tell what failed"; }
set +m

# With pkg-config alone.
pkg_config() {
    PKG_CONFIG_PATH=$libraries/pkgconfig pkg-config "$@"
}
pkg_config --exists 'ZoTrellanUpdateLib >= 1.0 ZoTrellanUpdateLib < 2' || fail "pkg-config does not find version 1"
awk '/^```/ { shown = 0 } shown { print } /^```cpp$/ { shown = ++number == 1 }' \
    "$prefix/share/doc/trellan-update/docs/host.md" >program.cpp
# shellcheck disable=SC2046 # what pkg-config prints is a word for each option
c++ -std=c++11 -include old-strings.h program.cpp -o program $(pkg_config --cflags --libs ZoTrellanUpdateLib)
expect "the program built with pkg-config" $'phase 0\nphase 1\nphase 2\nphase -1\ndone' \
    "$(run_host ./program "$work/example/archive")"
