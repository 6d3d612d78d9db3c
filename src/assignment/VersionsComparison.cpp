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
    Row row{
        cellText(number),
        textBeforeNul(element.displayName),
        cellText(element.version),
        file != nullptr ? cellText(file->version) : "---",
        checksumsText(element, file),
        file == nullptr       ? ""
        : element.notRequired ? "Y"
                              : "N",
        file != nullptr && !element.disabled ? cellText(element.phase) : "-",
    };
    if (const char* const marker = elementMarker(element)) {
        row.emplace_back(marker);
    }
    return row;
}

}  // namespace

void ZoCUpdateAssignment::printVersionsComparison() const
{
    std::vector<Row> table{{"No.", "Update element", "Installed", "Available", "Checksums", "Up-to-date", "Phase"}};
    table.reserve(updateElements.size() + 1);
    std::uint32_t number = 0;
    for (const ZoSUpdateElement& element : updateElements) {
        table.push_back(rowOf(number++, element, fileOf(element)));
    }
    updater.printTable(table);
}
