#include "inventory/UnitItem.h"

#include "inventory/OptionalValue.h"
#include "inventory/ProductAddresses.h"
#include "inventory/SubItems.h"

using namespace ZoNInventoryIDs;

namespace ZoNUpdateInventory {
namespace {

constexpr unsigned serialNumberMask = 0xFFFFFF;  // the part of an I/O router's serial number that numbers its I/O node

bool hasParameter(const ZoCInventoryItem& item, const ZoCInventoryAddress& address)
{
    return item.getParameter(address) != nullptr;
}

// The item that tells the unit's own name and its rack's: an I/O router without a name is named by its I/O node.
const ZoCInventoryItem& namingItemOf(ZoCErrorListPool& errors, const ZoCInventoryItem& unit)
{
    if (hasParameter(unit, UNITNAME) || !isOfKind(unit, IOROUTER)) {
        return unit;
    }
    const unsigned serialNumber = unit.getValue<unsigned int>(errors, product().serialNumber);
    const ZoCInventoryItem* const node = unit.getItem(NETWORK / ION[serialNumber & serialNumberMask]);
    return node != nullptr ? *node : unit;
}

}  // namespace

ZoCInventoryItem* unitItemOf(ZoCInventoryItem& item, ZoCInventoryItem* inherited)
{
    if (hasParameter(item, product().unitName) || hasParameter(item, product().packageName)) {
        return &item;
    }
    const bool isHcn = isOfKind(item, HCN);
    if (!isHcn && !isOfKind(item, IOROUTER)) {
        return inherited;
    }
    const ZoCInventoryItem* const computeNode = isHcn ? firstSubItemOfKind(item, CN) : nullptr;
    ZoCInventoryItem* const backplane = firstSubItemOfKind(computeNode != nullptr ? *computeNode : item, BACKPLANE);
    return backplane != nullptr && hasParameter(*backplane, product().unitName) ? backplane : inherited;
}

void readUnit(ZoCErrorListPool& errors, const ZoCInventoryItem& unit, ZoSUpdateElementValues& element)
{
    if (!readIfPresent(errors, unit, product().unitName, element.unitProductName)) {
        readIfPresent(errors, unit, product().packageName, element.unitProductName);
    }
    const ZoCInventoryItem& namingItem = namingItemOf(errors, unit);
    readIfPresent(errors, namingItem, UNITNAME, element.unitName);
    readIfPresent(errors, namingItem, RACKNAME, element.rackName);
}

void copyUnit(const ZoSUpdateElementValues& from, ZoSUpdateElementValues& element)
{
    element.unitProductName = from.unitProductName;
    element.unitName = from.unitName;
    element.rackName = from.rackName;
}

}  // namespace ZoNUpdateInventory
