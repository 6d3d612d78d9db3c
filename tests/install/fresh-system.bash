#!/usr/bin/env bash
# Installs the packages in a system that has nothing but what each Debian has and what they depend on, runs the tool there as
# somebody does who has only them, upgrades them, and removes them again. The system is made of this machine's packages, in
# memory, in a mount namespace of its own: it takes no network, and changes nothing here.
#   unshare --mount [--map-root-user] fresh-system.bash PACKAGES_FOLDER FOLDER
set -euo pipefail
packages=$1 root=$2
export LC_ALL=C
mount -t tmpfs -o mode=755,size=600m none "$root"

# What the packages need of the system is what they say.
# shellcheck disable=SC2016 # ${...} is for dpkg-query
essential=$(dpkg-query -W -f '${Essential} ${Package}\n' | sed -n 's/^yes //p')
needed=$(for package in "$packages"/*.deb; do dpkg-deb -f "$package" Depends; done |
    tr ',' '\n' | sed 's/^ *//; s/ .*//' | sort -u | grep -v trellan)
# shellcheck disable=SC2086 # a word for each package
named=$(apt-cache --installed --recurse --no-recommends --no-suggests --no-conflicts --no-breaks --no-replaces \
    --no-enhances depends $essential $needed | grep '^[a-z0-9]' | sort -u)
# Of alternatives only what is installed here.
# shellcheck disable=SC2016,SC2086 # ${...} is for dpkg-query; $named: a word for each package
installed=$({ dpkg-query -W -f '${db:Status-Status} ${Package}\n' $named 2>/dev/null || true; } |
    sed -n 's/^installed //p' | sort -u)

mkdir -p "$root"/{dev,proc,root,tmp,etc,mnt,usr/{bin,sbin,lib,lib64}} "$root"/var/lib/dpkg/{info,updates,triggers}
for folder in bin sbin lib lib64; do
    ln -s "usr/$folder" "$root/$folder"
done
# shellcheck disable=SC2086 # $installed: a word for each package
dpkg -L $installed | grep '^/' | grep -vE '^/usr/share/(doc|man|info|locale|lintian)/' |
    sed -E 's#^/(bin|sbin|lib|lib64)/#/usr/\1/#; s#^/##' | grep -vxE '|\.|bin|sbin|lib|lib64' | sort -u |
    (cd / && while IFS= read -r file; do [ ! -e "$file" ] && [ ! -L "$file" ] || printf '%s\0' "$file"; done) |
    tar -C / --ignore-failed-read --no-recursion --null --files-from - -c | tar -C "$root" --no-same-owner -x
for package in $installed; do
    cp /var/lib/dpkg/info/"$package".* /var/lib/dpkg/info/"$package":*.* "$root/var/lib/dpkg/info" 2>/dev/null || true
done
# shellcheck disable=SC2086 # $installed: a word for each package
dpkg -s $installed >"$root/var/lib/dpkg/status"
cp /var/lib/dpkg/triggers/ldconfig "$root/var/lib/dpkg/triggers"
: >"$root/var/lib/dpkg/available"
echo 'root:x:0:0:root:/root:/bin/sh' >"$root/etc/passwd"
echo 'root:x:0:' >"$root/etc/group"
touch "$root/dev/null"
mount --bind /dev/null "$root/dev/null"
mount --rbind /proc "$root/proc" # the simulated flash drive needs it
mkdir "$root/packages"
cp "$packages"/*.deb "$root/packages"

inside() {
    chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C /bin/sh -c "$1"
}
fail() {
    echo "$1" >&2
    exit 1
}
# What is there, but dpkg's own books and what ldconfig has collected.
listed() {
    (cd "$root" && find . -xdev ! -path './var/lib/dpkg/*' ! -path './var/cache/ldconfig*' ! -path ./etc/ld.so.cache \
        ! -path './var/log/*' ! -path './root/*' ! -path './tmp/*' | sort)
}

inside ldconfig
mkdir -p "$root/var/log" "$root/var/cache/ldconfig"
listed >"$root/tmp/before"
! inside 'dpkg -i /packages/trellan-update_*.deb' >"$root/tmp/log" 2>&1 || fail "the tool's package is installed without its library"
inside 'dpkg -P trellan-update' >>"$root/tmp/log" 2>&1
inside 'dpkg -i /packages/*.deb' >"$root/tmp/log" 2>&1 || { cat "$root/tmp/log"; fail "the packages cannot be installed"; }
ours="libzotrellanupdatelib-dev trellan-update libzotrellanupdatelib1 trellan-simulation"
[ "$(inside "dpkg-query -W -f '\${Status},' $ours")" = "$(printf 'install ok installed,%.0s' 1 2 3 4)" ] ||
    fail "not every package is installed wholly"
inside "dpkg -V $ours" | { ! grep .; } || fail "installed files are not those of the packages"
inside 'ldconfig -p' >"$root/tmp/libraries"
grep -q 'libZoTrellanUpdateLib.so.1 .*=> /' "$root/tmp/libraries" || fail "the system does not find the library"
! grep libZoErrorHandling "$root/tmp/libraries" || fail "the system takes the simulation for the maker's libraries"

cat >"$root/root/user" <<'TEXT'
set -e
cp -R /usr/share/doc/trellan-update/examples /root/example
sed -i 's/"clock": "real"/"clock": "virtual"/' /root/example/target.json
cd /root/example
trellan-update update archive --target target.json >first.txt
trellan-update update archive --target target.json >second.txt
TEXT
inside 'sh -e /root/user' || fail "the example cannot be updated"
grep -q '^Updating:' "$root/root/example/first.txt" || fail "the update updated nothing"
grep -q 'Update completed successfully!' "$root/root/example/first.txt" || fail "the update does not report success"
! grep -q '^Updating:' "$root/root/example/second.txt" || fail "the second update still found something to do"

# The next version, with the next library: what it takes the place of goes away, and it works on.
next_version=9.9.9
version=$(inside "dpkg-query -W -f '\${Version}' trellan-update")
mkdir -p "$root/tmp/next"
for package in "$packages"/*.deb; do
    tree=$(mktemp -d "$root/tmp/next-XXXXXX")
    dpkg-deb -R "$package" "$tree"
    sed -i "s/^Version: .*/Version: $next_version/; /^Depends:/s/= $version)/= $next_version)/g" "$tree/DEBIAN/control"
    find "$tree/usr" -name "libZoTrellanUpdateLib.so.$version" | while read -r library; do
        mv "$library" "${library%"$version"}$next_version"
        ln -sf "$(basename "${library%"$version"}$next_version")" "$(dirname "$library")/libZoTrellanUpdateLib.so.1"
        sed -i "s/libZoTrellanUpdateLib\.so\.$version/libZoTrellanUpdateLib.so.$next_version/" "$tree/DEBIAN/md5sums"
    done
    dpkg-deb -b --root-owner-group "$tree" "$root/tmp/next" >/dev/null
done
! inside 'dpkg -i /tmp/next/trellan-update_*.deb' >"$root/tmp/log" 2>&1 || fail "the next tool is installed with the old library"
inside 'dpkg -i /tmp/next/*.deb' >"$root/tmp/log" 2>&1 || { cat "$root/tmp/log"; fail "the packages cannot be upgraded"; }
[ "$(inside "dpkg-query -W -f '\${Status} \${Version},' $ours")" = \
    "$(printf "install ok installed $next_version,%.0s" 1 2 3 4)" ] || fail "not every package is upgraded wholly"
inside "dpkg -V $ours" | { ! grep .; } || fail "installed files are not those of the next packages"
[ "$(find "$root/usr/lib" -name 'libZoTrellanUpdateLib.so*' -printf '%f\n' | sort | xargs)" = \
    "libZoTrellanUpdateLib.so libZoTrellanUpdateLib.so.1 libZoTrellanUpdateLib.so.$next_version" ] ||
    fail "the old library is still there"
inside 'ldconfig -p' | grep 'libZoTrellanUpdateLib.so.1 .*=> /' >/dev/null || fail "the system does not find the next library"
inside 'rm -r /root/example && sh -e /root/user' || fail "the example cannot be updated behind an upgrade"
grep -q 'Update completed successfully!' "$root/root/example/first.txt" || fail "the upgraded tool does not report success"

# There is nothing to configure, so that what is removed needs not be purged.
inside "dpkg -r $ours" >"$root/tmp/log" 2>&1 ||
    { cat "$root/tmp/log"; fail "the packages cannot be removed"; }
listed | diff "$root/tmp/before" - || fail "the packages leave something behind"
! inside 'ldconfig -p' | grep Trellan || fail "the system still knows the library"
! inside 'dpkg -l' | grep -i trellan || fail "dpkg still knows the packages"
