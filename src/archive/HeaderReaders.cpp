// The reading of update-file headers of all kinds, and of one kind each as the archive offers it.
#include <array>

#include "archive/FileHeader.h"
#include "archive/ZoCUpdateArchive.h"
#include "base/BinaryFile.h"
#include "base/Uninterrupted.h"

using namespace ZoNUpdateBase;

namespace ZoNUpdateArchive {

FileHeader readHeader(const std::string& path, const std::string& beginning)
{
    FileHeader header;
    // The kinds exclude one another. The tree is asked for last, since the platform reads the whole file for it.
    if (!readBinaryHeader(beginning, header) && !readBitstreamHeader(beginning, header)) {
        readInventoryHeader(path, header);
    }
    return header;
}

std::optional<std::string> readBeginning(const std::string& path)
{
    const BinaryFile file = openForReading(path);
    if (!file) {
        return std::nullopt;
    }
    // Read at once, a buffer would only be asked for and filled beyond what is wanted.
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    std::array<char, headerLength> bytes;
    return std::string(bytes.data(), readBytes(file.get(), bytes.data(), bytes.size()));
}

}  // namespace ZoNUpdateArchive

using namespace ZoNUpdateArchive;

namespace {

void handOut(const FileHeader& header, std::uint32_t& minHwCompatibilityId, std::uint32_t& maxHwCompatibilityId,
             std::uint32_t& minSwCompatibilityId, std::uint32_t& maxSwCompatibilityId, std::uint32_t& typeId,
             std::uint32_t& checksumCrc32, ZoCVersion& version)
{
    minHwCompatibilityId = header.minHwCompatibilityId;
    maxHwCompatibilityId = header.maxHwCompatibilityId;
    minSwCompatibilityId = header.minSwCompatibilityId;
    maxSwCompatibilityId = header.maxSwCompatibilityId;
    typeId = header.typeId;
    checksumCrc32 = header.checksumCrc32;
    if (header.version) {
        version = *header.version;
    } else {
        version.setByULong64(notAvailable);
    }
}

}  // namespace

int ZoCUpdateArchive::readUpdateFileHeader(const std::string& path, std::uint32_t& minHwCompatibilityId,
                                           std::uint32_t& maxHwCompatibilityId, std::uint32_t& minSwCompatibilityId,
                                           std::uint32_t& maxSwCompatibilityId, std::uint32_t& typeId,
                                           std::uint32_t& checksumCrc32, ZoCVersion& version)
{
    const auto beginning = readBeginning(path);
    if (!beginning) {
        return 2;
    }
    FileHeader header;
    if (!readBinaryHeader(*beginning, header)) {
        return 1;
    }
    handOut(header, minHwCompatibilityId, maxHwCompatibilityId, minSwCompatibilityId, maxSwCompatibilityId, typeId,
            checksumCrc32, version);
    return 0;
}

int ZoCUpdateArchive::readUpdateFileInventory(const std::string& path, std::uint32_t& minHwCompatibilityId,
                                              std::uint32_t& maxHwCompatibilityId, std::uint32_t& minSwCompatibilityId,
                                              std::uint32_t& maxSwCompatibilityId, std::uint32_t& typeId,
                                              std::uint32_t& checksumCrc32, ZoCVersion& version)
{
    FileHeader header;
    if (!readInventoryHeader(path, header)) {
        return 1;
    }
    handOut(header, minHwCompatibilityId, maxHwCompatibilityId, minSwCompatibilityId, maxSwCompatibilityId, typeId,
            checksumCrc32, version);
    return 0;
}

int ZoCUpdateArchive::readPgiBitstreamFileHeader(const std::string& path, std::uint32_t& checksumCrc32)
{
    FileHeader header;
    const bool isBitstream = readBitstreamHeader(readBeginning(path).value_or(""), header);
    checksumCrc32 = header.checksumCrc32;
    return isBitstream ? 0 : 1;
}
