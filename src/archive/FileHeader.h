// What an update file says of itself in its header.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "archive/ZoSUpdateFile.h"

namespace ZoNUpdateArchive {

// The kinds of update files, told by their content.
enum class FileKind : std::uint32_t { plain, binary, inventoryTree, bitstream };

// A value that the file does not give is notAvailable.
struct FileHeader {
    FileKind kind = FileKind::plain;
    std::uint32_t minHwCompatibilityId = notAvailable;
    std::uint32_t maxHwCompatibilityId = notAvailable;
    std::uint32_t minSwCompatibilityId = notAvailable;
    std::uint32_t maxSwCompatibilityId = notAvailable;
    std::uint32_t typeId = notAvailable;
    std::uint32_t checksumCrc32 = notAvailable;
    std::optional<ZoCVersion> version;
};

// Whether the header may tell the file's checksum. Where it cannot, the file's entry has to state one.
inline bool mayTellChecksum(const FileHeader& header)
{
    return header.kind != FileKind::plain;
}

// What the reader prints where neither does.
std::string untoldChecksumMessage(const ZoSUpdateFile& file);

// How much of a file's beginning is looked at, in bytes.
constexpr std::size_t headerLength = 1000;

// Read a header of one kind into `header`; false, and `header` as it was, when the file is not of this kind.
// `beginning` are the file's first headerLength bytes, or all of a shorter one.
bool readBinaryHeader(const std::string& beginning, FileHeader& header);
bool readBitstreamHeader(const std::string& beginning, FileHeader& header);
bool readInventoryHeader(const std::string& path, FileHeader& header);

// The header of the file at `path`, of whatever kind.
FileHeader readHeader(const std::string& path, const std::string& beginning);

// The beginning of the file at `path`; nothing when it cannot be opened. Empty when it cannot be read.
std::optional<std::string> readBeginning(const std::string& path);

}  // namespace ZoNUpdateArchive
