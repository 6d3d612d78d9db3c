// WrittenFiles: the files that an update has written to the flash drive, known by what they are and not by their paths.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <compare>
#include <optional>
#include <set>
#include <string>

// What tells a file from all others that there are at the same time.
struct FileIdentity {
    dev_t device;
    ino64_t number;

    auto operator<=>(const FileIdentity&) const = default;
};

enum class Links { followed, notFollowed };

// Nothing when there is no file at `path`. `links` is about the path's last component.
inline std::optional<FileIdentity> identityOf(const std::string& path, Links links = Links::notFollowed)
{
    struct stat64 found;
    const int flags = links == Links::followed ? 0 : AT_SYMLINK_NOFOLLOW;
    if (fstatat64(AT_FDCWD, path.c_str(), &found, flags) != 0) {
        return std::nullopt;
    }
    return FileIdentity{found.st_dev, found.st_ino};
}

class WrittenFiles {
public:
    bool contains(const FileIdentity& file) const { return files.contains(file); }
    void add(const FileIdentity& file) { files.insert(file); }
    void remove(const FileIdentity& file) { files.erase(file); }

private:
    std::set<FileIdentity> files;
};
