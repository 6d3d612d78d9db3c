// Files opened for binary reading, closed on every path.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "base/FileAccess.h"

namespace ZoNUpdateBase {

struct FileCloser {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

using BinaryFile = std::unique_ptr<std::FILE, FileCloser>;

// Null when the file cannot be opened, and for pipes and devices: reading one might never end.
inline BinaryFile openForReading(const std::string& path)
{
    if (!canNameFile(path)) {
        return nullptr;
    }
    std::error_code error;
    const auto type = std::filesystem::status(path, error).type();
    const bool hasEnd = type == std::filesystem::file_type::regular || type == std::filesystem::file_type::directory;
    return BinaryFile(hasEnd ? std::fopen(path.c_str(), "rb") : nullptr);
}

}  // namespace ZoNUpdateBase
