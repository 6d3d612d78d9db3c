// The table of installed versions.
#include "base/CellText.h"
#include "base/PlatformText.h"
#include "inventory/ElementMarker.h"
#include "inventory/UnitTitle.h"
#include "inventory/ZoCUpdateInventory.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;
using namespace ZoNUpdateInventory;

namespace {

using Row = std::vector<std::string>;

Row header()
{
    return {"Update element", "Version"};
}

Row rowOf(const ZoSUpdateElement& element)
{
    Row row{textBeforeNul(element.displayName), cellText(element.version)};
    if (const char* const marker = elementMarker(element)) {
        row.emplace_back(marker);
    }
    return row;
}

}  // namespace

void ZoCUpdateInventory::printVersions() const
{
    TableText table;
    if (!options.verbose) {
        table.addRow(header());
    }
    std::string previousTitle;
    for (const ZoSUpdateElement& element : updateElements) {
        if (options.verbose) {
            const std::string title = unitTitle(element);
            if (title != previousTitle) {
                updater.printTable(table);
                table = TableText();
                table.addRow(header());
                const std::string asterisks(title.size() + 4, '*');
                updater.print("\n%s\n* %s *\n%s\n", asterisks.c_str(), title.c_str(), asterisks.c_str());
                previousTitle = title;
            }
        }
        table.addRow(rowOf(element));
    }
    updater.printTable(table);
}
