// The header of an FPGA bitstream file. Numbers are big-endian.
//
//   offset  0  8 bytes  magic "ZoFPGABS"
//           8  4        header length in bytes
//          12  4        header format version: 1
//          88  4        CRC-32; only when the header length is 92 or more
#include <array>
#include <cstring>

#include "archive/BigEndian.h"
#include "archive/ZoCUpdateArchive.h"
#include "base/BinaryFile.h"

using namespace ZoNUpdateBase;

namespace {

constexpr std::size_t headerSize = 92;
constexpr char magic[] = {'Z', 'o', 'F', 'P', 'G', 'A', 'B', 'S'};
constexpr std::uint32_t supportedFormat = 1;

constexpr std::size_t lengthAt = 8;
constexpr std::size_t formatAt = 12;
constexpr std::size_t checksumAt = 88;

}  // namespace

int ZoCUpdateArchive::readPgiBitstreamFileHeader(const std::string& path, std::uint32_t& checksumCrc32)
{
    checksumCrc32 = ZoNUpdateArchive::notAvailable;
    const BinaryFile file = openForReading(path);
    std::array<unsigned char, headerSize> header;
    if (!file || std::fread(header.data(), 1, header.size(), file.get()) != header.size()) {
        return 1;
    }
    if (std::memcmp(header.data(), magic, sizeof magic) != 0 ||
        readBigEndian32(header.data() + formatAt) != supportedFormat) {
        return 1;
    }
    // An older, shorter header is a bitstream's all the same; it just states no checksum.
    if (readBigEndian32(header.data() + lengthAt) >= headerSize) {
        checksumCrc32 = readBigEndian32(header.data() + checksumAt);
    }
    return 0;
}
