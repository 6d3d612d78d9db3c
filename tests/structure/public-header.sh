#!/usr/bin/env bash
# Checks that hosts can use the public headers with C++11 and nothing else, and that one with other strings than the library's
# is refused. The headers give no warning to a host that asks for many, whichever of the compilers that there are it takes.
# Usage: public-header.sh INCLUDE_FOLDER COMPILER
set -u
include=${1:?include folder}
compiler=${2:?compiler}
flags="-std=c++11 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -x c++"

tried=''
for other in "$compiler" g++ clang++; do
    program=$(command -v "$other" | xargs -r readlink -f)
    [ -n "$program" ] || continue
    case "$tried " in *" $program "*) continue ;; esac
    tried="$tried $program"
    for source in "$include"/*.h "$include"/*.hpp "$include"/../examples/host/main.cpp; do
        for standard in 11 20; do
            # shellcheck disable=SC2086 # $flags: a word for each option
            "$other" $flags -std=c++$standard -I"$include" -Wshadow -Wconversion -Wsign-conversion \
                -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual -Wnull-dereference "$source" ||
                { echo "$source does not compile as C++$standard with $other"; exit 1; }
        done
    done
done

# shellcheck disable=SC2086 # $flags: a word for each option
"$compiler" $flags -I"$include" - <<'HOST' || { echo "a host that includes the headers does not compile"; exit 1; }
#include "ZoITrellanInspector.h"
#include "ZoITrellanInspector.h"
#include "ZoITrellanUpdater.h"
#include "ZoITrellanUpdater.h"

static void note(unsigned) {}
static void take(const std::string&) {}

int main()
{
    ZoNTrellanUpdater::ZoTOptions options;
    options.command = ZoNTrellanUpdater::UPDATE;
    ZoITrellanUpdater* updater = ZoITrellanUpdater::createInstance(options);
    updater->setPhaseCallBack(note);
    updater->setFailureCallBack(note);
    updater->setProgressCallBack(note);
    updater->setMessageCallBack(take);
    const bool updated = updater->apply() == 0 && updater->run() == 1;
    ZoNTrellanUpdater::ZoTUpdateElement* elements = nullptr;
    ZoNTrellanUpdater::ZoTUpdateFile* files = nullptr;
    unsigned count = updater->getArchiveId();
    updater->getUpdateElementList(elements, count);
    delete[] elements;
    updater->getUpdateFileList(files, count);
    delete[] files;
    updater->disableUpdateElement(count);
    std::string name, version, product, format, variant;
    updater->getArchiveInfo(name, version, product, format, variant);
    ZoITrellanInspector* inspector = ZoITrellanInspector::createInstance(*updater);
    for (unsigned i = 0; i < inspector->getElementCount(); ++i) {
        const ZoNTrellanInspector::ZoTElement& element = inspector->getElement(i);
        count += element.state == ZoNTrellanInspector::ZoTState::FAILED && element.filePosition >= 0 ? 1 : 0;
        name = inspector->getElementKeys(i).boardType;
        for (unsigned j = 0; j < inspector->getElementErrorCount(i); ++j) {
            name = inspector->getElementError(i, j).text;
        }
    }
    for (unsigned i = 0; i < inspector->getFileCount(); ++i) {
        name = inspector->getFile(i).path;
        for (unsigned j = 0; j < inspector->readFileKeys(i); ++j) {
            name = inspector->getFileKeys(j).boardType;
        }
    }
    count += inspector->isTargetSupported() ? inspector->getPhaseCount() : 0;
    inspector->checkUsedFiles(nullptr, nullptr);
    for (unsigned i = 0; i < inspector->getFindingCount(); ++i) {
        name = inspector->getFinding(i).message;
    }
    inspector->verify(*inspector);
    count += inspector->getVerification(0).verdict == ZoNTrellanInspector::ZoTVerdict::DIFFERS ? 1 : 0;
    count += inspector->readFileHeader(name).kind == ZoNTrellanInspector::ZoTFileKind::PLAIN ? 1 : 0;
    delete inspector;
    const bool rebooted = updater->checkRebootSupport(count) && updater->reboot();
    delete updater;
    return updated || rebooted ? 0 : 1;
}
HOST

# refused NAME EXPECTED: the host in standard input, which has NAME, is refused with EXPECTED in the error.
refused() {
    local refusal
    # shellcheck disable=SC2086 # $flags: a word for each option
    if refusal=$(LC_ALL=C "$compiler" $flags -I"$include" - 2>&1); then
        echo "a host that has $1 compiles"
        exit 1
    fi
    grep -q "error.*$2" <<<"$refusal" || { echo "a host that has $1 is not told why it is refused:"; echo "$refusal"; exit 1; }
}

cxx11='uses the C++11 strings of libstdc++: compile this host with _GLIBCXX_USE_CXX11_ABI=1'
refused "strings of another layout" "$cxx11" <<'HOST'
#define _GLIBCXX_USE_CXX11_ABI 0
#include "ZoITrellanUpdater.h"
HOST
refused "a libstdc++ that knows no other layout" "$cxx11" <<'HOST'
#include <string>
#undef _GLIBCXX_USE_CXX11_ABI
#include "ZoITrellanUpdater.h"
HOST
refused "the strings of libc++" 'uses libstdc++, and the strings of libc++ have another layout: use libstdc++ here' <<'HOST'
#define _LIBCPP_VERSION 14000
#include "ZoITrellanUpdater.h"
HOST
refused "the strings of libc++, and the inspector alone" 'the strings of libc++ have another layout' <<'HOST'
#define _LIBCPP_VERSION 14000
#include "ZoITrellanInspector.h"
HOST
echo "the public headers compile as C++11"
