// Reading of the target's inventory.
#include "inventory/ZoCUpdateInventory.h"
#include "libZoInventoryManagerAP/ZoCInventoryManager.h"
#include "updater/ZoCTrellanUpdater.h"

namespace {

struct TreeDeleter {
    void operator()(ZoCInventoryItem* tree) const noexcept
    {
        try {
            ZoCInventoryManager::getInstance()->deleteInventoryTree(tree);
        } catch (...) {  // nothing more can be done for the tree, and the host is to live on
        }
    }
};

}  // namespace

ZoCUpdateInventory::ZoCUpdateInventory(const ZoCTrellanUpdater& updater, const ZoNTrellanUpdater::ZoTOptions& options)
    : updater(updater), options(options)
{
}

ZoCUpdateInventory::~ZoCUpdateInventory() = default;

int ZoCUpdateInventory::getInventory(ZoCErrorListPool& errors)
{
    ZoCInventoryItem* scanned = nullptr;
    const int result = ZoCInventoryManager::getInstance()->scan(errors, scanned, true, nullptr);
    const std::unique_ptr<ZoCInventoryItem, TreeDeleter> tree(scanned);
    if (result != 0 || !tree) {
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
