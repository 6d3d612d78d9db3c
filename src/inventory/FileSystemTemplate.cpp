// The record from which elements for files on the flash drive are made.
#include "inventory/ElementReader.h"
#include "inventory/ZoCUpdateInventory.h"
#include "libZoInventoryTree/ZoNInventoryIDs.h"
#include "updater/ZoCTrellanUpdater.h"

using ZoNUpdateInventory::ZoSUpdateElement;

namespace {

bool isOnProcessingNode(const ZoSUpdateElement& element)
{
    const ZoCInventoryAddress node = element.boardAddress.getLastElement()[1];
    return node == ZoNInventoryIDs::HCN || node == ZoNInventoryIDs::CN;
}

void copyUnit(const ZoSUpdateElement& source, ZoSUpdateElement& element)
{
    element.unitProductName = source.unitProductName;
    element.unitName = source.unitName;
    element.rackName = source.rackName;
}

void copyCompatibility(const ZoSUpdateElement& source, ZoSUpdateElement& element)
{
    element.hwCompatibilityId = source.hwCompatibilityId;
    element.swCompatibilityId = source.swCompatibilityId;
}

}  // namespace

void ZoCUpdateInventory::initFileSystemElementTemplate()
{
    fileSystemElementTemplate.reset();  // one made for an earlier scan would name a board that may be gone
    if (options.configuration || (!hcnFound && !cnFound) || updateElements.empty()) {
        return;
    }
    const ZoSUpdateElement& source = updateElements.front();
    if (!isOnProcessingNode(source)) {
        if (options.verbose) {
            updater.print("WARNING: Cannot initialize file system element template. Unexpected HCN address (%s).\n",
                          source.boardAddress.toString().c_str());
        }
        return;
    }
    auto element = std::make_unique<ZoSUpdateElement>();
    ZoNUpdateInventory::copyBoard(source, *element);
    copyUnit(source, *element);
    copyCompatibility(source, *element);
    element->isFileSystemElement = true;
    element->location = "*";
    element->configuration = false;
    element->name = "Updatable file";
    generateDisplayString(element->boardName, element->boardType, element->serialNumber, element->name,
                          element->displayType, element->displayName);
    fileSystemElementTemplate = std::move(element);
}
