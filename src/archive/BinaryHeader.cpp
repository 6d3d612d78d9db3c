// The header of a binary update file. Numbers are big-endian.
//
//   offset  40  8 bytes  magic
//           60  4        CRC-32 of the payload
//           76  1        version: Mar
//           77  1                 Mir
//           78  1                 Mai
//           79  1                 release code (10: alpha, 11: beta, otherwise released)
//           80  2                 Spn
//           82  2                 Plv
//          344  4        minimum hardware compatibility id
//          348  4        maximum hardware compatibility id
//          352  4        minimum software compatibility id
//          356  4        maximum software compatibility id
//          360  4        type id
#include <algorithm>
#include <array>
#include <cstring>

#include "archive/BigEndian.h"
#include "archive/FileHeader.h"

namespace ZoNUpdateArchive {
namespace {

constexpr std::array<unsigned char, 8> magic{0x12, 0x55, 0xAA, 0x34, 0xAA, 0x18, 0x47, 0x55};

constexpr std::size_t magicAt = 40;
constexpr std::size_t checksumAt = 60;
constexpr std::size_t versionAt = 76;
constexpr std::size_t minHwAt = 344;
constexpr std::size_t maxHwAt = 348;
constexpr std::size_t minSwAt = 352;
constexpr std::size_t maxSwAt = 356;
constexpr std::size_t typeIdAt = 360;

std::uint8_t stageOf(unsigned char releaseCode)
{
    switch (releaseCode) {
        case 10:
            return 1;
        case 11:
            return 2;
        default:
            return 0;
    }
}

ZoCVersion readVersion(const unsigned char* bytes)
{
    return ZoCVersion(bytes[0], bytes[1], bytes[2], stageOf(bytes[3]), readBigEndian16(bytes + 4),
                      readBigEndian16(bytes + 6));
}

}  // namespace

bool readBinaryHeader(const std::string& beginning, FileHeader& header)
{
    if (beginning.size() < magicAt + magic.size() ||
        std::memcmp(beginning.data() + magicAt, magic.data(), magic.size()) != 0) {
        return false;
    }
    std::array<unsigned char, headerLength> bytes{};  // behind the end of a shorter file there are zeros
    std::memcpy(bytes.data(), beginning.data(), std::min(beginning.size(), bytes.size()));
    header.kind = FileKind::binary;
    header.minHwCompatibilityId = readBigEndian32(bytes.data() + minHwAt);
    header.maxHwCompatibilityId = readBigEndian32(bytes.data() + maxHwAt);
    header.minSwCompatibilityId = readBigEndian32(bytes.data() + minSwAt);
    header.maxSwCompatibilityId = readBigEndian32(bytes.data() + maxSwAt);
    header.typeId = readBigEndian32(bytes.data() + typeIdAt);
    header.checksumCrc32 = readBigEndian32(bytes.data() + checksumAt);
    header.version = readVersion(bytes.data() + versionAt);
    return true;
}

}  // namespace ZoNUpdateArchive
