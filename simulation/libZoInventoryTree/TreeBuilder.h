// Building inventory trees from their JSON form: {"id": ID, "parameters": {ADDRESS: VALUE, ...}, "items": [ITEM, ...]}.
#pragma once

#include <memory>

#include "simulation/libZoInventoryTree/Document.h"
#include "simulation/libZoInventoryTree/TreeItem.h"

namespace TrellanSimulation {

// Levels of items that a tree may have at most.
inline constexpr unsigned maxTreeLevels = 512;

// The tree whose root item `item` is, standing at `place` in its document. An item must have an `id`, a kind's name
// with an optional "[n]"; `parameters` (numbers and strings) and `items` may be left out. Throws DocumentFault with the
// place of the first thing that is wrong.
std::unique_ptr<TreeItem> buildTree(const Json& item, const Place& place);

}  // namespace TrellanSimulation
