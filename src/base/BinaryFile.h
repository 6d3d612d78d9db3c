// Files opened for binary reading, closed on every path.
#pragma once

#include <cstdio>
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
    return BinaryFile(canNameFile(path) && hasEnd(path) ? std::fopen(path.c_str(), "rb") : nullptr);
}

}  // namespace ZoNUpdateBase
