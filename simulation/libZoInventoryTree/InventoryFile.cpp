#include "simulation/libZoInventoryTree/InventoryFile.h"

#include "simulation/libZoInventoryTree/Document.h"
#include "simulation/libZoInventoryTree/DocumentBuilder.h"
#include "simulation/libZoInventoryTree/TreeBuilder.h"

namespace TrellanSimulation {

namespace {

InventoryFile inventoryIn(const Json& document)
{
    const Place top;
    requireMembers(document, {"inventoryTree", "checksumCrc32"}, top);
    InventoryFile file;
    file.root = buildTree(getMember(document, "inventoryTree", top), Place(top, "inventoryTree"));
    if (const Json* checksum = findMember(document, "checksumCrc32")) {
        file.checksum = static_cast<std::uint32_t>(getNumber(*checksum, Place(top, "checksumCrc32")));
    }
    return file;
}

}  // namespace

InventoryFile readInventoryFile(const std::filesystem::path& path)
{
    return inventoryIn(readDocument(path));
}

InventoryFile readInventoryFile(RegularFile& file)
{
    return inventoryIn(parseDocument(file));
}

}  // namespace TrellanSimulation
