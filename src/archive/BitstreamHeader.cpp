// The header of an FPGA bitstream file. Numbers are big-endian.
//
//   offset  0  8 bytes  signature "ZoFPGABS"
//           8  4        header length in bytes
//          12  4        header format version: 1
//          88  4        CRC-32; only when the header length is 92 or more
#include <array>
#include <cstring>

#include "archive/BigEndian.h"
#include "archive/FileHeader.h"

namespace ZoNUpdateArchive {
namespace {

constexpr std::size_t headerSize = 92;
constexpr char signature[] = {'Z', 'o', 'F', 'P', 'G', 'A', 'B', 'S'};
constexpr std::uint32_t supportedHeaderFormat = 1;

constexpr std::size_t lengthAt = 8;
constexpr std::size_t formatAt = 12;
constexpr std::size_t crcAt = 88;

}  // namespace

bool readBitstreamHeader(const std::string& beginning, FileHeader& header)
{
    std::array<unsigned char, headerSize> bytes;
    if (beginning.size() < bytes.size()) {
        return false;
    }
    std::memcpy(bytes.data(), beginning.data(), bytes.size());
    if (std::memcmp(bytes.data(), signature, sizeof signature) != 0 ||
        readBigEndian32(bytes.data() + formatAt) != supportedHeaderFormat) {
        return false;
    }
    header.kind = FileKind::bitstream;
    // An older, shorter header is a bitstream's all the same; it just states no checksum.
    if (readBigEndian32(bytes.data() + lengthAt) >= headerSize) {
        header.checksumCrc32 = readBigEndian32(bytes.data() + crcAt);
    }
    return true;
}

}  // namespace ZoNUpdateArchive
