// Files opened for binary reading, closed on every path.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

struct FileCloser {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

using BinaryFile = std::unique_ptr<std::FILE, FileCloser>;

// Null when the file cannot be opened.
inline BinaryFile openForReading(const std::string& path)
{
    const bool namesFile = !path.empty() && path.find('\0') == std::string::npos;
    return BinaryFile(namesFile ? std::fopen(path.c_str(), "rb") : nullptr);
}
