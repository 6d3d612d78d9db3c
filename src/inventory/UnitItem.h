// The unit (box or rack) that an inventory item belongs to.
#pragma once

#include "inventory/ZoSUpdateElement.h"
#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "libZoInventoryTree/ZoCInventoryItem.h"

namespace ZoNUpdateInventory {

// The unit item of `item` and what is below it: itself when it has a unit's name, the named backplane of an HCN or an
// I/O router, else `inherited`, the unit item of its parent.
ZoCInventoryItem* unitItemOf(ZoCInventoryItem& item, ZoCInventoryItem* inherited);

// Fills in what the element's record says of its unit. Read errors go to `errors`.
void readUnit(ZoCErrorListPool& errors, const ZoCInventoryItem& unit, ZoSUpdateElementValues& element);

}  // namespace ZoNUpdateInventory
