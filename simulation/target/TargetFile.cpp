// Reading and checking the target file, and writing what an update has changed.
#include "simulation/target/TargetFile.h"

#include <sys/stat.h>

#include <climits>
#include <ctime>
#include <system_error>

#include "libZoInventoryTree/ZoNInventoryIDs.h"
#include "simulation/base/RegularFile.h"
#include "simulation/libZoInventoryTree/TreeBuilder.h"
#include "simulation/target/AtomicFile.h"
#include "simulation/target/FlashDrive.h"

namespace TrellanSimulation {

namespace {

ClockKind readClock(const Json& value, const Place& place)
{
    const std::string_view text = getText(value, place);
    if (text != "real" && text != "virtual") {
        throw DocumentFault(place, "neither \"real\" nor \"virtual\"");
    }
    return text == "virtual" ? ClockKind::virtualTime : ClockKind::real;
}

// The system takes a NUL character for the end of a path, and nothing for the target file's own folder.
std::string_view readFolder(const Json& value, const Place& place)
{
    const std::string_view text = getText(value, place);
    if (text.empty()) {
        throw DocumentFault(place, "empty");
    }
    if (text.find('\0') != std::string_view::npos) {
        throw DocumentFault(place, "holds a NUL character");
    }
    if (text.size() >= PATH_MAX) {
        throw DocumentFault(place, "too long for a path");
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
    const auto location = parameter == nullptr ? std::nullopt : parameter->value.text();
    const auto file = location ? FlashDrive::find(std::string(*location)) : std::nullopt;
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
}

std::unique_ptr<TreeItem> TargetFile::makeTree()
{
    auto tree = unused ? std::move(unused) : buildTree(treeSource(), Place(Place(), "tree"));
    if (elements) {
        addChanges(*tree, treeSource());
    }
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
    text = readText(file);
    document = JsonDocument::parse(text);
} catch (const FileFault& fault) {
    throw DocumentFault(fault.what());
}

void TargetFile::readMembers()
{
    const Place top;
    const Json whole = document.root();
    requireMembers(whole, {"clock", "bytesPerSecond", "flashDrive", "tree", "script"}, top);
    if (const auto clock = whole.find("clock")) {
        clockOfTarget = readClock(*clock, Place(top, "clock"));
    }
    if (const auto bytes = whole.find("bytesPerSecond")) {
        rate = getNumber(*bytes, Place(top, "bytesPerSecond"), 1, std::numeric_limits<std::uint64_t>::max());
    }
    if (const auto folder = whole.find("flashDrive")) {
        flash = path.parent_path() / readFolder(*folder, Place(top, "flashDrive"));
    }
    const auto script = whole.find("script");
    calls = script ? std::make_shared<Script>(*script, Place(top, "script")) : std::make_shared<Script>();
    unused = buildTree(getMember(whole, "tree", top), Place(top, "tree"));
}

}  // namespace TrellanSimulation
