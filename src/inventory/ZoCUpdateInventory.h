// ZoCUpdateInventory: the target's update elements.
//
// Scans the target's inventory tree, keeps a record for each update element that passes the options' filters, and finds
// out whether the target can reboot by itself. The tree lives only while it is searched.
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "ZoITrellanUpdater.h"
#include "inventory/ZoSUpdateElement.h"
#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "libZoInventoryTree/ZoCInventoryItem.h"

class ZoCTrellanUpdater;

class ZoCUpdateInventory {
public:
    using ElementList = std::list<ZoNUpdateInventory::ZoSUpdateElement>;

    // Keeps both references; they must outlive the inventory.
    ZoCUpdateInventory(const ZoCTrellanUpdater& updater, const ZoNTrellanUpdater::ZoTOptions& options);
    ~ZoCUpdateInventory();
    ZoCUpdateInventory(const ZoCUpdateInventory&) = delete;
    ZoCUpdateInventory& operator=(const ZoCUpdateInventory&) = delete;

    // Scans the target and fills the element list anew. Returns 1 on success; 0 when the scan failed, with the list as
    // it was before.
    int getInventory(ZoCErrorListPool& errors);

    // Adds the update elements of `item` and everything below it to the list, each behind those of its unit, and
    // numbers all elements; `unitItem` is the unit that `item` sits in. `reset` starts a new search with an empty list.
    // Misplaced elements are warned of and left out; read errors go to `errors` and stop nothing.
    void searchUpdateElements(ZoCErrorListPool& errors, ZoCInventoryItem* item, ZoCInventoryItem* unitItem, bool reset);

    // Makes the label and the short kind of an element from its name and its board.
    static void generateDisplayString(const ZoCString& boardName, const ZoCString& boardType, unsigned int serialNumber,
                                      const ZoCString& name, ZoCString& displayType, ZoCString& displayName);

    // Makes the record from which elements for files that are not on the target yet are made. There is none in
    // configuration runs, on a target with neither an HCN nor a CN, without any element, and when the first element's
    // board is not one of these nodes.
    void initFileSystemElementTemplate();

    // A board's serial number as its elements' labels show it, such as "16(1)": below the highest byte, and in brackets
    // that byte unless it is 0. Empty for 0.
    static ZoCString displayedSerialNumber(unsigned int serialNumber);

    // True when `item` is one of the names in `list`, separated by commas and/or blanks. The empty name is in every
    // list.
    static bool stringListContains(const std::string& list, const std::string& item);

    // Sets the reboot-support state from the tree's first top-level board. Keeps it when that board has no active
    // firmware.
    void determineRebootSupport(ZoCErrorListPool& errors, ZoCInventoryItem* tree);

    // Prints the installed versions, with `verbose` in a table for each run of elements with the same unit title.
    void printVersions() const;

    // The elements that the search has found, those of a unit next to each other, and behind them those that the
    // assignment has appended for files. Records never move.
    ElementList& getUpdateElementList() { return updateElements; }
    const ElementList& getUpdateElementList() const { return updateElements; }

    // The element with this index; null when there is none.
    ZoNUpdateInventory::ZoSUpdateElement* findElement(std::uint32_t index);
    const ZoNUpdateInventory::ZoSUpdateElement* findElement(std::uint32_t index) const;

    // Puts a new record at the end of the list, numbered like the others.
    ZoNUpdateInventory::ZoSUpdateElement& appendElement();

    // The locations of the files on the flash drive whose elements the search has left out, for whatever reason.
    const std::vector<ZoCString>& getLeftOutLocations() const { return leftOutLocations; }

    // Null when there is none. Owned by the inventory.
    const ZoNUpdateInventory::ZoSUpdateElement* getFileSystemElementTemplate() const
    {
        return fileSystemElementTemplate.get();
    }

    // Give the address of the first HCN or CN; false, and `address` as it was, when there is none.
    bool getHcnAddress(ZoCInventoryAddress& address) const;
    bool getCnAddress(ZoCInventoryAddress& address) const;

    // 0 supported; 1 not determined; 2 not supported by the firmware, 3 by the device; 4 an error occurred.
    std::uint32_t getRebootSupportState() const { return rebootSupportState; }

private:
    void numberElements();
    void noteUnits();
    void search(ZoCErrorListPool& errors, ZoCInventoryItem* item, ZoCInventoryItem* unitItem);
    void noteProcessingNodes(const ZoCInventoryItem& item);
    bool takeUpdateElement(ZoCErrorListPool& errors, const ZoCInventoryItem& item, ZoCInventoryItem* unitItem);
    void noteLeftOut(const ZoCInventoryItem& item);
    bool isPlacedWell(const ZoCInventoryItem& item) const;
    bool passesFilters(ZoCErrorListPool& errors, const ZoCInventoryItem& item, const ZoCInventoryItem& board) const;
    void readBoardOnce(ZoCErrorListPool& errors, const ZoCInventoryItem& board,
                       ZoNUpdateInventory::ZoSUpdateElement& element);
    void readUnitOnce(ZoCErrorListPool& errors, const ZoCInventoryItem& unit,
                      ZoNUpdateInventory::ZoSUpdateElement& element);
    ZoNUpdateInventory::ZoSUpdateElement& insertElement(ZoCInventoryItem* unitItem);
    std::uint32_t rebootSupportOf(ZoCErrorListPool& errors, ZoCInventoryItem* tree) const;

    const ZoCTrellanUpdater& updater;
    const ZoNTrellanUpdater::ZoTOptions& options;
    ElementList updateElements;
    std::vector<ZoCString> leftOutLocations;
    std::vector<ZoNUpdateInventory::ZoSUpdateElement*> elementsByIndex;
    std::unique_ptr<ZoNUpdateInventory::ZoSUpdateElement> fileSystemElementTemplate;
    ZoCInventoryAddress hcnAddress;
    bool hcnFound = false;
    ZoCInventoryAddress cnAddress;
    bool cnFound = false;
    std::uint32_t rebootSupportState = 1;

    // During a search, the board and the unit that were read last without an error, and the elements that they were
    // read for.
    const ZoCInventoryItem* lastBoard = nullptr;
    const ZoNUpdateInventory::ZoSUpdateElement* elementOfLastBoard = nullptr;
    const ZoCInventoryItem* lastUnit = nullptr;
    const ZoNUpdateInventory::ZoSUpdateElement* elementOfLastUnit = nullptr;

    // During a search, for each unit the last element of the first run of its elements: behind it the unit's next
    // element goes, without a walk through the list.
    std::unordered_map<const ZoCInventoryItem*, ElementList::iterator> lastElementOfUnit;
};
