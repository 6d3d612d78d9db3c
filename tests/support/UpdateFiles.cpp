#include "support/UpdateFiles.h"

using nlohmann::ordered_json;

namespace UpdateFiles {

void putBigEndian(std::string& bytes, std::size_t offset, std::size_t width, std::uint64_t value)
{
    for (std::size_t i = 0; i < width; ++i) {
        bytes.at(offset + i) = static_cast<char>(value >> (8 * (width - 1 - i)) & 0xFF);
    }
}

std::string binaryFile(const BinaryHeader& header, std::size_t size)
{
    std::string bytes(1000, '\0');
    bytes.replace(40, 8, "\x12\x55\xAA\x34\xAA\x18\x47\x55");
    putBigEndian(bytes, 60, 4, header.checksum);
    putBigEndian(bytes, 76, 1, header.version[0]);
    putBigEndian(bytes, 77, 1, header.version[1]);
    putBigEndian(bytes, 78, 1, header.version[2]);
    putBigEndian(bytes, 79, 1, header.releaseCode);
    putBigEndian(bytes, 80, 2, header.versionComponent5);
    putBigEndian(bytes, 82, 2, header.versionComponent6);
    putBigEndian(bytes, 344, 4, header.minHwCompatibilityId);
    putBigEndian(bytes, 348, 4, header.maxHwCompatibilityId);
    putBigEndian(bytes, 352, 4, header.minSwCompatibilityId);
    putBigEndian(bytes, 356, 4, header.maxSwCompatibilityId);
    putBigEndian(bytes, 360, 4, header.typeId);
    bytes.resize(size, '\0');
    return bytes;
}

std::string inventoryFile(const ordered_json& parameters, std::optional<std::uint32_t> checksum)
{
    ordered_json root = {{"id", "ROOT"}};
    root["parameters"] = parameters;
    ordered_json document;
    document["inventoryTree"] = root;
    if (checksum) {
        document["checksumCrc32"] = *checksum;
    }
    return document.dump();
}

std::string bitstreamFile(std::uint32_t checksum, std::uint32_t headerLength, std::uint32_t formatVersion)
{
    std::string bytes(92, '\0');
    bytes.replace(0, 8, "ZoFPGABS");
    putBigEndian(bytes, 8, 4, headerLength);
    putBigEndian(bytes, 12, 4, formatVersion);
    putBigEndian(bytes, 88, 4, checksum);
    return bytes;
}

}  // namespace UpdateFiles
