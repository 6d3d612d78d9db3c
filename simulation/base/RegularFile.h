// Reading regular files: a pipe or a device in the place of one is refused, as it could be waited for without end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <stdexcept>

#include "simulation/base/FileDescriptor.h"
#include "simulation/base/FileStamp.h"

namespace TrellanSimulation {

// A file cannot be opened or read; what() is the reason alone.
class FileFault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class RegularFile {
public:
    // Opens the file at `path`. Throws FileFault when there is none, it is no regular file, or it cannot be opened; so
    // also for a path that holds a NUL character.
    explicit RegularFile(const std::filesystem::path& path);

    // In bytes, when it was opened.
    std::uint64_t size() const { return bytes; }

    // As it was opened.
    const FileStamp& stamp() const { return openedAs; }

    // Reads the next bytes, `length` at most, to `buffer`. Returns how many, 0 only at the end of the file. Throws
    // FileFault when they cannot be read.
    std::size_t read(char* buffer, std::size_t length);

    // Goes back to the start. Throws FileFault when that is not possible.
    void rewind();

private:
    FileDescriptor file;
    FileStamp openedAs;
    std::uint64_t bytes = 0;
};

}  // namespace TrellanSimulation
