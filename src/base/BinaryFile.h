// Files opened for binary reading, closed on every path.
#pragma once

#include <cerrno>
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
    if (!canNameFile(path) || !hasEnd(path)) {
        return nullptr;
    }
    std::FILE* file = std::fopen(path.c_str(), "rb");
    while (file == nullptr && errno == EINTR) {  // a signal of the host's has come
        file = std::fopen(path.c_str(), "rb");
    }
    return BinaryFile(file);
}

}  // namespace ZoNUpdateBase
