// The search for update elements in the scanned inventory tree.
#include <iterator>

#include "base/PlatformText.h"
#include "inventory/ElementReader.h"
#include "inventory/ProductAddresses.h"
#include "inventory/SearchedKinds.h"
#include "inventory/SubItems.h"
#include "inventory/UnitItem.h"
#include "inventory/ZoCUpdateInventory.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;
using namespace ZoNInventoryIDs;
using namespace ZoNUpdateInventory;

namespace {

std::string stringValue(ZoCErrorListPool& errors, const ZoCInventoryItem& item, const ZoCInventoryAddress& address)
{
    return textBeforeNul(item.getValue<ZoCString>(errors, address));
}

}  // namespace

void ZoCUpdateInventory::searchUpdateElements(ZoCErrorListPool& errors, ZoCInventoryItem* item,
                                              ZoCInventoryItem* unitItem, bool reset)
{
    if (reset) {
        elementsByIndex.clear();
        updateElements.clear();
        leftOutLocations.clear();
        hcnAddress = ZoCInventoryAddress();
        hcnFound = false;
        cnAddress = ZoCInventoryAddress();
        cnFound = false;
    }
    noteUnits();
    lastBoard = nullptr;
    lastUnit = nullptr;
    search(errors, item, unitItem);
    numberElements();
}

void ZoCUpdateInventory::numberElements()
{
    elementsByIndex.clear();
    for (ZoSUpdateElement& element : updateElements) {
        element.index = static_cast<std::uint32_t>(elementsByIndex.size());
        elementsByIndex.push_back(&element);
    }
}

ZoSUpdateElement* ZoCUpdateInventory::findElement(std::uint32_t index)
{
    return index < elementsByIndex.size() ? elementsByIndex[index] : nullptr;
}

const ZoSUpdateElement* ZoCUpdateInventory::findElement(std::uint32_t index) const
{
    return index < elementsByIndex.size() ? elementsByIndex[index] : nullptr;
}

// The assignment too has put elements into the list, so what an earlier search noted may no longer hold.
void ZoCUpdateInventory::noteUnits()
{
    lastElementOfUnit.clear();
    for (auto element = updateElements.begin(); element != updateElements.end(); ++element) {
        const auto [entry, isNewUnit] = lastElementOfUnit.try_emplace(element->unitItem, element);
        if (!isNewUnit && std::next(entry->second) == element) {
            entry->second = element;
        }
    }
}

void ZoCUpdateInventory::search(ZoCErrorListPool& errors, ZoCInventoryItem* item, ZoCInventoryItem* inheritedUnit)
{
    if (item == nullptr) {
        return;
    }
    noteProcessingNodes(*item);
    ZoCInventoryItem* const unitItem = unitItemOf(*item, inheritedUnit);
    if (isUpdateElement(*item) && !takeUpdateElement(errors, *item, unitItem)) {
        noteLeftOut(*item);
    }
    if (!mayHoldElements(*item)) {
        return;
    }
    ZoCInventoryItem* const updateInfo = item->getItem(UPDATE_INFO);
    search(errors, updateInfo, unitItem);  // a board's own elements come before those of its modules
    for (ZoCInventoryItem& subItem : SubItems(*item)) {
        if (&subItem != updateInfo) {
            search(errors, &subItem, unitItem);
        }
    }
}

void ZoCUpdateInventory::noteProcessingNodes(const ZoCInventoryItem& item)
{
    if (!hcnFound && isOfKind(item, HCN)) {
        hcnAddress = item.getAddress();
        hcnFound = true;
        if (options.verbose) {
            updater.print("HCN found: %s\n", hcnAddress.toString().c_str());
        }
    }
    if (!cnFound && isOfKind(item, CN)) {
        cnAddress = item.getAddress();
        cnFound = true;
        if (options.verbose) {
            updater.print("CN found: %s\n", cnAddress.toString().c_str());
        }
    }
}

// False when the element is left out.
bool ZoCUpdateInventory::takeUpdateElement(ZoCErrorListPool& errors, const ZoCInventoryItem& item,
                                           ZoCInventoryItem* unitItem)
{
    if (!isPlacedWell(item)) {
        return false;
    }
    const ZoCInventoryItem& board = *item.getParent()->getParent();
    const bool configuration = item.getValue<unsigned int>(errors, CONFIGURATION) != 0;
    if (configuration != options.configuration || !passesFilters(errors, item, board)) {
        return false;
    }
    ZoSUpdateElement& element = insertElement(unitItem);
    element.unitItem = unitItem;
    readBoardOnce(errors, board, element);
    if (unitItem != nullptr) {
        readUnitOnce(errors, *unitItem, element);
    }
    readElement(errors, item, element);
    element.configuration = configuration;
    generateDisplayString(element.boardName, element.boardType, element.serialNumber, element.name, element.displayType,
                          element.displayName);
    element.disabled = element.custom != 0 && options.disableCustomElements;
    element.createErrorLists();
    return true;
}

// What is wrong with a board is told for each of its elements.
void ZoCUpdateInventory::readBoardOnce(ZoCErrorListPool& errors, const ZoCInventoryItem& board,
                                       ZoSUpdateElement& element)
{
    if (&board == lastBoard) {
        copyBoard(*elementOfLastBoard, element);
        return;
    }
    const unsigned errorsBefore = errors.getErrorCount();
    readBoard(errors, board, element);
    lastBoard = errors.getErrorCount() == errorsBefore ? &board : nullptr;
    elementOfLastBoard = &element;
}

// So is what is wrong with a unit.
void ZoCUpdateInventory::readUnitOnce(ZoCErrorListPool& errors, const ZoCInventoryItem& unit, ZoSUpdateElement& element)
{
    if (&unit == lastUnit) {
        copyUnit(*elementOfLastUnit, element);
        return;
    }
    const unsigned errorsBefore = errors.getErrorCount();
    readUnit(errors, unit, element);
    lastUnit = errors.getErrorCount() == errorsBefore ? &unit : nullptr;
    elementOfLastUnit = &element;
}

// What is wrong with an element that nobody has asked for is not told.
void ZoCUpdateInventory::noteLeftOut(const ZoCInventoryItem& item)
{
    if (isOfKind(item, FILESYSTEM_ELEMENT) && item.getParameter(LOCATION) != nullptr) {
        const ErrorListHandle untold = makeErrorList();
        leftOutLocations.push_back(item.getValue<ZoCString>(*untold, LOCATION));
    }
}

bool ZoCUpdateInventory::isPlacedWell(const ZoCInventoryItem& item) const
{
    const ZoCInventoryItem* const parent = item.getParent();
    if (parent == nullptr || parent->getID() != UPDATE_INFO) {
        updater.print("WARNING: %s has no UPDATE_INFO parent item!\n", item.getAddress().toString().c_str());
        return false;
    }
    if (parent->getParent() == nullptr) {
        updater.print("WARNING: %s has no parent item!\n", parent->getAddress().toString().c_str());
        return false;
    }
    if (item.getParameter(CONFIGURATION) == nullptr) {
        updater.print("WARNING: %s has no CONFIGURATION parameter!\n", item.getAddress().toString().c_str());
        return false;
    }
    return true;
}

bool ZoCUpdateInventory::passesFilters(ZoCErrorListPool& errors, const ZoCInventoryItem& item,
                                       const ZoCInventoryItem& board) const
{
    if (!options.elementNames.empty() && !stringListContains(options.elementNames, stringValue(errors, item, NAME))) {
        return false;
    }
    if (!options.boardTypes.empty() &&
        !stringListContains(options.boardTypes, stringValue(errors, board, product().boardType))) {
        return false;
    }
    if (!options.serialNumbers.empty()) {
        const unsigned serialNumber = board.getValue<unsigned int>(errors, product().serialNumber);
        return stringListContains(options.serialNumbers, std::to_string(serialNumber));
    }
    return true;
}

ZoSUpdateElement& ZoCUpdateInventory::appendElement()
{
    ZoSUpdateElement& element = updateElements.emplace_back();
    element.index = static_cast<std::uint32_t>(updateElements.size() - 1);
    elementsByIndex.push_back(&element);
    return element;
}

// Makes a new record behind the first run of its unit's records, or at the end of the list.
ZoSUpdateElement& ZoCUpdateInventory::insertElement(ZoCInventoryItem* unitItem)
{
    const auto [entry, isNewUnit] = lastElementOfUnit.try_emplace(unitItem, updateElements.end());
    const auto position = isNewUnit ? updateElements.end() : std::next(entry->second);
    entry->second = updateElements.emplace(position);
    return *entry->second;
}
