// What the fuzz entries share.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

// What clang's fuzzer, or the replay of the corpus, calls with each input. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

inline std::string textOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

// Ends the process, which makes the input a find, unless what is promised holds.
inline void require(bool holds, std::string_view promise)
{
    if (!holds) {
        std::fprintf(stderr, "broken: %.*s\n", static_cast<int>(promise.size()), promise.data());
        std::abort();
    }
}

// Takes what stands before the next `separator` off `text`; all of it where there is none.
inline std::string_view takePart(std::string_view& text, char separator)
{
    const std::size_t end = text.find(separator);
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return part;
}

// A file in memory, for the time of a scope.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* data, std::size_t size) : file(::memfd_create("input", MFD_CLOEXEC))
    {
        require(file >= 0 && ::write(file, data, size) == static_cast<ssize_t>(size), "a file in memory");
    }
    ~MemoryFile() { ::close(file); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(file); }

private:
    const int file;
};
