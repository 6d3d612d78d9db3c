// Inventory-tree files: {"inventoryTree": ITEM, "checksumCrc32": N}, the checksum optional.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

#include "simulation/base/RegularFile.h"
#include "simulation/libZoInventoryTree/TreeItem.h"

namespace TrellanSimulation {

struct InventoryFile {
    std::unique_ptr<TreeItem> root;         // never null
    std::optional<std::uint32_t> checksum;  // that the file states
};

// Reads the inventory-tree file at `path`. Throws DocumentFault when it cannot be read or is no such file.
InventoryFile readInventoryFile(const std::filesystem::path& path);

// The same for the opened `file`, from where it is read next; throws FileFault when it cannot be read.
InventoryFile readInventoryFile(RegularFile& file);

}  // namespace TrellanSimulation
