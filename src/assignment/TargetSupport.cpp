// Whether the archive supports the target.
#include "assignment/ZoCUpdateAssignment.h"

bool ZoCUpdateAssignment::computeTargetSupport()
{
    ZoCInventoryAddress hcnAddress;
    ZoCInventoryAddress cnAddress;
    const bool hcnFound = inventory.getHcnAddress(hcnAddress);
    const bool cnFound = inventory.getCnAddress(cnAddress);

    targetSupported = true;
    for (auto& element : updateElements) {
        const bool isOnNode =
            (hcnFound && element.boardAddress == hcnAddress) || (cnFound && element.boardAddress == cnAddress);
        element.blocksUpdate = fileOf(element) == nullptr && !element.isFileSystemElement && isOnNode;
        targetSupported = targetSupported && !element.blocksUpdate;
    }
    return targetSupported;
}
