// The text gets the file's size at once: growing with what is read, it would need twice the memory in between.
#include "tool/TextFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <exception>
#include <system_error>

#include "tool/Descriptor.h"

namespace TrellanTool {

namespace {

// How many bytes were read: fewer than there is room for at the end alone. Negative where that fails.
ssize_t readInto(int file, char* room, std::size_t length)
{
    std::size_t done = 0;
    while (done < length) {
        const ssize_t count = ::read(file, room + done, length - done);
        if (count == 0) {
            break;
        }
        if (count > 0) {
            done += static_cast<std::size_t>(count);
        } else if (errno != EINTR) {
            return -1;
        }
    }
    return static_cast<ssize_t>(done);
}

// A file that has grown, or that tells no size, is read on piece by piece.
std::optional<std::string> readAll(int file)
{
    constexpr std::size_t piece = 1 << 16;
    struct stat status = {};
    if (::fstat(file, &status) != 0) {
        return std::nullopt;
    }
    std::string text;
    std::size_t length = 0;
    for (std::size_t more = static_cast<std::size_t>(std::max<off_t>(status.st_size, 0)) + 1;; more = piece) {
        text.resize(length + more);
        const ssize_t count = readInto(file, text.data() + length, more);
        if (count < 0) {
            return std::nullopt;
        }
        length += static_cast<std::size_t>(count);
        if (static_cast<std::size_t>(count) < more) {
            text.resize(length);
            return text;
        }
    }
}

}  // namespace

NoMemoryForFile::NoMemoryForFile(const std::string& path)
    : std::runtime_error(path + " cannot be read: " + std::generic_category().message(ENOMEM))
{
}

std::optional<std::string> readWholeFile(const std::string& path)
{
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen()) {
        return std::nullopt;
    }
    try {
        return readAll(file.get());
    } catch (const std::exception&) {  // more than there is memory for, or could be
        throw NoMemoryForFile(path);
    }
}

}  // namespace TrellanTool
