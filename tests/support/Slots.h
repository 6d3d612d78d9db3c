// Where the virtual operations of an interface stand, through which hosts call them that are not compiled again.
#pragma once

#include <cstddef>
#include <cstring>

// The slot (from 1) that a pointer to a virtual member function encodes.
template <class Member>
std::ptrdiff_t slotOf(Member member)
{
    struct {
        std::ptrdiff_t function;
        std::ptrdiff_t adjustment;
    } encoded{};
    static_assert(sizeof member == sizeof encoded);
    std::memcpy(&encoded, &member, sizeof encoded);
#if defined(__aarch64__) || defined(__arm__)
    const std::ptrdiff_t offset = encoded.function;
#else
    const std::ptrdiff_t offset = encoded.function - 1;
#endif
    return offset / static_cast<std::ptrdiff_t>(sizeof(void*)) + 1;
}
