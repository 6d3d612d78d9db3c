// Reading and checking the target file, and writing what an update has changed.
#include "simulation/target/TargetFile.h"

#include <sys/stat.h>

#include <ctime>
#include <system_error>

#include "libZoInventoryTree/ZoNInventoryIDs.h"
#include "simulation/base/RegularFile.h"
#include "simulation/libZoInventoryTree/DocumentBuilder.h"
#include "simulation/libZoInventoryTree/TreeBuilder.h"
#include "simulation/target/AtomicFile.h"
#include "simulation/target/FlashDrive.h"

namespace TrellanSimulation {

namespace {

ClockKind readClock(const Json& value, const Place& place)
{
    const std::string& text = getText(value, place);
    if (text != "real" && text != "virtual") {
        throw DocumentFault(place, "neither \"real\" nor \"virtual\"");
    }
    return text == "virtual" ? ClockKind::virtualTime : ClockKind::real;
}

// The system takes a NUL character for the end of a path, and nothing for the target file's own folder.
const std::string& readFolder(const Json& value, const Place& place)
{
    const std::string& text = getText(value, place);
    if (text.empty()) {
        throw DocumentFault(place, "empty");
    }
    if (text.find('\0') != std::string::npos) {
        throw DocumentFault(place, "holds a NUL character");
    }
    return text;
}

void readFlashFile(TreeItem& item)
{
    using namespace ZoNInventoryIDs;
    if (item.getID().getCategory() != FILESYSTEM_ELEMENT.getCategory()) {
        return;
    }
    const ZoCInventoryParameter* parameter = item.getParameter(LOCATION);
    const auto* location = parameter == nullptr ? nullptr : std::get_if<std::string>(&parameter->value);
    const auto file = location == nullptr ? std::nullopt : FlashDrive::find(*location);
    const auto checksum = file ? fileChecksum(*file) : std::nullopt;
    if (checksum) {
        item.setParameter(VALID, std::uint64_t{1});
        item.setParameter(CHECKSUM_CRC32, std::uint64_t{*checksum});
    }
}

}  // namespace

TargetFile::TargetFile(const std::filesystem::path& path) : path(std::filesystem::weakly_canonical(path))
{
    read();
    readMembers();
    findElements();
}

std::unique_ptr<TreeItem> TargetFile::makeTree()
{
    auto tree = unused ? std::move(unused) : buildTree(*findMember(document, "tree"), Place(Place(), "tree"));
    if (flash) {
        tree->forEach(readFlashFile);
    }
    tree->setFaults(calls->values);
    return tree;
}

void TargetFile::save()
{
    if (!changed) {
        return;
    }
    if (stamp.differsFromThatOf(path)) {
        throw std::runtime_error("another program has changed it meanwhile");
    }
    try {
        replaceFile(path, changedText());
    } catch (const std::system_error&) {
        takeStamp();  // the new file may be in its place all the same
        throw;
    }
    takeStamp();
    changed = false;
}

void TargetFile::takeStamp()
{
    const std::time_t now = std::time(nullptr);
    struct stat status = {};
    if (::stat(path.c_str(), &status) == 0) {
        stamp = FileStamp(status, now);
    }
}

void TargetFile::read()
try {
    RegularFile file(path);
    stamp = file.stamp();
    document = parseDocument(file, &text);
} catch (const FileFault& fault) {
    throw DocumentFault(fault.what());
}

void TargetFile::readMembers()
{
    const Place top;
    requireMembers(document, {"clock", "bytesPerSecond", "flashDrive", "tree", "script"}, top);
    if (const Json* clock = findMember(document, "clock")) {
        clockOfTarget = readClock(*clock, Place(top, "clock"));
    }
    if (const Json* bytes = findMember(document, "bytesPerSecond")) {
        rate = getNumber(*bytes, Place(top, "bytesPerSecond"), 1, std::numeric_limits<std::uint64_t>::max());
    }
    if (const Json* folder = findMember(document, "flashDrive")) {
        flash = path.parent_path() / readFolder(*folder, Place(top, "flashDrive"));
    }
    const Json* script = findMember(document, "script");
    calls = std::make_shared<Script>(script == nullptr ? Script() : readScript(*script, Place(top, "script")));
}

}  // namespace TrellanSimulation
