// Walks over the components of a path, and over its characters.
#include "operation/PathChecks.h"

#include <algorithm>
#include <filesystem>

namespace {

bool isSymbolicLink(const std::string& path)
{
    std::error_code error;
    return std::filesystem::is_symlink(path, error);
}

// True when `path` leads out of its folder, or goes up again behind what `isLink` tells to be a symbolic link.
template <class Test>
bool goesAstray(const std::string& path, Test isLink)
{
    int depth = 0;
    bool passedLink = false;
    for (std::size_t begin = 0; begin < path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        const std::string component = path.substr(begin, end - begin);
        if (component == "..") {
            --depth;
            if (depth < 0 || passedLink) {
                return true;
            }
        } else if (!component.empty() && component != ".") {
            ++depth;
            passedLink = passedLink || isLink(path.substr(0, end));
        }
        begin = end + 1;
    }
    return false;
}

}  // namespace

bool namesFile(std::string_view path)
{
    const std::string_view last = path.substr(path.rfind('/') + 1);  // all of it where there is no "/"
    return !last.empty() && last != "." && last != "..";
}

bool leavesFolder(const std::string& path)
{
    return goesAstray(path, [](const std::string&) { return false; });
}

bool leavesFolder(const std::string& folder, const std::string& path)
{
    return goesAstray(path, [&](const std::string& part) { return isSymbolicLink(folder + "/" + part); });
}

bool isOnDrive(const std::string& location)
{
    return namesFile(location) && !leavesFolder(std::string(driveRoot), location);
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
