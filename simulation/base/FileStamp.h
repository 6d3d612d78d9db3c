// Noticing that a file has changed, without reading it.
#pragma once

#include <sys/stat.h>

#include <ctime>
#include <filesystem>

namespace TrellanSimulation {

class FileStamp {
public:
    FileStamp() = default;

    // Of the file with this status, which was asked for after the time of day `now`.
    FileStamp(const struct stat& status, std::time_t now);

    // Whether the file at `path` is for certain the stamped one and has not been changed since. A change may have the
    // time stamp of one that came shortly before it, so nothing is certain of a file that was stamped just after a
    // change.
    bool isThatOf(const std::filesystem::path& path) const;

    // Whether another file, or another content as its size or modification time tell, is at `path`. False when there is
    // nothing.
    bool differsFromThatOf(const std::filesystem::path& path) const;

private:
    struct stat stamped = {};
    bool certain = false;
};

}  // namespace TrellanSimulation
