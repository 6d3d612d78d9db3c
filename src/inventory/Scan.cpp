// Reading of the target's inventory.
#include "inventory/ScannedTree.h"
#include "inventory/ZoCUpdateInventory.h"
#include "updater/ZoCTrellanUpdater.h"

ZoCUpdateInventory::ZoCUpdateInventory(const ZoCTrellanUpdater& updater, const ZoNTrellanUpdater::ZoTOptions& options)
    : updater(updater), options(options)
{
}

ZoCUpdateInventory::~ZoCUpdateInventory() = default;

int ZoCUpdateInventory::getInventory(ZoCErrorListPool& errors)
{
    const ZoNUpdateInventory::ScannedTree tree = ZoNUpdateInventory::scanTarget(errors);
    if (!tree) {
        return 0;
    }
    searchUpdateElements(errors, tree.get(), nullptr, true);
    initFileSystemElementTemplate();
    determineRebootSupport(errors, tree.get());
    if (options.verbose) {
        updater.print("Reboot support status: %u\n", rebootSupportState);
    }
    return 1;
}

bool ZoCUpdateInventory::getHcnAddress(ZoCInventoryAddress& address) const
{
    if (hcnFound) {
        address = hcnAddress;
    }
    return hcnFound;
}

bool ZoCUpdateInventory::getCnAddress(ZoCInventoryAddress& address) const
{
    if (cnFound) {
        address = cnAddress;
    }
    return cnFound;
}
