#!/usr/bin/env bash
# The library and the tool build against a folder with the maker's headers and libraries in place of our own, and run with
# them when they are installed. Here our declarations and the simulation stand in for the maker's files.
#   maker-platform.sh SOURCE_FOLDER LIBRARY_FOLDER COMPILER JOBS
set -euo pipefail
source=$1 libraries=$2 compiler=$3 jobs=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

mkdir "$work/maker"
ln -s "$source/platform" "$work/maker/include"
configure() {
    cmake -S "$source" -B "$work/build" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS=-O0 \
        -DTRELLAN_PLATFORM_DIR="$work/maker" "$@" >"$work/log" 2>&1
}

# A library that is not there is named.
if configure; then
    echo "configuring succeeded without the maker's libraries" >&2
    exit 1
fi
grep -q "libZoErrorHandling.so is missing" "$work/log" || { cat "$work/log" >&2; exit 1; }

mkdir "$work/maker/lib"
for library in "$libraries"/*.so; do
    case $library in
        */libZoTrellanUpdateLib.so) ;;
        *) ln -s "$library" "$work/maker/lib" ;;
    esac
done

# What needs the simulated target says so.
for option in TRELLAN_TESTS TRELLAN_BENCH; do
    if configure -D$option=ON; then
        echo "configuring succeeded with $option" >&2
        exit 1
    fi
    grep -q "need the simulated target" "$work/log" || { cat "$work/log" >&2; exit 1; }
    rm -rf "$work/build"
done

configure || { cat "$work/log" >&2; exit 1; }
cmake --build "$work/build" -j "$jobs" >"$work/log" 2>&1 || { cat "$work/log" >&2; exit 1; }
DESTDIR="$work/installed" cmake --install "$work/build" --prefix /usr >/dev/null

if find "$work/build" -name 'libZoErrorHandling*' | grep -q .; then
    echo "the simulation was built beside the maker's libraries" >&2
    exit 1
fi
for file in include/ZoITrellanUpdater.h bin/trellan-update; do
    [ -f "$work/installed/usr/$file" ] || { echo "$file is not installed" >&2; exit 1; }
done
version=$(LD_LIBRARY_PATH="$work/maker/lib" "$work/installed/usr/bin/trellan-update" version)
[ "$version" = 1.0 ] || { echo "the tool printed '$version'" >&2; exit 1; }
