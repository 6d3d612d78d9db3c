// What the inspector tells of an update file's header.
#include <algorithm>

#include "base/CellText.h"
#include "inspection/FileContent.h"
#include "inspection/ZoCTrellanInspector.h"

using namespace ZoNTrellanInspector;
using namespace ZoNUpdateArchive;
using namespace ZoNUpdateBase;
using namespace ZoNUpdateInspection;

namespace {

ZoTFileKind kindOf(FileKind kind)
{
    switch (kind) {
        case FileKind::binary:
            return ZoTFileKind::BINARY;
        case FileKind::inventoryTree:
            return ZoTFileKind::INVENTORY_TREE;
        case FileKind::bitstream:
            return ZoTFileKind::BITSTREAM;
        default:
            return ZoTFileKind::PLAIN;
    }
}

bool isPlain(const FileHeader& header)
{
    return header.kind == FileKind::plain;
}

std::optional<std::uint32_t> checksumOf(const FileContent& content)
{
    if (isPlain(content.header)) {
        return content.crc32;
    }
    return content.header.checksumCrc32 != notAvailable ? std::optional(content.header.checksumCrc32) : std::nullopt;
}

ZoTFileHeader recordOf(const FileContent& content)
{
    const FileHeader& header = content.header;
    const auto checksum = checksumOf(content);
    ZoTFileHeader record{};
    record.kind = kindOf(header.kind);
    record.hasChecksum = checksum.has_value();
    record.checksum = checksum.value_or(0);
    record.version = versionText(header.version.value_or(ZoCVersion()));
    if (statesRange(header.minHwCompatibilityId, header.maxHwCompatibilityId)) {
        record.hasHwCompatibilityRange = true;
        record.minHwCompatibilityId = header.minHwCompatibilityId;
        record.maxHwCompatibilityId = header.maxHwCompatibilityId;
    }
    if (statesRange(header.minSwCompatibilityId, header.maxSwCompatibilityId)) {
        record.hasSwCompatibilityRange = true;
        record.minSwCompatibilityId = header.minSwCompatibilityId;
        record.maxSwCompatibilityId = header.maxSwCompatibilityId;
    }
    return record;
}

}  // namespace

const ZoTFileHeader& ZoCTrellanInspector::readFileHeader(const std::string& path)
{
    return readFileHeaderWithProgress(path, nullptr, nullptr);
}

const ZoTFileHeader& ZoCTrellanInspector::readFileHeaderWithProgress(const std::string& path, ZoTReadProgress progress,
                                                                     void* context)
{
    const auto [problem, identity, size] = lookAt(path);
    std::optional<FileContent> content;
    if (problem == FileProblem::none || problem == FileProblem::empty) {
        std::uint64_t read = 0;
        content = readContent(path, {true, isPlain}, [&, all = size](std::uint64_t bytes) {
            read += bytes;
            if (progress != nullptr) {
                progress(context, read, std::max(read, all));
            }
        });
    }
    if (content) {
        fileHeader = recordOf(*content);
        return fileHeader;
    }
    fileHeader = ZoTFileHeader{};
    fileHeader.kind = ZoTFileKind::UNREADABLE;
    fileHeader.problem =
        problem == FileProblem::missing ? "there is no such file" : "this is no regular file that can be read";
    return fileHeader;
}
