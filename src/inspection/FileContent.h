// What is told of an update file by looking at it, and by reading it once.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "archive/FileHeader.h"
#include "base/FileIdentity.h"

namespace ZoNUpdateInspection {

enum class FileProblem {
    none,
    missing,     // absent, or a link to nothing
    unreadable,  // no regular file, or one that cannot be read
    empty
};

struct FileLook {
    FileProblem problem = FileProblem::none;
    ZoNUpdateBase::FileIdentity identity = {};  // that of no file where there is none
    std::uint64_t size = 0;                     // in bytes
};

// Looks at the file at `path`, links followed, without opening it.
FileLook lookAt(const std::string& path);

struct FileContent {
    ZoNUpdateArchive::FileHeader header;  // as it is asked for
    std::optional<std::uint32_t> crc32;   // of all bytes; as it is asked for
};

// What is to be found out.
struct Wanted {
    bool header;
    // Whether the CRC-32 is; told what the header says, if that is wanted. Without it, the file is not read further.
    std::function<bool(const ZoNUpdateArchive::FileHeader& header)> crc32;
};

// Is given the number of bytes that were read since it was called last.
using OnRead = std::function<void(std::uint64_t bytes)>;

// Reads the file at `path` once, and no more of it than is needed, nor than it is long: what the system makes up as it
// is read, as in /proc, is taken for empty. Nothing when it cannot be opened or read.
std::optional<FileContent> readContent(const std::string& path, const Wanted& wanted, const OnRead& onRead);

// True when a file's header states this range of compatibility ids. One from 0 to 0 counts as none.
bool statesRange(std::uint32_t min, std::uint32_t max);

}  // namespace ZoNUpdateInspection
