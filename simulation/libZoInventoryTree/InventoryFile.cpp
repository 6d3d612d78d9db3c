#include "simulation/libZoInventoryTree/InventoryFile.h"

#include "simulation/libZoInventoryTree/Document.h"
#include "simulation/libZoInventoryTree/TreeBuilder.h"

namespace TrellanSimulation {

InventoryFile readInventoryFile(const std::filesystem::path& path)
try {
    RegularFile file(path);
    return readInventoryFile(file);
} catch (const FileFault& fault) {
    throw DocumentFault(fault.what());
}

InventoryFile readInventoryFile(RegularFile& file)
{
    std::string text = readText(file);
    const JsonDocument document = JsonDocument::parse(text);
    const Json whole = document.root();
    const Place top;
    requireMembers(whole, {"inventoryTree", "checksumCrc32"}, top);
    InventoryFile inventory;
    inventory.root = buildTree(getMember(whole, "inventoryTree", top), Place(top, "inventoryTree"));
    if (const auto checksum = whole.find("checksumCrc32")) {
        inventory.checksum = static_cast<std::uint32_t>(getNumber(*checksum, Place(top, "checksumCrc32")));
    }
    return inventory;
}

}  // namespace TrellanSimulation
