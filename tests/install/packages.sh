#!/usr/bin/env bash
# The Debian packages: what stands in them, what lintian says of them, and how they are installed, used and removed in a fresh
# system and in a developer's.
# shellcheck source=tests/install/environment.bash
. "$(dirname "$0")/environment.bash"
command -v dpkg-shlibdeps >/dev/null || not_run "it takes Debian, and its dpkg-dev"
"$source/dev" package >package.log 2>&1 || { cat package.log; fail "./dev package fails"; }
packages=$source/build/packages
version=$(sed -n 's/^project(.* VERSION \([0-9.]*\) .*/\1/p' "$source/CMakeLists.txt")
architecture=$(dpkg --print-architecture)

file_of() {
    echo "$packages/${1}_${version}_$architecture.deb"
}
expect "the packages" "libzotrellanupdatelib-dev_${version}_$architecture.deb
libzotrellanupdatelib1_${version}_$architecture.deb
trellan-simulation_${version}_$architecture.deb
trellan-update_${version}_$architecture.deb" "$(cd "$packages" && ls)"

# Between each other they ask for what fits; the system's libraries are found by what is linked.
depends() {
    dpkg-deb -f "$(file_of "$1")" Depends | tr ',' '\n' | sed 's/^ *//' | grep -E "$2" | sort
}
expect "what the library's package needs" "libc6 libgcc-s1 libstdc++6 trellan-simulation" \
    "$(depends libzotrellanupdatelib1 . | sed 's/ .*//' | xargs)"
expect "which simulation" "trellan-simulation (= $version)" "$(depends libzotrellanupdatelib1 trellan)"
expect "which library the developer's package needs" "libzotrellanupdatelib1 (= $version)" \
    "$(depends libzotrellanupdatelib-dev trellan)"
expect "what the tool's package needs" "libc6 libgcc-s1 libmd0 libstdc++6 libzotrellanupdatelib1" \
    "$(depends trellan-update . | sed 's/ .*//' | xargs)"

for package in "$packages"/*.deb; do
    name=$(basename "$package" | sed 's/_.*//')
    dpkg-deb -R "$package" "$name"
    documents=$name/usr/share/doc/$name
    grep -qx ' Copyright (c) Velorant. All rights reserved.' "$documents/copyright" || fail "$name has no copyright"
    gzip -dc "$documents/changelog.gz" >changelog
    expect "the version in the changelog of $name" "$version" "$(dpkg-parsechangelog -l changelog -S Version)"

    # Whoever builds them, wherever and whenever, has the same bytes.
    released=$(sed -n "s/^## \[$version\] - //p" "$source/CHANGELOG.md")
    expect "the owners and the times in $name" "root/root $released 00:00" \
        "$(TZ=UTC dpkg-deb -c "$package" | awk '{ print $2, $4, $5 }' | sort -u)"
    if grep -rlF -e "$source" -e "$build" "$name"; then
        fail "these files of $name tell where they were built"
    fi
    find "$name" -type f -exec file {} + | { ! grep 'not stripped'; } || fail "this is not stripped"
done
expect "what the library tells of itself" "libZoTrellanUpdateLib 1 libzotrellanupdatelib1 (>= $version)" \
    "$(cat libzotrellanupdatelib1/DEBIAN/shlibs)"
for name in libzotrellanupdatelib1 libzotrellanupdatelib-dev trellan-update trellan-simulation; do
    [ -z "$(find "$name/DEBIAN" -name 'p*' -o -name conffiles)" ] || fail "$name has scripts, or something to configure"
done
expect "what installing the library sets off" "activate-noawait ldconfig" "$(cat libzotrellanupdatelib1/DEBIAN/triggers)"
! readelf -d trellan-update/usr/bin/trellan-update | grep -E 'RPATH|RUNPATH' || fail "the tool knows a folder of libraries"

lintian --allow-root --fail-on error,warning "$packages"/*.deb || fail "lintian finds something"

needs_a_mount "what stands in the packages is right, but to install them in a fresh system"
namespace=(unshare --mount)
[ "$(id -u)" -eq 0 ] || namespace+=(--map-root-user)
mkdir fresh developers
"${namespace[@]}" "$source/tests/install/fresh-system.bash" "$packages" "$work/fresh"
status=0
"${namespace[@]}" "$source/tests/install/developers-system.bash" "$packages" "$work/developers" || status=$?
[ "$status" -ne 77 ] ||
    not_run "all but this: to build hosts with the packages takes a machine that lets memory be laid over its system"
exit "$status"
