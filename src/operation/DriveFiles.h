// DriveFiles: the files on the flash drive that an update must not lose.
//
// They are those that it has written, and those that an element of the target or an entry of the archive names, whether
// they take part in the update or not; an archive may itself be on the drive. Files are known by what they are: it does
// not matter how a path is spelled, or which link it goes through. Paths are below the drive's root.
#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>

#include "base/FileIdentity.h"

class ZoCUpdateAssignment;

class DriveFiles {
public:
    // Keeps the reference. What elements and entries name is looked for when it is first asked for, once.
    explicit DriveFiles(const ZoCUpdateAssignment& assignment) : assignment(assignment) {}

    // True when there is a file at `path` that the update has written, or that an element or an entry names, or a link
    // as below.
    bool isNeeded(const std::string& path);

    // True when there is a symbolic link at `path` on the way to a file that an element or an entry names.
    bool isNeededLink(const std::string& path);

    // True when the update has written the file at `path`, by another spelling of it.
    bool isWrittenOtherwise(const std::string& path) const;

    // True when at `path` there is an update file of the archive, or the file to which one links; false for that which
    // is copied, whose path `copied` is a whole one: its content stays what it is.
    bool isOtherUpdateFile(const std::string& path, const std::string& copied);

    // The update has written the file at `path`.
    void noteWritten(const std::string& path);

    // The file is gone: another one may get its identity.
    void forget(const ZoNUpdateBase::FileIdentity& file);

private:
    using Place = std::pair<ZoNUpdateBase::FileIdentity, std::string>;  // a folder, and a name in it

    static std::set<Place> placesOf(const std::string& source);
    void findNamed();
    void addNamed(const std::string& path);
    void addWay(const std::string& path);
    bool isWay(const std::string& path) const;

    const ZoCUpdateAssignment& assignment;
    std::map<ZoNUpdateBase::FileIdentity, std::string> written;  // with the path by which it was written
    bool namedAreKnown = false;
    // By what they are, and by their normalised paths: a file that takes the place of a named one later is named.
    std::set<ZoNUpdateBase::FileIdentity> named;
    std::set<std::string> namedPaths;
    // Folders on the way to them that are there, by what they are; and by their paths, so that each is asked for once.
    std::set<ZoNUpdateBase::FileIdentity> ways;
    std::set<std::string> knownWays;
    std::set<Place> updateFiles;
};
