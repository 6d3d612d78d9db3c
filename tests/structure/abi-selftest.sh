#!/usr/bin/env bash
# Shows that the comparison with the recorded interface finds what makes hosts fail, and lets pass what does not.
#   abi-selftest.sh SOURCE_FOLDER LIBRARY
set -euo pipefail
source=$1 library=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for command in abidw python3; do
    command -v $command >/dev/null || { echo "$command is not installed"; exit 77; }
done
"$source/abi/check.sh" "$source/include" "$library" >"$work/output" || { cat "$work/output"; exit 1; }
failures=0

complain() {
    echo "$1:"
    cat "$work/output"
    failures=$((failures + 1))
}

# compare HEADER SED_COMMANDS: with the header changed so.
compare() {
    rm -rf "$work/include"
    cp -R "$source/include" "$work"
    sed -i -E "$2" "$work/include/$1"
    ! cmp -s "$source/include/$1" "$work/include/$1" || { echo "$1 does not have what is to be changed: $2"; exit 1; }
    "$source/abi/check.sh" "$work/include" "$library" >"$work/output"
}

# refuses WHAT EXPECTED HEADER SED_COMMANDS: EXPECTED is among the differences that are named.
refuses() {
    if compare "$3" "$4"; then
        complain "$1 passes"
    elif ! grep -qF "INCOMPATIBLE: $2" "$work/output"; then
        complain "$1 is not named as '$2'"
    fi
}

# takes WHAT EXPECTED HEADER SED_COMMANDS: EXPECTED is among what is named as new.
takes() {
    if ! compare "$3" "$4"; then
        complain "$1 does not pass"
    elif ! grep -qF "new: $2" "$work/output"; then
        complain "$1 is not named as '$2'"
    fi
}

updater=ZoITrellanUpdater.h inspector=ZoITrellanInspector.h
refuses "a record passed by value that grows where there was room" \
    "ZoNTrellanUpdater::ZoTOptions has a further member, more, and hosts hold such records" \
    $updater 's/^    std::uint32_t command = TOOL_VERSION;/&\n    std::uint32_t more = 0;/'
refuses "a record passed by value that grows" "ZoNTrellanUpdater::ZoTOptions has 240 bytes, and had 208" \
    $updater 's/^    std::uint32_t command = TOOL_VERSION;/&\n    std::string more;/'
refuses "a record in an array that grows" "ZoNTrellanUpdater::ZoTUpdateElement has 312 bytes, and had 280" \
    $updater 's/^    bool disabled = false;.*/&\n    std::string more;/'
refuses "two members exchanged" \
    "ZoNTrellanUpdater::ZoTOptions: in place of bool force at byte 192 there is bool verbose at byte 192" \
    $updater 's/bool force = false;/bool verbose = false;/; t; s/bool verbose = false;/bool force = false;/'
refuses "a member of another type" "ZoNTrellanUpdater::ZoTUpdateFile: in place of " \
    $updater 's/^    std::string version;  .. "0.0"/    std::uint64_t version[4]; \/\/ "0.0"/'
refuses "an operation in the middle" "ZoITrellanUpdater: slot 8 is void more(), and was void getArchiveInfo(" \
    $updater 's/^    virtual int run\(\) = 0;/&\n    virtual void more() = 0;/'
refuses "an operation that is gone" "ZoITrellanUpdater: slot 14 is gone, and was bool reboot()" \
    $updater '/virtual bool reboot\(\) = 0;/d'
refuses "an operation with another parameter" \
    "ZoITrellanUpdater: slot 11 is void disableUpdateElement(unsigned long int), and was void disableUpdateElement(unsigned int)" \
    $updater 's/disableUpdateElement\(unsigned index\)/disableUpdateElement(unsigned long index)/'
refuses "a command with another number" "ZoNTrellanUpdater::ZoTCommand::UPDATE is 8, and was 7" \
    $updater 's/UPDATE = 7 /UPDATE = 8 /'
refuses "a record that was handed out by reference alone, and is given by value" \
    "ZoNTrellanInspector::ZoTElement was only handed out by reference" \
    $inspector 's/virtual const ZoNTrellanInspector::ZoTElement& getElement/virtual ZoNTrellanInspector::ZoTElement getElement/'
refuses "a record that was handed out alone, and is made by the host" \
    "ZoNTrellanInspector::ZoTElement was only handed out by reference" \
    $inspector 's/^    virtual unsigned getTargetErrorCount/    virtual void take(const ZoNTrellanInspector::ZoTElement\&) = 0;\n&/'
refuses "a state with another number" "ZoNTrellanInspector::ZoTState::RUNNING is 12, and was 11" \
    $inspector 's/RUNNING = 11 /RUNNING = 12 /'
refuses "a member in the middle of a record that is handed out by reference" "ZoNTrellanInspector::ZoTElement: in place of" \
    $inspector 's/^    bool isDowngrade;/    std::uint64_t more;\n&/'
takes "an operation behind the last one" "ZoITrellanUpdater: void more() in slot 15" \
    $updater 's/^    virtual bool reboot\(\) = 0;/&\n    virtual void more() = 0;/'
takes "a member behind the last one of a record that is handed out by reference" "ZoNTrellanInspector::ZoTElement::more" \
    $inspector 's/^    ZoTNeed need;/&\n    std::string more;/'
takes "a further state" "ZoNTrellanInspector::ZoTState::MORE" $inspector 's/RUNNING = 11 /RUNNING = 11, MORE = 12 /'

# A library without the factories.
c++ -shared -fPIC -x c++ /dev/null -Wl,-soname,libZoTrellanUpdateLib.so.1 -o "$work/library.so"
if "$source/abi/check.sh" "$source/include" "$work/library.so" >"$work/output"; then
    complain "a library without the factories passes"
fi
grep -q "does not export _ZN17ZoITrellanUpdater14createInstance" "$work/output" || complain "the factory is not named"

[ "$failures" -eq 0 ] || exit 1
echo "what makes hosts fail is found"
