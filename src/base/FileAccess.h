// What the file system says of a path. A path with a NUL in it names no file: the system would look at its beginning
// only.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <string>

namespace ZoNUpdateBase {

// False for an empty path and for one with a NUL in it: the system would look at its beginning only.
inline bool canNameFile(const std::string& path)
{
    return !path.empty() && path.find('\0') == std::string::npos;
}

inline bool isAccessible(const std::string& path, int mode)
{
    return canNameFile(path) && access(path.c_str(), mode) == 0;
}

inline bool fileExists(const std::string& path)
{
    return isAccessible(path, F_OK);
}

inline bool isReadable(const std::string& path)
{
    return isAccessible(path, R_OK);
}

// True for a file or a folder, links followed. Reading a pipe or a device might never end.
inline bool hasEnd(const std::string& path)
{
    std::error_code error;
    const auto type = std::filesystem::status(path, error).type();
    return type == std::filesystem::file_type::regular || type == std::filesystem::file_type::directory;
}

}  // namespace ZoNUpdateBase
