// Reading of inventory values that an item need not have.
#pragma once

#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "libZoInventoryTree/ZoCInventoryItem.h"

namespace ZoNUpdateInventory {

// Reads the parameter as T into `value`, which stays as it is when the item does not have it. Returns whether it has.
template <class T>
bool readIfPresent(ZoCErrorListPool& errors, const ZoCInventoryItem& item, const ZoCInventoryAddress& address, T& value)
{
    if (item.getParameter(address) == nullptr) {
        return false;
    }
    value = item.getValue<T>(errors, address);
    return true;
}

// The parameter as a number of 8 bits; 0 when the item does not have it.
inline unsigned char readByte(ZoCErrorListPool& errors, const ZoCInventoryItem& item,
                              const ZoCInventoryAddress& address)
{
    unsigned char value = 0;
    readIfPresent(errors, item, address, value);
    return value;
}

}  // namespace ZoNUpdateInventory
