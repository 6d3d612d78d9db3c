// The table of installed and available versions.
#include "assignment/ZoCUpdateAssignment.h"
#include "base/CellText.h"
#include "base/PlatformText.h"
#include "inventory/ElementMarker.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace {

using Row = std::vector<std::string>;

std::string checksumsText(const ZoSUpdateElement& element, const ZoSUpdateFile* file)
{
    if (file == nullptr) {
        return element.hasChecksum ? cellText(element.checksumCrc32) + " != ---" : "";
    }
    // An element that reports no checksum differs from any file.
    if (!element.hasChecksum) {
        return "--- != " + cellText(file->checksumCrc32);
    }
    const char* const relation = element.checksumCrc32 == file->checksumCrc32 ? " == " : " != ";
    return cellText(element.checksumCrc32) + relation + cellText(file->checksumCrc32);
}

Row rowOf(std::uint32_t number, const ZoSUpdateElement& element, const ZoSUpdateFile* file)
{
    constexpr std::size_t mostCells = 8;
    Row row;
    row.reserve(mostCells);
    row.push_back(cellText(number));
    row.push_back(textBeforeNul(element.displayName));
    row.push_back(cellText(element.version));
    row.push_back(file != nullptr ? cellText(file->version) : "---");
    row.push_back(checksumsText(element, file));
    row.emplace_back(file == nullptr ? "" : element.notRequired ? "Y" : "N");
    row.push_back(file != nullptr && !element.disabled ? cellText(element.phase) : "-");
    if (const char* const marker = elementMarker(element)) {
        row.emplace_back(marker);
    }
    return row;
}

}  // namespace

void ZoCUpdateAssignment::printVersionsComparison() const
{
    TableText table;
    table.addRow({"No.", "Update element", "Installed", "Available", "Checksums", "Up-to-date", "Phase"});
    std::uint32_t number = 0;
    for (const ZoSUpdateElement& element : updateElements) {
        table.addRow(rowOf(number++, element, fileOf(element)));
    }
    updater.printTable(table);
}
