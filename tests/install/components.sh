#!/usr/bin/env bash
# Each component brings what is its own, and every file belongs to one.
# shellcheck source=tests/install/environment.bash
. "$(dirname "$0")/environment.bash"

# listed COMPONENT: what it installs, examples and documents by their folders alone.
listed() {
    cmake --install "$build" --prefix "$work/$1" --component "$1" >install.log
    (cd "$1" && find . ! -type d |
        sed -E 's#^\./##; s#^lib[^/]*/([^/]*-linux-[^/]*/)?#lib/#; s#(/examples|/docs)/.*#\1#' | sort -u)
}
version=$(sed -n 's/^project(.* VERSION \([0-9.]*\) .*/\1/p' "$source/CMakeLists.txt")
expect "the component Runtime" "lib/libZoTrellanUpdateLib.so.1
lib/libZoTrellanUpdateLib.so.$version" "$(listed Runtime)"
expect "the component Development" "include/ZoITrellanInspector.h
include/ZoITrellanUpdater.h
include/ZoTrellanHost.hpp
lib/cmake/ZoTrellanUpdateLib/ZoTrellanUpdateLibConfig.cmake
lib/cmake/ZoTrellanUpdateLib/ZoTrellanUpdateLibConfigVersion.cmake
lib/cmake/ZoTrellanUpdateLib/ZoTrellanUpdateLibTargets-release.cmake
lib/cmake/ZoTrellanUpdateLib/ZoTrellanUpdateLibTargets.cmake
lib/libZoTrellanUpdateLib.so
lib/pkgconfig/ZoTrellanUpdateLib.pc
share/doc/trellan-update/docs
share/doc/trellan-update/examples" "$(listed Development)"
expect "the component Tool" "bin/trellan-update
share/doc/trellan-update/CHANGELOG.md
share/doc/trellan-update/SECURITY.md
share/doc/trellan-update/docs
share/doc/trellan-update/examples" "$(listed Tool | grep -v -e /man/ -e completion -e site-functions)"
expect "the component Simulation" "lib/trellan-simulation/libTrellanSimulation.so
lib/trellan-simulation/libZoComposite.so
lib/trellan-simulation/libZoCompositeFactory.so
lib/trellan-simulation/libZoErrorHandling.so
lib/trellan-simulation/libZoInventoryManagerAP.so
lib/trellan-simulation/libZoInventoryTree.so
lib/trellan-simulation/libZoJsonLib.so
lib/trellan-simulation/libZoRtosAbstraction.so" "$(listed Simulation)"

for component in Runtime Development Tool Simulation; do
    cmake --install "$build" --prefix "$work/whole" --component "$component" >install.log
done
mv whole parts
cmake --install "$build" --prefix "$work/whole" >install.log
diff -r parts whole || fail "the components together are not the whole"

for link in libZoTrellanUpdateLib.so:libZoTrellanUpdateLib.so.1 \
    libZoTrellanUpdateLib.so.1:"libZoTrellanUpdateLib.so.$version"; do
    expect "the link ${link%:*}" "${link#*:}" "$(readlink "$(find whole -name "${link%:*}")")"
done

# The version stands in one place, and all tell that one.
expect "the tool's version" "trellan-update $version" "$(whole/bin/trellan-update --version)"
expect "the library's version, which ends with what is not 0" "$(sed -E 's/(\..*)\.0$/\1/' <<<"$version")" \
    "$(whole/bin/trellan-update version)"
expect "pkg-config's version" "$version" \
    "$(PKG_CONFIG_PATH=$(dirname "$(find whole -name '*.pc')") pkg-config --modversion ZoTrellanUpdateLib)"
grep -qF "set(PACKAGE_VERSION \"$version\")" "$(find whole -name '*ConfigVersion.cmake')" || fail "CMake is told another version"

# Links of the documents lead to what is installed.
documents=$work/whole/share/doc/trellan-update
for document in "$documents"/*.md "$documents"/docs/*.md; do
    grep -oE '\]\([^) ]+\)' "$document" | sed -E 's/^..(.*).$/\1/; s/#.*//; /^https:/d' | while read -r name; do
        [ -e "$(dirname "$document")/$name" ] || fail "$(basename "$document"): the link $name leads nowhere"
    done
done

# What tells where the examples and documents are tells where they have been installed.
mentioned() {
    grep -rhoE '/[^ ]*/share/doc/trellan-update/(examples|docs)\b' "$documents"/*.md "$documents/docs" | sort -u
    find whole/share/man -type f -exec cat {} + | sed 's/\\-/-/g' |
        grep -oE '/[^ ]*/share/doc/trellan-update/(examples|docs)\b' | sort -u
}
expect "the folders that documents and man pages name" "$documents/examples
$documents/docs
$documents/examples" "$(mentioned)"
! grep -rl 'ansible/ansible_collections/.*README' "$documents" || fail "a document links to what is not installed"

# Also where a folder lies apart from the prefix, where installing makes links, and where the prefix is a relative path. A
# configuration of its own, whose binaries are those that are there already.
cmake -S "$source" -B apart -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$work/own" \
    -DCMAKE_INSTALL_MANDIR="$work/own/manual" -DCMAKE_INSTALL_DATAROOTDIR="$work/data" -DTRELLAN_TESTS=OFF >configure.log 2>&1 ||
    { cat configure.log; fail "folders apart from the prefix cannot be configured"; }
mkdir -p apart/bin
cp "$build/bin/trellan-update" apart/bin/
sources_before=$(cd "$source/docs" && find . -type f -exec md5sum {} + | sort)
# installs WHERE OPTION...: the tool's component of that configuration; its man pages and documents name the folder WHERE.
installs() {
    local where=$1
    shift
    cmake --install apart --component Tool "$@" >install.log 2>&1 || { cat install.log; fail "cannot be installed: $*"; }
    expect "the examples' folder that the man page of the tool names, in $where" "$where/doc/trellan-update/examples" \
        "$(sed 's/\\-/-/g' own/manual/man1/trellan-update.1 | grep -oE '/[^ ]*/examples\b' | sort -u)"
    [ -s own/manual/man5/trellan-archive.5 ] || fail "there is no man page of the archive"
    rm -r own
}
installs "$work/data"
grep -qF "$work/data/doc/trellan-update/examples" data/doc/trellan-update/docs/tour.md || fail "the tour names another folder"
CMAKE_INSTALL_MODE=ABS_SYMLINK installs "$work/data"
expect "the sources behind links to them" "$sources_before" "$(cd "$source/docs" && find . -type f -exec md5sum {} + | sort)"
cmake --install "$build" --prefix relative --component Tool >install.log
expect "the examples' folder where the prefix is relative" "$work/relative/share/doc/trellan-update/examples" \
    "$(sed 's/\\-/-/g' relative/share/man/man1/trellan-update.1 | grep -oE '[^ ]*/doc/trellan-update/examples\b' | sort -u)"
