#include "simulation/libZoJsonLib/DocumentText.h"

#include <sys/stat.h>

#include <cerrno>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t chunkSize = 65536;
constexpr std::size_t room = 64;  // behind the text, for who reads it

// As std::fread() of single bytes, whatever signals come.
std::size_t readBytes(std::FILE* stream, char* to, std::size_t size)
{
    std::size_t count = std::fread(to, 1, size, stream);
    while (count < size && std::ferror(stream) != 0 && errno == EINTR) {
        std::clearerr(stream);
        count += std::fread(to + count, 1, size - count, stream);
    }
    return count;
}

// What is left of a regular file; 0 where nobody knows.
std::size_t bytesLeft(std::FILE* stream)
{
    struct stat status = {};
    const int file = ::fileno(stream);
    if (file < 0 || ::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        return 0;
    }
    const auto at = ::ftello(stream);
    return at >= 0 && at < status.st_size ? static_cast<std::size_t>(status.st_size - at) : 0;
}

}  // namespace

std::optional<std::string> readDocumentText(std::FILE* stream)
{
    std::string text;
    text.reserve(bytesLeft(stream) + room);
    std::vector<char> chunk(chunkSize);
    while (const std::size_t length = readBytes(stream, chunk.data(), chunk.size())) {
        const std::string_view piece(chunk.data(), length);
        if (piece.find('\0') != std::string_view::npos) {
            return std::nullopt;
        }
        text += piece;
    }
    if (std::ferror(stream) != 0) {
        return std::nullopt;
    }
    return text;
}
