// Sixteen bytes are taken in at once, by tables of what a byte comes to with so many zero bytes behind it.
#include "base/Crc32.h"

#include <array>

namespace ZoNUpdateBase {
namespace {

constexpr std::uint32_t polynomial = 0xEDB88320;  // its bits in reverse
constexpr std::size_t slices = 16;                // bytes that are taken in at once

using Table = std::array<std::uint32_t, 256>;

// tables[n][byte]: what is left of `byte` with n zero bytes behind it.
constexpr std::array<Table, slices> makeTables()
{
    std::array<Table, slices> made{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t remainder = byte;
        for (int bit = 0; bit < 8; ++bit) {
            remainder = remainder >> 1 ^ (remainder % 2 != 0 ? polynomial : 0);
        }
        made[0][byte] = remainder;
    }
    for (std::size_t slice = 1; slice < slices; ++slice) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t before = made[slice - 1][byte];
            made[slice][byte] = before >> 8 ^ made[0][before % 256];
        }
    }
    return made;
}

constexpr std::array<Table, slices> tables = makeTables();

// Four bytes, the first one lowest.
std::uint32_t wordAt(const unsigned char* bytes)
{
    return bytes[0] | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16 | std::uint32_t{bytes[3]} << 24;
}

// What is left of the four bytes of `word` with `behind` zero bytes behind them.
template <std::size_t behind>
std::uint32_t taken(std::uint32_t word)
{
    return tables[behind + 3][word % 256] ^ tables[behind + 2][(word >> 8) % 256] ^
           tables[behind + 1][(word >> 16) % 256] ^ tables[behind][word >> 24];
}

}  // namespace

void Crc32::add(const unsigned char* bytes, std::size_t count)
{
    std::uint32_t left = remainder;
    for (; count >= slices; count -= slices, bytes += slices) {
        left = taken<12>(wordAt(bytes) ^ left) ^ taken<8>(wordAt(bytes + 4)) ^ taken<4>(wordAt(bytes + 8)) ^
               taken<0>(wordAt(bytes + 12));
    }
    for (; count != 0; --count, ++bytes) {
        left = left >> 8 ^ tables[0][*bytes ^ left % 256];
    }
    remainder = left;
}

}  // namespace ZoNUpdateBase
