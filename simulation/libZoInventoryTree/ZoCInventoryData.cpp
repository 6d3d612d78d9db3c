#include "libZoInventoryTree/ZoCInventoryData.h"

#include "simulation/libZoInventoryTree/Document.h"
#include "simulation/libZoInventoryTree/InventoryFile.h"
#include "simulation/libZoInventoryTree/PlatformErrors.h"

using namespace TrellanSimulation;

void ZoCInventoryData::extractInventoryTreeFromFile(ZoCErrorListPool& errors, const char* path, ZoCInventoryItem*& root,
                                                    bool& hasChecksum, unsigned& checksum)
{
    root = nullptr;
    hasChecksum = false;
    checksum = 0;
    const char* name = path == nullptr ? "" : path;
    try {
        InventoryFile file = readInventoryFile(name);
        hasChecksum = file.checksum.has_value();
        checksum = file.checksum.value_or(0);
        root = TreeItem::handOut(std::move(file.root));
    } catch (const DocumentFault&) {
        addPlatformError(errors, PlatformError::noInventoryTree, {name});
    }
}
