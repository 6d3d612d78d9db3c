// Walks over the components of a path, and over its characters.
#include "operation/PathChecks.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

enum class Kind { missing, link, other };

Kind kindOf(const std::string& path)
{
    struct stat64 found;
    if (fstatat64(AT_FDCWD, path.c_str(), &found, AT_SYMLINK_NOFOLLOW) != 0) {
        return Kind::missing;
    }
    return S_ISLNK(found.st_mode) ? Kind::link : Kind::other;
}

// True when `path` leads out of its folder, or goes up again behind what `kindAt` tells to be a symbolic link. It is
// asked for paths without ".." and the like: they lead to what is there also where `path` goes up from a folder that is
// not. It is not asked for what is below something missing, where nothing is: a path may be of any length.
template <class Kinds>
bool goesAstray(const std::string& path, Kinds kindAt)
{
    std::string passed;
    std::size_t missing = std::string::npos;  // how much of `passed` leads to what is not there
    bool passedLink = false;
    for (std::size_t begin = 0; begin < path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        const std::string component = path.substr(begin, end - begin);
        if (component == "..") {
            if (passed.empty() || passedLink) {
                return true;
            }
            passed.resize(passed.rfind('/'));
            missing = passed.size() < missing ? std::string::npos : missing;
        } else if (!component.empty() && component != ".") {
            passed += "/" + component;
            if (!passedLink && missing == std::string::npos) {
                const Kind kind = kindAt(passed);
                passedLink = kind == Kind::link;
                missing = kind == Kind::missing ? passed.size() : missing;
            }
        }
        begin = end + 1;
    }
    return false;
}

bool isBelow(const fs::path& path, const fs::path& folder)
{
    return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first == folder.end();
}

}  // namespace

bool isSymbolicLink(const std::string& path)
{
    return kindOf(path) == Kind::link;
}

bool namesFile(std::string_view path)
{
    const std::string_view last = path.substr(path.rfind('/') + 1);  // all of it where there is no "/"
    return !last.empty() && last != "." && last != "..";
}

bool leavesFolder(const std::string& path)
{
    return goesAstray(path, [](const std::string&) { return Kind::other; });
}

bool leavesFolder(const std::string& folder, const std::string& path)
{
    return goesAstray(path, [&](const std::string& part) { return kindOf(folder + part); });
}

bool isOnDrive(const std::string& location)
{
    return namesFile(location) && !leavesFolder(std::string(driveRoot), location);
}

std::string normalisedPath(const std::string& path)
{
    return namesFile(path) && !leavesFolder(path) ? fs::path("/" + path).lexically_normal().string() : std::string();
}

bool followsLinkOutOfDrive(const std::string& location)
{
    const std::string root(driveRoot);
    const std::string path = root + normalisedPath(location);
    std::error_code error;
    const fs::path drive = fs::canonical(root, error);
    for (std::size_t end = path.find('/', root.size() + 1); end != std::string::npos; end = path.find('/', end + 1)) {
        const std::string folder = path.substr(0, end);
        const Kind kind = kindOf(folder);
        if (kind == Kind::missing) {
            return false;  // so is all that is below
        }
        if (kind == Kind::other) {
            continue;
        }
        const fs::path place = fs::canonical(folder, error);
        if (!error && !isBelow(place, drive)) {
            return true;
        }
    }
    return false;
}

bool isLiteralForShell(std::string_view path)
{
    constexpr std::string_view special = "!\"#$&'()*;<>?[\\]^`{|}~";
    return std::none_of(path.begin(), path.end(), [&](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte <= ' ' || byte == 0x7F || special.find(character) != std::string_view::npos;
    });
}

bool isLiteralPath(std::string_view path)
{
    return isLiteralForShell(path) && !path.starts_with('-');
}
