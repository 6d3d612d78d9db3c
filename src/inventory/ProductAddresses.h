// Addresses of the parameters in a board's product block.
#pragma once

#include "libZoInventoryTree/ZoNInventoryIDs.h"

namespace ZoNUpdateInventory {

inline const ZoCInventoryAddress productBoardType = ZoNInventoryIDs::PRODUCT / ZoNInventoryIDs::BOARD_TYPE;
inline const ZoCInventoryAddress productVariant = ZoNInventoryIDs::PRODUCT / ZoNInventoryIDs::VARIANT;
inline const ZoCInventoryAddress productId = ZoNInventoryIDs::PRODUCT / ZoNInventoryIDs::ID;
inline const ZoCInventoryAddress productSerialNumber = ZoNInventoryIDs::PRODUCT / ZoNInventoryIDs::SERIAL_NUMBER;
inline const ZoCInventoryAddress productSlotCount = ZoNInventoryIDs::PRODUCT / ZoNInventoryIDs::SLOT_COUNT;
inline const ZoCInventoryAddress productName = ZoNInventoryIDs::PRODUCT / ZoNInventoryIDs::NAME;
inline const ZoCInventoryAddress productUnitName = ZoNInventoryIDs::PRODUCT / ZoNInventoryIDs::UNITNAME;
inline const ZoCInventoryAddress productPackageName = ZoNInventoryIDs::PRODUCT / ZoNInventoryIDs::PACKAGE_NAME;

}  // namespace ZoNUpdateInventory
