// Collects the paths that elements and entries name, and compares files with what is found there.
#include "operation/DriveFiles.h"

#include "assignment/ZoCUpdateAssignment.h"
#include "base/PlatformText.h"
#include "operation/PathChecks.h"

using ZoNJson::json;
using ZoNUpdateBase::allText;

namespace {

std::string onDrive(const std::string& path)
{
    return std::string(driveRoot) + "/" + path;
}

// Calls `take` for each path that the entry states, for whatever board.
template <class Take>
void forEachTargetPath(const json& entry, Take take)
{
    const auto takeFrom = [&](const json& object) {
        if (object.contains("targetPath")) {
            take(std::string(object["targetPath"]));
        }
    };
    takeFrom(entry);
    if (entry.contains("boards")) {
        for (const json& board : entry["boards"]) {
            takeFrom(board);
        }
    }
}

}  // namespace

bool DriveFiles::isNeeded(const std::string& path)
{
    const auto file = identityOf(onDrive(path));
    if (!file) {
        return false;
    }
    findNamed();
    return written.contains(*file) || named.contains(*file) || namedPaths.contains(normalisedPath(path));
}

bool DriveFiles::isWrittenOtherwise(const std::string& path) const
{
    const auto file = identityOf(onDrive(path));
    const auto found = file ? written.find(*file) : written.end();
    return found != written.end() && found->second != path;
}

void DriveFiles::noteWritten(const std::string& path)
{
    if (const auto file = identityOf(onDrive(path))) {
        written[*file] = path;
    }
}

void DriveFiles::forget(const FileIdentity& file)
{
    written.erase(file);
    named.erase(file);
}

void DriveFiles::findNamed()
{
    if (namedAreKnown) {
        return;
    }
    namedAreKnown = true;
    const ZoCUpdateInventory& inventory = assignment.getInventory();
    for (const auto& element : inventory.getUpdateElementList()) {
        if (element.isFileSystemElement) {
            addNamed(allText(element.location));
        }
    }
    for (const ZoCString& location : inventory.getLeftOutLocations()) {
        addNamed(allText(location));
    }
    for (const auto& file : assignment.getArchive().getUpdateFileList()) {
        forEachTargetPath(file.jsonEntry, [&](const std::string& path) { addNamed(path); });
    }
}

void DriveFiles::addNamed(const std::string& path)
{
    const std::string normalised = normalisedPath(path);
    if (normalised.empty() || !namedPaths.insert(normalised).second) {
        return;
    }
    for (const Links links : {Links::notFollowed, Links::followed}) {
        if (const auto file = identityOf(onDrive(normalised), links)) {
            named.insert(*file);
        }
    }
}
