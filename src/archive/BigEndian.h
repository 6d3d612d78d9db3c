// Big-endian numbers in a file header.
#pragma once

#include <cstddef>
#include <cstdint>

inline std::uint16_t readBigEndian16(const unsigned char* bytes)
{
    return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}

inline std::uint32_t readBigEndian32(const unsigned char* bytes)
{
    return static_cast<std::uint32_t>(readBigEndian16(bytes)) << 16 | readBigEndian16(bytes + 2);
}
