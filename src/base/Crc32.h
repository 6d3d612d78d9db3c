// The CRC-32 of bytes that come piece by piece: the polynomial 0x04C11DB7, reflected, as zip files and Ethernet have
// it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ZoNUpdateBase {

class Crc32 {
public:
    // Takes the next `count` bytes in.
    void add(const unsigned char* bytes, std::size_t count);

    // Of all bytes up to now; 0 for none.
    std::uint32_t value() const { return ~remainder; }

private:
    std::uint32_t remainder = 0xFFFFFFFF;
};

}  // namespace ZoNUpdateBase
