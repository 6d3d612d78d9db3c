// Whether the archive supports the target.
#include "assignment/ZoCUpdateAssignment.h"
#include "base/Pointers.h"

using ZoNUpdateInventory::ZoSUpdateElement;

bool ZoCUpdateAssignment::computeTargetSupport()
{
    computeSupportOf(ZoNUpdateBase::pointersTo(updateElements));
    return targetSupported;
}

void ZoCUpdateAssignment::computeSupportOf(const ElementPointers& elements)
{
    ZoCInventoryAddress hcnAddress;
    ZoCInventoryAddress cnAddress;
    const bool hcnFound = inventory.getHcnAddress(hcnAddress);
    const bool cnFound = inventory.getCnAddress(cnAddress);

    targetSupported = true;
    const auto isOnNode = [&](const ZoSUpdateElement& element) {
        return (hcnFound && element.boardAddress == hcnAddress) || (cnFound && element.boardAddress == cnAddress);
    };
    for (ZoSUpdateElement* const element : elements) {
        element->blocksUpdate = element->updateFileIndex == -1 && !element->isFileSystemElement && isOnNode(*element);
        targetSupported = targetSupported && !element->blocksUpdate;
    }
}
