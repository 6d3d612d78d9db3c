// What the inventory says of an update element and of its board.
#pragma once

#include "inventory/ZoSUpdateElement.h"
#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "libZoInventoryTree/ZoCInventoryItem.h"

namespace ZoNUpdateInventory {

// Fill in the board's and the element's fields. A parameter that the item does not have leaves its field as it is; read
// errors go to `errors`.
void readBoard(ZoCErrorListPool& errors, const ZoCInventoryItem& board, ZoSUpdateElementValues& element);
void readElement(ZoCErrorListPool& errors, const ZoCInventoryItem& item, ZoSUpdateElementValues& element);

}  // namespace ZoNUpdateInventory
