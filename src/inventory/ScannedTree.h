// The inventory tree of a scan, released by whoever holds it.
#pragma once

#include <memory>

#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "libZoInventoryManagerAP/ZoCInventoryManager.h"

namespace ZoNUpdateInventory {

struct TreeDeleter {
    void operator()(ZoCInventoryItem* tree) const noexcept
    {
        try {
            ZoCInventoryManager::getInstance()->deleteInventoryTree(tree);
        } catch (...) {  // nothing more can be done for the tree, and the host is to live on
        }
    }
};

using ScannedTree = std::unique_ptr<ZoCInventoryItem, TreeDeleter>;

// Scans the whole target. Null when the scan failed; a tree may come with errors, too.
inline ScannedTree scanTarget(ZoCErrorListPool& errors)
{
    ZoCInventoryItem* scanned = nullptr;
    const int result = ZoCInventoryManager::getInstance()->scan(errors, scanned, true, nullptr);
    ScannedTree tree(scanned);
    return result == 0 ? std::move(tree) : nullptr;
}

}  // namespace ZoNUpdateInventory
