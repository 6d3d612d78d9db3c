// Binary header, at the start of its file; numbers are big-endian.
//
//   offset | width | content
//       40 |     8 | magic 12 55 AA 34 AA 18 47 55
//       60 |     4 | CRC-32 of the payload
//       76 |     3 | version: Mar, Mir, Mai
//       79 |     1 | release code: 10 alpha, 11 beta, anything else a release
//       80 |     2 | version: Spn
//       82 |     2 | version: Plv
//
// Header of an FPGA bitstream file; numbers are big-endian.
//
//   offset | width | content
//        0 |     8 | magic "ZoFPGABS"
//        8 |     4 | length of the header
//       12 |     4 | version of its format: 1
//       88 |     4 | CRC-32, when the header is at least 92 bytes long
#include "simulation/target/UpdateContent.h"

#include <zlib.h>

#include <memory>
#include <string_view>

#include "libZoCompositeFactory/ZoCVersion.h"
#include "libZoInventoryTree/ZoNInventoryIDs.h"
#include "simulation/base/RegularFile.h"
#include "simulation/libZoInventoryTree/Document.h"
#include "simulation/libZoInventoryTree/InventoryFile.h"

namespace TrellanSimulation {

namespace {

using namespace std::string_view_literals;

constexpr auto binaryMagic = "\x12\x55\xAA\x34\xAA\x18\x47\x55"sv;
constexpr std::size_t binaryMagicOffset = 40;
constexpr std::size_t binaryChecksumOffset = 60;
constexpr std::size_t binaryVersionOffset = 76;
constexpr std::size_t binaryReleaseOffset = 79;
constexpr std::size_t binarySpnOffset = 80;
constexpr std::size_t binaryPlvOffset = 82;
constexpr std::size_t binaryHeaderSize = 1000;

constexpr auto bitstreamMagic = "ZoFPGABS"sv;
constexpr std::size_t bitstreamLengthOffset = 8;
constexpr std::size_t bitstreamFormatOffset = 12;
constexpr std::size_t bitstreamChecksumOffset = 88;
constexpr std::size_t bitstreamHeaderSize = 92;

constexpr std::size_t blockSize = 1 << 16;

// For the next bytes of a file, with anything in it: most images are short, and clearing it took longer than reading.
std::unique_ptr<char[]> makeBlock()
{
    return std::make_unique_for_overwrite<char[]>(blockSize);
}

std::uint32_t bigEndian(std::string_view bytes, std::size_t offset, std::size_t width)
{
    std::uint32_t value = 0;
    for (const char byte : bytes.substr(offset, width)) {
        value = value << 8 | static_cast<unsigned char>(byte);
    }
    return value;
}

// The first bytes of the file; a file shorter than a binary header is filled up with zeros.
std::string readHead(RegularFile& file, std::size_t& length)
{
    std::string head(binaryHeaderSize, '\0');
    length = 0;
    while (const std::size_t read = file.read(head.data() + length, head.size() - length)) {
        length += read;
    }
    return head;
}

bool isBinaryFile(std::string_view head)
{
    return head.substr(binaryMagicOffset, binaryMagic.size()) == binaryMagic;
}

bool isBitstreamFile(std::string_view head, std::size_t length)
{
    return length >= bitstreamHeaderSize && head.starts_with(bitstreamMagic) &&
           bigEndian(head, bitstreamFormatOffset, 4) == 1;
}

// Whether the first byte that is no blank, behind a byte-order mark, opens an object.
bool mayBeJson(RegularFile& file)
{
    constexpr auto mark = "\xEF\xBB\xBF"sv;
    file.rewind();
    const auto block = makeBlock();
    std::size_t length = file.read(block.get(), blockSize);
    std::size_t skipped = std::string_view(block.get(), length).starts_with(mark) ? mark.size() : 0;
    for (; length != 0; length = file.read(block.get(), blockSize)) {
        const std::string_view text(block.get(), length);
        if (const auto start = text.find_first_not_of(" \t\r\n", skipped); start != std::string_view::npos) {
            return text[start] == '{';
        }
        skipped = 0;
    }
    return false;
}

void readBinaryHeader(std::string_view head, UpdateContent& content)
{
    const auto byte = [&](std::size_t offset) { return static_cast<std::uint8_t>(bigEndian(head, offset, 1)); };
    const auto word = [&](std::size_t offset) { return static_cast<std::uint16_t>(bigEndian(head, offset, 2)); };
    const std::uint8_t release = byte(binaryReleaseOffset);
    const std::uint8_t stage = release == 10 ? 1 : release == 11 ? 2 : 0;
    const ZoCVersion version(byte(binaryVersionOffset), byte(binaryVersionOffset + 1), byte(binaryVersionOffset + 2),
                             stage, word(binarySpnOffset), word(binaryPlvOffset));
    content.version = version.getAsString().c_str();
    content.checksum = bigEndian(head, binaryChecksumOffset, 4);
}

void readBitstreamHeader(std::string_view head, UpdateContent& content)
{
    if (bigEndian(head, bitstreamLengthOffset, 4) >= bitstreamHeaderSize) {
        content.checksum = bigEndian(head, bitstreamChecksumOffset, 4);
    }
}

// False when the file holds no inventory tree.
bool readInventory(RegularFile& file, UpdateContent& content)
try {
    using namespace ZoNInventoryIDs;
    file.rewind();
    const InventoryFile inventory = readInventoryFile(file);
    content.checksum = inventory.checksum;
    const ZoCInventoryParameter* parameter = inventory.root->getParameter(FIRMWARE / CHECKSUM_CRC32);
    const auto checksum = parameter == nullptr ? std::nullopt : parameter->value.number();
    if (!content.checksum && checksum && *checksum <= std::numeric_limits<std::uint32_t>::max()) {
        content.checksum = static_cast<std::uint32_t>(*checksum);
    }
    if (const ZoCInventoryParameter* version = inventory.root->getParameter(FIRMWARE / VERSION)) {
        content.version = version->value.text();
    }
    return true;
} catch (const DocumentFault&) {
    return false;
}

std::uint32_t checksumOf(RegularFile& file)
{
    file.rewind();
    const auto block = makeBlock();
    uLong checksum = crc32(0, nullptr, 0);
    while (const std::size_t length = file.read(block.get(), blockSize)) {
        checksum = crc32(checksum, reinterpret_cast<const Bytef*>(block.get()), static_cast<uInt>(length));
    }
    return static_cast<std::uint32_t>(checksum);
}

UpdateContent contentOf(RegularFile& file)
{
    std::size_t length = 0;
    const std::string head = readHead(file, length);
    UpdateContent content;
    content.size = file.size();
    if (isBinaryFile(head)) {
        readBinaryHeader(head, content);
    } else if (isBitstreamFile(head, length)) {
        readBitstreamHeader(head, content);
    } else if (!mayBeJson(file) || !readInventory(file, content)) {
        content.checksum = checksumOf(file);
    }
    return content;
}

}  // namespace

std::optional<UpdateContent> readUpdateContent(const std::filesystem::path& path)
try {
    RegularFile file(path);
    return contentOf(file);
} catch (const FileFault&) {
    return std::nullopt;
}

std::optional<std::uint32_t> fileChecksum(const std::filesystem::path& path)
try {
    RegularFile file(path);
    return checksumOf(file);
} catch (const FileFault&) {
    return std::nullopt;
}

}  // namespace TrellanSimulation
