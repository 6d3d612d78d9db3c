#!/usr/bin/env bash
# Installs the packages in this machine's own system, with its compiler, builds hosts with what they bring and nothing that
# tells where, and removes the packages again. What is written goes to memory and away with this program: nothing changes here.
#   unshare --mount [--map-root-user] developers-system.bash PACKAGES_FOLDER FOLDER
# Ends with 77 where the machine does not let a folder of memory be laid over its system.
set -euo pipefail
packages=$1 memory=$2
export LC_ALL=C
mount -t tmpfs -o mode=755,size=300m none "$memory"
mkdir "$memory"/{written,work,system}
root=$memory/system
mount -t overlay overlay -o "lowerdir=/,upperdir=$memory/written,workdir=$memory/work" "$root" 2>/dev/null || exit 77
for folder in dev proc; do
    mount --rbind "/$folder" "$root/$folder"
done
mkdir -p "$root/packages"
cp "$packages"/*.deb "$root/packages"

inside() {
    chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C DEBIAN_FRONTEND=noninteractive \
        /bin/sh -c "$1"
}
fail() {
    echo "$1" >&2
    exit 1
}

inside 'dpkg -i /packages/*.deb' >"$memory/log" 2>&1 || { cat "$memory/log"; fail "the packages cannot be installed"; }
cat >"$root/packages/developer" <<'TEXT'
set -e
cd /packages
cp -R /usr/share/doc/trellan-update/examples example
sed -i 's/"clock": "real"/"clock": "virtual"/' example/target.json
cp example/target.json fresh.json
export TRELLAN_TARGET=/packages/example/target.json
cmake -S example/host -B with-cmake >log
cmake --build with-cmake >>log
echo y | with-cmake/trellan-host example/archive >first.txt
cp fresh.json example/target.json
c++ -std=c++11 example/host/main.cpp -o with-pkg-config $(pkg-config --cflags --libs ZoTrellanUpdateLib) -pthread
echo y | ./with-pkg-config example/archive >second.txt
TEXT
inside 'sh -e /packages/developer' || fail "the example of a host does not build or run"
for text in first second; do
    [ "$(tail -n 1 "$root/packages/$text.txt")" = "Done." ] || { cat "$root/packages/$text.txt"; fail "the host fails"; }
done
! readelf -d "$root/packages/with-cmake/trellan-host" "$root/packages/with-pkg-config" | grep -E 'RPATH|RUNPATH' ||
    fail "the hosts know a folder of libraries"

inside 'dpkg -P libzotrellanupdatelib-dev trellan-update libzotrellanupdatelib1 trellan-simulation' >"$memory/log" 2>&1 ||
    { cat "$memory/log"; fail "the packages cannot be removed"; }
# All that was written, but dpkg's own books, what programs keep to be quicker, and what was built above.
(cd "$memory/written" && find . ! -type d ! -path './var/lib/dpkg/*' ! -path './var/cache/*' ! -path './var/log/*' \
    ! -path ./etc/ld.so.cache ! -path './packages/*' ! -path './tmp/*') | { ! grep .; } ||
    fail "the packages leave something behind"
