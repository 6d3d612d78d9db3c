// What a device finds in an update file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace TrellanSimulation {

struct UpdateContent {
    std::uint64_t size = 0;                 // of the file, in bytes
    std::optional<std::uint32_t> checksum;  // that the file carries, or a plain image's own
    std::optional<std::string> version;     // that the file carries, as text
};

// Reads the update file at `path`: a file with a binary header, an FPGA bitstream file, an inventory-tree file or, when
// it is none of these, a plain image. Nothing when it is no regular file or cannot be read to its end.
std::optional<UpdateContent> readUpdateContent(const std::filesystem::path& path);

// CRC-32 (zlib's) of the bytes of the regular file at `path`. Nothing when there is no such file or it cannot be read
// to its end.
std::optional<std::uint32_t> fileChecksum(const std::filesystem::path& path);

}  // namespace TrellanSimulation
