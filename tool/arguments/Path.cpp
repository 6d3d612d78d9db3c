#include "tool/arguments/Path.h"

#include <filesystem>
#include <system_error>

#include "tool/arguments/Arguments.h"

namespace TrellanTool {

std::string absolutePath(const std::string& what, const std::string& path)
{
    if (path.empty()) {
        throw UsageError(what + ": the path is empty");
    }
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    if (error) {
        throw std::runtime_error("cannot tell which file the relative path '" + path +
                                 "' means: there is no working folder (" + error.message() + ")");
    }
    return absolute.string();
}

}  // namespace TrellanTool
