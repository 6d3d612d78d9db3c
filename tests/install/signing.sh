#!/usr/bin/env bash
# The commands of SECURITY.md, as they stand there: the maker's sign an archive with both programs, and the user's update a
# target with it as it was signed, and with nothing that was changed since.
# shellcheck source=tests/install/environment.bash
. "$(dirname "$0")/environment.bash"
for program in ssh-keygen:openssh-client gpg:gpg gpgv:gpgv; do
    command -v "${program%:*}" >/dev/null || not_run "there is no ${program%:*} (package ${program#*:})"
done
needs_a_mount "the flash drive of the example"
prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >install.log
export PATH=$prefix/bin:$PATH TRELLAN_TARGET=$work/user/target.json GNUPGHOME=$work/keys/gnupg
unset SSH_AUTH_SOCK

# block NUMBER: the commands of the document's block with this number, from 1.
block() {
    awk -v wanted="$1" '/^    / { if (!inside) { ++number } inside = 1; if (number == wanted) { print substr($0, 5) } next }
                        { inside = 0 }' "$source/SECURITY.md"
}
block 1 >maker.sh
block 2 >user.sh
for command in ssh-keygen gpg; do
    grep -q "^$command " maker.sh || fail "the maker's commands are not found"
done
grep -q '^trellan-update update' user.sh || fail "the user's commands are not found"

# The maker's keys, and those of somebody else.
mkdir -m 700 keys "$GNUPGHOME"
trap 'gpgconf --kill all; rm -rf "$work"' EXIT
for name in release-key other-key; do
    ssh-keygen -q -t ed25519 -N '' -C '' -f "keys/$name"
    gpg --batch --quiet --passphrase '' --quick-generate-key "$name@maker.example" ed25519 sign never 2>gpg.log ||
        { cat gpg.log; fail "gpg makes no key"; }
done

# The archive has a file under two names, of which the description names the link; another link leads to a folder.
copy_example "$prefix" maker
cp keys/release-key maker
mv maker/archive/hcn-firmware.bin maker/archive/hcn-firmware-23.2.bin
ln -s hcn-firmware-23.2.bin maker/archive/hcn-firmware.bin
mkdir maker/archive/notes
echo changes >maker/archive/notes/changes.txt
ln -s notes maker/archive/documents
(cd maker && LC_ALL=C.UTF-8 bash -e ../maker.sh) >maker.log 2>&1 || { cat maker.log; fail "the maker cannot sign"; }

# delivered: a copy of what the maker has released, in "user", with the public keys.
delivered() {
    rm -rf user
    cp -R maker user
    rm user/release-key
    echo "releases@maker.example $(cat keys/release-key.pub)" >user/allowed_signers
    gpg --export release-key@maker.example >user/maker.gpg
}
updates() {
    (cd user && bash ../user.sh) >user.log 2>&1
}
# refuses WHAT: after a change, nothing is updated.
refuses() {
    local before
    before=$(sha256sum user/target.json)
    ! updates || { cat user.log; fail "$1 is not noticed"; }
    ! grep -q '^Updating:' user.log || { cat user.log; fail "the update is begun although $1"; }
    expect "the target after: $1" "$before" "$(sha256sum user/target.json)"
}

delivered
updates || { cat user.log; fail "what was signed is not updated"; }
grep -q '^ *Update completed successfully!' user.log || { cat user.log; fail "the update does not succeed"; }

delivered
{ cat user/archive/hcn-firmware.bin; echo x; } >user/archive/evil.bin
ln -sf evil.bin user/archive/hcn-firmware.bin
refuses "a link was bent to a file that was added"

delivered
ln -sf ai-cpld.bin user/archive/hcn-firmware.bin
refuses "a link was bent to another file that was signed"

delivered
rm user/archive/documents
mkdir user/archive/documents
echo others >user/archive/documents/changes.txt
refuses "a folder took the place of a link"

delivered
printf x >>user/archive/hcn-cpld.bin
refuses "a file was changed"

delivered
rm user/archive/notes/changes.txt
refuses "a file was taken away"

delivered
echo >user/archive/added.bin
refuses "a file was added"

delivered
sed -i 's/"ai-cpld.bin"/"hcn-cpld.bin"/' user/archive/archive.json
refuses "the description was changed"

# Whoever changes the list as well has no signature for it, of either program.
delivered
printf x >>user/archive/hcn-cpld.bin
(cd user && head -n 1 ../maker.sh | bash -e)
refuses "the list was made anew"
for program in ssh gpg; do
    delivered
    case $program in
        ssh) rm user/archive.sha256.sig; ssh-keygen -q -Y sign -f keys/other-key -n firmware user/archive.sha256 2>ssh.log ;;
        gpg) gpg --batch --quiet --yes --local-user other-key@maker.example --armor --detach-sign user/archive.sha256 ;;
    esac
    refuses "the signature of $program is somebody else's"
done

# What no list has: the tool names it, and does not update.
delivered
cp user/archive/hcn-firmware.bin user/outside.bin
sed -i 's#"name": "hcn-firmware.bin"#"name": "../outside.bin"#' user/archive/archive.json
status=0
trellan-update check user/archive >check.log || status=$?
expect "the status of the check" 1 "$status"
grep -q 'error: .*\[outside-archive\]$' check.log || { cat check.log; fail "a name with .. is not named"; }
status=0
trellan-update update user/archive >update.log 2>&1 || status=$?
expect "the status of an update with a name with .." 6 "$status"
delivered
ln -sf ../outside.bin user/archive/hcn-firmware.bin
cp user/archive/hcn-firmware-23.2.bin user/outside.bin
status=0
trellan-update check user/archive --strict >check.log || status=$?
expect "the status of the strict check" 1 "$status"
grep -q 'warning: .*\[outside-archive\]$' check.log || { cat check.log; fail "a link that leads out is not named"; }
