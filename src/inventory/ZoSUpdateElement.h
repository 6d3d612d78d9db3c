// ZoSUpdateElement: one updatable element of the target.
//
// Filled once by the search; the assignment and the operation write their own fields into the same record. Records stay
// where they are for as long as they live, so others may keep pointers to them.
#pragma once

#include <cstdint>
#include <string>

#include "base/ErrorListHandle.h"
#include "libZoComposite/ZoCString.h"
#include "libZoCompositeFactory/ZoCVersion.h"
#include "libZoInventoryTree/ZoCInventoryAddress.h"

class ZoCInventoryItem;

namespace ZoNUpdateInventory {

// States of an element's update.
enum UpdateState : std::uint32_t {
    NOTHING_TO_DO = 0,
    PENDING = 1,
    RUNNING = 2,
    FAILED = 3,
    CANCELLED = 4,
    FINISHED = 5
};

// Everything of an element that can be copied: all but its error lists, and what the host and the operation alone
// write.
//
// What the assignment reads and writes of each element comes first and lies close together: of many elements it takes
// longer to fetch than to work on.
struct ZoSUpdateElementValues {
    std::int32_t updateFileIndex = -1;  // written by the assignment; -1: no file
    std::uint32_t id = 0;               // with boardAddress, names the element in calls of the inventory manager
    bool isFileSystemElement = false;
    bool configuration = true;
    bool valid = false;
    bool active = false;
    bool hasChecksum = false;

    // Written by the assignment.
    bool notRequired = false;   // the installed content already equals the file
    bool disabled = false;      // left out of the update; also set by the search and by the host
    bool isUpToDate = false;    // the update is not required, and not forced
    bool blocksUpdate = false;  // without a file for it, nothing of the target is updated

    std::uint32_t checksumCrc32 = 0;  // of the installed content, as the target reports it
    ZoCVersion version;
    std::uint32_t productId = 0;  // the board's
    std::uint32_t hwCompatibilityId = 0;
    std::uint32_t swCompatibilityId = 0;
    std::uint32_t phase = 0;  // written by the assignment
    ZoCString boardType;
    ZoCString variant;   // the board's
    ZoCString location;  // of a file-system element: path on the flash drive; "*": any

    ZoCInventoryItem* unitItem = nullptr;  // not owned; only a key for grouping once the search is over

    // The board that carries the element.
    ZoCInventoryAddress boardAddress;  // names the board in calls of the inventory manager
    std::uint32_t serialNumber = 0;
    std::uint32_t slot = 0;
    std::uint32_t slotCount = 0;
    ZoCString boardName;

    // The unit (box or rack) that the board sits in.
    ZoCString unitProductName;
    ZoCString unitName;
    ZoCString rackName;

    // The element itself.
    std::uint32_t index = 0;  // position in the list, by which the host names it; given when a search has ended
    std::uint32_t typeId = 0;
    std::uint32_t custom = 0;  // nonzero: the customer's own element
    ZoCInventoryAddress address;
    ZoCString name;
    ZoCString versionHistory;
    ZoCString displayName;  // label in every list and message
    ZoCString displayType;  // short kind for tables

    // True when the target's checksum tells the installed content; 0 does not.
    bool isChecksumKnown() const { return hasChecksum && checksumCrc32 != 0; }

    // Written by the operation.
    std::uint32_t updateState = NOTHING_TO_DO;
    std::uint32_t statusErrorCount = 0;  // consecutive status polls that added errors
};

struct ZoSUpdateElement : ZoSUpdateElementValues {
    // Gives the element two new, empty error lists.
    void createErrorLists()
    {
        statusErrorList = ZoNUpdateBase::makeErrorList();
        resultErrorList = ZoNUpdateBase::makeErrorList();
    }

    // True when the element's update has finished without any error.
    bool hasSucceeded() const
    {
        return updateState == FINISHED && statusErrorList->getErrorCount() == 0 &&
               resultErrorList->getErrorCount() == 0;
    }

    ZoNUpdateBase::ErrorListHandle statusErrorList;  // errors of starting, of polling, and of asking for the result
    ZoNUpdateBase::ErrorListHandle resultErrorList;  // errors reported by the finished update

    bool isListed = true;     // the target lists it; false: the assignment has made it for a file that is not there yet
    bool isExcluded = false;  // left out of the update by the host

    // Written by the operation, for the latest update.
    bool fileWasMissing = false;  // so it was not begun
    std::string writeError;       // why its file on the flash drive was not written, as a message; empty: no such error
};

}  // namespace ZoNUpdateInventory
