// The search for update elements in an inventory tree.
#include <memory>
#include <stdexcept>

#include "Measure.h"
#include "Workspace.h"
#include "inventory/ZoCUpdateInventory.h"
#include "libZoInventoryTree/ZoCInventoryData.h"
#include "libZoInventoryTree/ZoCInventoryItem.h"

namespace {

constexpr unsigned elementsOfBoard = 8;

Json boardWithElements(unsigned index)
{
    Json elements = Json::array();
    for (unsigned i = 1; i <= elementsOfBoard; ++i) {
        elements.push_back({{"id", "UPDATE_ELEMENT[" + std::to_string(i) + "]"},
                            {"parameters",
                             {{"ID", i},
                              {"NAME", "UserFirmware"},
                              {"CONFIGURATION", 0},
                              {"VALID", 1},
                              {"ACTIVE", 1},
                              {"VERSION", "1.0"},
                              {"CHECKSUM_CRC32", 7}}}});
    }
    return {{"id", "IOMODULE[" + std::to_string(index) + "]"},
            {"parameters", {{"PRODUCT/BOARD_TYPE", "T"}, {"PRODUCT/NAME", "Board"}, {"PRODUCT/SERIAL_NUMBER", index}}},
            {"items", {{{"id", "UPDATE_INFO"}, {"items", elements}}}}};
}

// A unit whose boards stand before and behind the units inside it, so that most elements are found when elements of
// later units are already in the list.
Json unitWithBoards(unsigned units, unsigned boardsOfUnit)
{
    Json items = Json::array();
    for (unsigned i = 1; i <= boardsOfUnit; ++i) {
        if (i == boardsOfUnit / 2 && units > 1) {
            items.push_back(unitWithBoards(units - 1, boardsOfUnit));
        }
        items.push_back(boardWithElements(i));
    }
    return {{"id", "NETC"}, {"parameters", {{"PRODUCT/UNITNAME", "Unit " + std::to_string(units)}}}, {"items", items}};
}

std::unique_ptr<ZoCInventoryItem> treeOf(Workspace& workspace, unsigned elements, unsigned units)
{
    const Json document = {
        {"inventoryTree", {{"id", "ROOT"}, {"items", {unitWithBoards(units, elements / elementsOfBoard / units)}}}}};
    ZoCInventoryItem* root = nullptr;
    bool hasChecksum = false;
    unsigned checksum = 0;
    ZoCInventoryData::extractInventoryTreeFromFile(
        workspace.errors(), workspace.write("tree.json", textOf(document)).c_str(), root, hasChecksum, checksum);
    if (root == nullptr) {
        throw std::runtime_error(workspace.errors().getErrorText(0));
    }
    return std::unique_ptr<ZoCInventoryItem>(root);
}

void searchElements(benchmark::State& state)
{
    Workspace workspace;
    const std::unique_ptr<ZoCInventoryItem> tree = treeOf(workspace, sizeOf(state), 5);
    ZoCUpdateInventory& inventory = workspace.updater().getInventory();
    for ([[maybe_unused]] auto iteration : state) {
        inventory.searchUpdateElements(workspace.errors(), tree.get(), nullptr, true);
    }
    state.counters["found"] = static_cast<double>(inventory.getUpdateElementList().size());
}

const auto* const registered = measure("element-search", searchElements, {1000, 10000, 50000});

}  // namespace
