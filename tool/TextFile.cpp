#include "tool/TextFile.h"

#include <cerrno>
#include <cstdio>
#include <memory>
#include <vector>

namespace TrellanTool {

std::optional<std::string> readWholeFile(const std::string& path)
{
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    const std::unique_ptr<std::FILE, Close> file(std::fopen(path.c_str(), "rb"));
    if (!file) {
        return std::nullopt;
    }
    std::string text;
    std::vector<char> piece(1 << 16);
    while (const std::size_t length = std::fread(piece.data(), 1, piece.size(), file.get())) {
        text.append(piece.data(), length);
    }
    if (std::ferror(file.get()) != 0) {
        const int error = errno;
        errno = error;
        return std::nullopt;
    }
    return text;
}

}  // namespace TrellanTool
