// What the inventory says of an update element and of its board.
#pragma once

#include "inventory/ZoSUpdateElement.h"
#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "libZoInventoryTree/ZoCInventoryItem.h"

namespace ZoNUpdateInventory {

// Fill in the board's and the element's fields; read errors go to `errors`. A parameter that the item does not have
// leaves its field as it is, with these exceptions: a board without a name is called like its type, an element without
// a name (or with an empty one) "Update Element"; without CUSTOM, VALID, ACTIVE or CHECKSUM_CRC32 an element is not
// custom, not valid, not active or has no checksum.
void readBoard(ZoCErrorListPool& errors, const ZoCInventoryItem& board, ZoSUpdateElementValues& element);
void readElement(ZoCErrorListPool& errors, const ZoCInventoryItem& item, ZoSUpdateElementValues& element);

// Sets the fields of an element that readBoard() fills in to those of another one on the same board.
void copyBoard(const ZoSUpdateElementValues& from, ZoSUpdateElementValues& element);

}  // namespace ZoNUpdateInventory
