#include "inventory/ElementReader.h"

#include "inventory/OptionalValue.h"
#include "inventory/ProductAddresses.h"
#include "inventory/SubItems.h"

using namespace ZoNInventoryIDs;

namespace ZoNUpdateInventory {

void readBoard(ZoCErrorListPool& errors, const ZoCInventoryItem& board, ZoSUpdateElementValues& element)
{
    element.boardAddress = board.getAddress();
    readIfPresent(errors, board, product().boardType, element.boardType);
    readIfPresent(errors, board, product().variant, element.variant);
    readIfPresent(errors, board, product().id, element.productId);
    readIfPresent(errors, board, product().serialNumber, element.serialNumber);
    readIfPresent(errors, board, product().slotCount, element.slotCount);
    if (element.slotCount != 0) {
        readIfPresent(errors, board, SLOT, element.slot);
    }
    if (!readIfPresent(errors, board, product().name, element.boardName)) {
        element.boardName = element.boardType;
    }
    if (!element.variant.isEmpty()) {
        element.boardName += " (";
        element.boardName += element.variant;
        element.boardName += ")";
    }
}

void copyBoard(const ZoSUpdateElementValues& from, ZoSUpdateElementValues& element)
{
    element.boardAddress = from.boardAddress;
    element.boardType = from.boardType;
    element.variant = from.variant;
    element.productId = from.productId;
    element.serialNumber = from.serialNumber;
    element.slotCount = from.slotCount;
    element.slot = from.slot;
    element.boardName = from.boardName;
}

void readElement(ZoCErrorListPool& errors, const ZoCInventoryItem& item, ZoSUpdateElementValues& element)
{
    element.isFileSystemElement = isOfKind(item, FILESYSTEM_ELEMENT);
    element.address = item.getAddress();
    readIfPresent(errors, item, ID, element.id);
    readIfPresent(errors, item, LOCATION, element.location);
    readIfPresent(errors, item, HW_COMPATIBILITY_ID, element.hwCompatibilityId);
    readIfPresent(errors, item, SW_COMPATIBILITY_ID, element.swCompatibilityId);
    readIfPresent(errors, item, TYPE_ID, element.typeId);
    element.custom = readByte(errors, item, CUSTOM);
    element.valid = readByte(errors, item, VALID) == 1;
    element.active = readByte(errors, item, ACTIVE) == 1;
    element.hasChecksum = readIfPresent(errors, item, CHECKSUM_CRC32, element.checksumCrc32);
    readIfPresent(errors, item, VERSION, element.version);
    readIfPresent(errors, item, NAME, element.name);
    if (element.name.isEmpty()) {
        element.name = "Update Element";
    }
    readIfPresent(errors, item, VERSION_HISTORY, element.versionHistory);
}

}  // namespace ZoNUpdateInventory
