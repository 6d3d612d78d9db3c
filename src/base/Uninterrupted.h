// Calls of the system that the host's signals interrupt: where a handler does not ask for it, the system leaves it to
// the caller to go on.
#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdio>

namespace ZoNUpdateBase {

// Makes `call`, which returns a negative number when it fails, until no signal interrupts it; what it returns then.
template <class Call>
int uninterrupted(Call call)
{
    int result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

// As std::fread() of single bytes, whatever signals come.
inline std::size_t readBytes(std::FILE* file, void* to, std::size_t size)
{
    std::size_t count = std::fread(to, 1, size, file);
    while (count < size && std::ferror(file) != 0 && errno == EINTR) {
        std::clearerr(file);
        count += std::fread(static_cast<char*>(to) + count, 1, size - count, file);
    }
    return count;
}

}  // namespace ZoNUpdateBase
