// A file is looked at by its status before it is opened, and its content read in one pass.
#include "inspection/FileContent.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <memory>

#include "base/BinaryFile.h"
#include "base/Crc32.h"
#include "base/Uninterrupted.h"

using namespace ZoNUpdateBase;
using ZoNUpdateArchive::notAvailable;

namespace ZoNUpdateInspection {
namespace {

constexpr std::size_t chunkSize = std::size_t{256} * 1024;

// The errors by which the system says that there is nothing at a path. A loop of links leads to nothing.
bool meansAbsent(int error)
{
    return error == ENOENT || error == ENOTDIR || error == ELOOP || error == ENAMETOOLONG;
}

FileProblem problemOf(const std::string& path, const struct stat64& found)
{
    if (!S_ISREG(found.st_mode) || !isReadable(path)) {
        return FileProblem::unreadable;
    }
    return found.st_size == 0 ? FileProblem::empty : FileProblem::none;
}

std::optional<std::uint64_t> lengthOf(std::FILE* file)
{
    struct stat64 found;
    return fstat64(fileno(file), &found) == 0 ? std::optional(static_cast<std::uint64_t>(found.st_size)) : std::nullopt;
}

}  // namespace

FileLook lookAt(const std::string& path)
{
    FileLook look;
    struct stat64 found;
    if (!canNameFile(path)) {
        look.problem = FileProblem::missing;
    } else if (stat64(path.c_str(), &found) != 0) {
        look.problem = meansAbsent(errno) ? FileProblem::missing : FileProblem::unreadable;
    } else {
        look.problem = problemOf(path, found);
        look.identity = {found.st_dev, found.st_ino};
        look.size = static_cast<std::uint64_t>(found.st_size);
    }
    return look;
}

std::optional<FileContent> readContent(const std::string& path, const Wanted& wanted, const OnRead& onRead)
{
    const BinaryFile file = openForReading(path);
    const std::optional<std::uint64_t> length = file ? lengthOf(file.get()) : std::nullopt;
    if (!length) {
        return std::nullopt;
    }
    // Not filled with zeros: for small files that would take longer than all else.
    const auto chunk = std::make_unique_for_overwrite<unsigned char[]>(chunkSize);
    std::uint64_t left = *length;
    const auto readChunk = [&]() -> std::size_t {
        const std::size_t count = readBytes(file.get(), chunk.get(), std::min<std::uint64_t>(left, chunkSize));
        left = count == 0 ? 0 : left - count;
        return count;
    };

    FileContent content;
    std::size_t count = readChunk();
    if (wanted.header && count != 0) {
        const auto* const begin = reinterpret_cast<const char*>(chunk.get());
        content.header =
            ZoNUpdateArchive::readHeader(path, std::string(begin, std::min(count, ZoNUpdateArchive::headerLength)));
    }
    if (!wanted.crc32(content.header)) {
        return content;
    }
    Crc32 crc32;
    for (; count != 0; count = readChunk()) {
        crc32.add(chunk.get(), count);
        onRead(count);
    }
    if (std::ferror(file.get()) != 0) {
        return std::nullopt;
    }
    content.crc32 = crc32.value();
    return content;
}

bool statesRange(std::uint32_t min, std::uint32_t max)
{
    return min != notAvailable && max != notAvailable && (min != 0 || max != 0);
}

}  // namespace ZoNUpdateInspection
