// Collects the paths that elements and entries name, and compares files with what is found there.
#include "operation/DriveFiles.h"

#include <filesystem>

#include "assignment/ZoCUpdateAssignment.h"
#include "base/PlatformText.h"
#include "operation/PathChecks.h"

using namespace ZoNUpdateBase;
using ZoNJson::json;

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

// Of the entry itself where it is a link. Nothing where there is no such folder.
std::optional<std::pair<FileIdentity, std::string>> placeOf(const std::string& path)
{
    const std::size_t name = path.rfind('/') + 1;
    const auto folder = identityOf(path.substr(0, name), Links::followed);
    return folder ? std::make_optional(std::pair(*folder, path.substr(name))) : std::nullopt;
}

}  // namespace

bool DriveFiles::isNeeded(const std::string& path)
{
    const auto file = identityOf(onDrive(path));
    if (!file) {
        return false;
    }
    findNamed();
    return written.contains(*file) || named.contains(*file) || namedPaths.contains(normalisedPath(path)) ||
           isNeededLink(path);
}

bool DriveFiles::isNeededLink(const std::string& path)
{
    const auto file = identityOf(onDrive(path));
    if (!file || !isSymbolicLink(onDrive(path))) {
        return false;
    }
    findNamed();
    return ways.contains(*file) || isWay(normalisedPath(path));
}

bool DriveFiles::isWrittenOtherwise(const std::string& path) const
{
    const auto file = identityOf(onDrive(path));
    const auto found = file ? written.find(*file) : written.end();
    if (found == written.end() || found->second == path) {
        return false;
    }
    return identityOf(onDrive(found->second)) == file;  // another process may have moved it, or removed it
}

bool DriveFiles::isOtherUpdateFile(const std::string& path, const std::string& copied)
{
    if (!identityOf(onDrive(path))) {
        return false;
    }
    findNamed();
    const auto place = placeOf(onDrive(path));
    return place && updateFiles.contains(*place) && !placesOf(copied).contains(*place);
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
    const ZoCUpdateArchive& archive = assignment.getArchive();
    for (const auto& file : archive.getUpdateFileList()) {
        forEachTargetPath(file.jsonEntry, [&](const std::string& path) { addNamed(path); });
        const std::string source = archive.pathOf(file);
        if (const auto found = identityOf(source, Links::followed)) {
            named.insert(*found);
            updateFiles.merge(placesOf(source));
        }
    }
}

// Those of the update file and, where it is a link, of the file that it leads to.
std::set<DriveFiles::Place> DriveFiles::placesOf(const std::string& source)
{
    std::set<Place> places;
    const auto add = [&](const std::string& path) {
        if (const auto place = placeOf(path)) {
            places.insert(*place);
        }
    };
    add(source);
    if (isSymbolicLink(source)) {
        std::error_code error;
        add(std::filesystem::canonical(source, error).string());
    }
    return places;
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
    addWay(normalised);
}

// The folders above it, down to the first that is not there: what an archive names may be of any length.
void DriveFiles::addWay(const std::string& path)
{
    for (std::size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1)) {
        std::string folder = path.substr(0, end);
        if (knownWays.contains(folder)) {
            continue;
        }
        const auto file = identityOf(onDrive(folder));
        if (!file) {
            return;
        }
        ways.insert(*file);
        knownWays.insert(std::move(folder));
    }
}

// Whether a path that is named leads through this one.
bool DriveFiles::isWay(const std::string& path) const
{
    const std::string folder = path + '/';
    const auto first = namedPaths.lower_bound(folder);
    return first != namedPaths.end() && first->starts_with(folder);
}
