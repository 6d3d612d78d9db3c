#include "tool/documents/InspectedFiles.h"

#include "json/Json.h"
#include "tool/documents/TextTable.h"

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;
using ZoNTrellanInspector::ZoTFileHeader;
using ZoNTrellanInspector::ZoTFileKind;

const char* kindName(ZoTFileKind kind)
{
    switch (kind) {
        case ZoTFileKind::BINARY:
            return "binary";
        case ZoTFileKind::INVENTORY_TREE:
            return "inventory";
        case ZoTFileKind::BITSTREAM:
            return "bitstream";
        default:
            return "plain";
    }
}

constexpr const char* none = "---";

std::string rangeText(bool isStated, std::uint32_t min, std::uint32_t max)
{
    return isStated ? std::to_string(min) + " to " + std::to_string(max) : none;
}

TableRow rowOf(const InspectedFile& file)
{
    const ZoTFileHeader& header = file.header;
    return {file.path,
            kindName(header.kind),
            header.version.empty() ? none : header.version,
            header.hasChecksum ? std::to_string(header.checksum) : none,
            rangeText(header.hasHwCompatibilityRange, header.minHwCompatibilityId, header.maxHwCompatibilityId),
            rangeText(header.hasSwCompatibilityRange, header.minSwCompatibilityId, header.maxSwCompatibilityId)};
}

ordered_json rangeJson(bool isStated, std::uint32_t min, std::uint32_t max)
{
    return isStated ? ordered_json{{"min", min}, {"max", max}} : ordered_json();
}

}  // namespace

std::string inspectedText(const std::vector<InspectedFile>& files)
{
    std::vector<TableRow> rows = {{"File", "Kind", "Version", "Checksum", "HwCompatibilityId", "SwCompatibilityId"}};
    for (const InspectedFile& file : files) {
        if (file.isReadable()) {
            rows.push_back(rowOf(file));
        }
    }
    return tableText(rows, false);
}

ordered_json inspectedRecord(const InspectedFile& file)
{
    const ZoTFileHeader& header = file.header;
    const auto orNull = [](bool isKnown, const ordered_json& value) { return isKnown ? value : ordered_json(); };
    return {{"path", file.path},
            {"kind", orNull(file.isReadable(), kindName(header.kind))},
            {"checksum", orNull(header.hasChecksum, header.checksum)},
            {"version", orNull(!header.version.empty(), header.version)},
            {"hwCompatibilityId",
             rangeJson(header.hasHwCompatibilityRange, header.minHwCompatibilityId, header.maxHwCompatibilityId)},
            {"swCompatibilityId",
             rangeJson(header.hasSwCompatibilityRange, header.minSwCompatibilityId, header.maxSwCompatibilityId)},
            {"error", orNull(!file.isReadable(), header.problem)}};
}

}  // namespace TrellanTool
