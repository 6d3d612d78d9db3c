// Addresses of the parameters in a board's product block.
#pragma once

#include "libZoInventoryTree/ZoNInventoryIDs.h"

namespace ZoNUpdateInventory {

struct ProductAddresses {
    const ZoCInventoryAddress boardType = ZoNInventoryIDs::PRODUCT / ZoNInventoryIDs::BOARD_TYPE;
    const ZoCInventoryAddress variant = ZoNInventoryIDs::PRODUCT / ZoNInventoryIDs::VARIANT;
    const ZoCInventoryAddress id = ZoNInventoryIDs::PRODUCT / ZoNInventoryIDs::ID;
    const ZoCInventoryAddress serialNumber = ZoNInventoryIDs::PRODUCT / ZoNInventoryIDs::SERIAL_NUMBER;
    const ZoCInventoryAddress slotCount = ZoNInventoryIDs::PRODUCT / ZoNInventoryIDs::SLOT_COUNT;
    const ZoCInventoryAddress name = ZoNInventoryIDs::PRODUCT / ZoNInventoryIDs::NAME;
    const ZoCInventoryAddress unitName = ZoNInventoryIDs::PRODUCT / ZoNInventoryIDs::UNITNAME;
    const ZoCInventoryAddress packageName = ZoNInventoryIDs::PRODUCT / ZoNInventoryIDs::PACKAGE_NAME;
};

// Made at the first use: the maker's constants need not have their values yet while this library is loaded.
inline const ProductAddresses& product()
{
    static const ProductAddresses addresses;
    return addresses;
}

}  // namespace ZoNUpdateInventory
