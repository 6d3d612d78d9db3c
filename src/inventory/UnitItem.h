// The unit (box or rack) that an inventory item belongs to.
#pragma once

#include "inventory/ZoSUpdateElement.h"
#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "libZoInventoryTree/ZoCInventoryItem.h"

namespace ZoNUpdateInventory {

// The unit item of `item` and what is below it: itself when it has a unit's name or a package's; for an HCN or an I/O
// router the first backplane directly below it, if that has a unit's name; else `inherited`, the unit item of its
// parent. An HCN with a CN has its first CN's first backplane looked at in place of its own.
ZoCInventoryItem* unitItemOf(ZoCInventoryItem& item, ZoCInventoryItem* inherited);

// Fills in what the element's record says of its unit. Read errors go to `errors`.
void readUnit(ZoCErrorListPool& errors, const ZoCInventoryItem& unit, ZoSUpdateElementValues& element);

// Sets the fields of an element that readUnit() fills in to those of another one in the same unit.
void copyUnit(const ZoSUpdateElementValues& from, ZoSUpdateElementValues& element);

}  // namespace ZoNUpdateInventory
