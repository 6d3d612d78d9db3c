#include "base/Crc32.h"

#include <array>

namespace ZoNUpdateBase {
namespace {

constexpr std::uint32_t polynomial = 0xEDB88320;  // its bits in reverse
constexpr std::size_t slices = 8;                 // bytes that are taken in at once

using Table = std::array<std::uint32_t, 256>;

// tables[n][byte]: what is left of `byte` with n zero bytes behind it.
constexpr std::array<Table, slices> makeTables()
{
    std::array<Table, slices> tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t remainder = byte;
        for (int bit = 0; bit < 8; ++bit) {
            remainder = remainder >> 1 ^ (remainder % 2 != 0 ? polynomial : 0);
        }
        tables[0][byte] = remainder;
    }
    for (std::size_t slice = 1; slice < slices; ++slice) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t before = tables[slice - 1][byte];
            tables[slice][byte] = before >> 8 ^ tables[0][before % 256];
        }
    }
    return tables;
}

constexpr std::array<Table, slices> tables = makeTables();

}  // namespace

void Crc32::add(const unsigned char* bytes, std::size_t count)
{
    std::uint32_t left = remainder;
    for (; count >= slices; count -= slices, bytes += slices) {
        left = tables[7][bytes[0] ^ left % 256] ^ tables[6][bytes[1] ^ (left >> 8) % 256] ^
               tables[5][bytes[2] ^ (left >> 16) % 256] ^ tables[4][bytes[3] ^ left >> 24] ^  //
               tables[3][bytes[4]] ^ tables[2][bytes[5]] ^ tables[1][bytes[6]] ^ tables[0][bytes[7]];
    }
    for (; count != 0; --count, ++bytes) {
        left = left >> 8 ^ tables[0][*bytes ^ left % 256];
    }
    remainder = left;
}

}  // namespace ZoNUpdateBase
