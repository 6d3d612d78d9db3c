// FileIdentity: what tells a file from all others that there are at the same time, whatever path leads to it.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <compare>
#include <optional>
#include <string>

namespace ZoNUpdateBase {

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

}  // namespace ZoNUpdateBase
