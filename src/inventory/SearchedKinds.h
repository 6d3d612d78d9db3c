// What the search for update elements looks at in an inventory tree.
#pragma once

#include "libZoInventoryTree/ZoCInventoryItem.h"

namespace ZoNUpdateInventory {

// True when the search goes into the item: what is below others is never seen.
bool mayHoldElements(const ZoCInventoryItem& item);

// True for an element that can be updated, or a file on the flash drive, wherever it is placed.
bool isUpdateElement(const ZoCInventoryItem& item);

}  // namespace ZoNUpdateInventory
