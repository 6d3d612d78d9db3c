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
#include <array>
#include <cstring>

#include "archive/BigEndian.h"
#include "archive/ZoCUpdateArchive.h"
#include "base/BinaryFile.h"

using namespace ZoNUpdateBase;

namespace {

constexpr std::size_t headerLength = 1000;
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

int ZoCUpdateArchive::readUpdateFileHeader(const std::string& path, std::uint32_t& minHwCompatibilityId,
                                           std::uint32_t& maxHwCompatibilityId, std::uint32_t& minSwCompatibilityId,
                                           std::uint32_t& maxSwCompatibilityId, std::uint32_t& typeId,
                                           std::uint32_t& checksumCrc32, ZoCVersion& version)
{
    const BinaryFile file = openForReading(path);
    if (!file) {
        return 2;
    }
    // A shorter file leaves zeros behind its end, which are not the magic.
    std::array<unsigned char, headerLength> header{};
    if (std::fread(header.data(), 1, header.size(), file.get()) == 0 ||
        std::memcmp(header.data() + magicAt, magic.data(), magic.size()) != 0) {
        return 1;
    }
    minHwCompatibilityId = readBigEndian32(header.data() + minHwAt);
    maxHwCompatibilityId = readBigEndian32(header.data() + maxHwAt);
    minSwCompatibilityId = readBigEndian32(header.data() + minSwAt);
    maxSwCompatibilityId = readBigEndian32(header.data() + maxSwAt);
    typeId = readBigEndian32(header.data() + typeIdAt);
    checksumCrc32 = readBigEndian32(header.data() + checksumAt);
    version = readVersion(header.data() + versionAt);
    return 0;
}
