// Builders for the content of update files, byte by byte as the files carry it.
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace UpdateFiles {

// Writes the low `width` bytes of `value` into `bytes` at `offset`, the highest byte first.
void putBigEndian(std::string& bytes, std::size_t offset, std::size_t width, std::uint64_t value);

// What a binary header states.
struct BinaryHeader {
    std::uint32_t checksum = 0;
    std::array<std::uint8_t, 3> version = {0, 0, 0};  // components 1 to 3
    std::uint8_t releaseCode = 0;
    std::uint16_t versionComponent5 = 0;
    std::uint16_t versionComponent6 = 0;
    std::uint32_t minHwCompatibilityId = 0;
    std::uint32_t maxHwCompatibilityId = 0;
    std::uint32_t minSwCompatibilityId = 0;
    std::uint32_t maxSwCompatibilityId = 0;
    std::uint32_t typeId = 0;
};

// An update file with a binary header, `size` bytes long: what lies beyond it is cut off, what is left is zero.
std::string binaryFile(const BinaryHeader& header, std::size_t size = 1000);

// An update file that holds an inventory tree whose root has `parameters` (keyed by address, as "FIRMWARE/TYPE_ID").
// Without `checksum` the file itself states none.
std::string inventoryFile(const nlohmann::ordered_json& parameters, std::optional<std::uint32_t> checksum = {});

// The 92 bytes of an FPGA bitstream file's header.
std::string bitstreamFile(std::uint32_t checksum, std::uint32_t headerLength = 92, std::uint32_t formatVersion = 1);

}  // namespace UpdateFiles
