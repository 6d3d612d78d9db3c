// A walk over the items that the search sees, by a table of the parameters that are read of each.
#include "inventory/InventoryRecord.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "base/ErrorListHandle.h"
#include "base/PlatformText.h"
#include "inventory/ProductAddresses.h"
#include "inventory/SearchedKinds.h"
#include "inventory/SubItems.h"

using namespace ZoNInventoryIDs;
using namespace ZoNUpdateBase;

namespace ZoNUpdateInventory {
namespace {

// Whose parameter it is.
enum Owner : unsigned { UNIT = 1, BOARD = 2, ELEMENT = 4 };

template <class T>
void take(RecordedParameter& parameter, const T& value)
{
    parameter.isText = false;
    parameter.number = value;
}

void take(RecordedParameter& parameter, const ZoCString& value)
{
    parameter.isText = true;
    parameter.text = allText(value);
}

void take(RecordedParameter& parameter, const ZoCVersion& value)
{
    take(parameter, value.getAsString());
}

template <class T>
void read(ZoCErrorListPool& errors, const ZoCInventoryItem& item, const ZoCInventoryAddress& address,
          RecordedParameter& parameter)
{
    take(parameter, item.getValue<T>(errors, address));
}

struct KnownParameter {
    KnownParameter(const ZoCInventoryAddress& address, Owner owner, decltype(read<ZoCString>)* readAs)
        : address(address), text(allText(address.toString()).substr(1)), owner(owner), readAs(readAs)
    {
    }

    const ZoCInventoryAddress& address;
    const std::string text;
    const Owner owner;
    decltype(read<ZoCString>)* const readAs;
};

const std::vector<KnownParameter>& knownParameters()
{
    using Text = ZoCString;
    using Number = unsigned int;
    using Byte = unsigned char;
    using Version = ZoCVersion;
    static const std::vector<KnownParameter> table{
        {product().boardType, BOARD, read<Text>},
        {product().variant, BOARD, read<Text>},
        {product().id, BOARD, read<Number>},
        {product().serialNumber, BOARD, read<Number>},
        {product().slotCount, BOARD, read<Number>},
        {product().name, BOARD, read<Text>},
        {SLOT, BOARD, read<Number>},
        {product().unitName, UNIT, read<Text>},
        {product().packageName, UNIT, read<Text>},
        {UNITNAME, UNIT, read<Text>},
        {RACKNAME, UNIT, read<Text>},
        {ID, ELEMENT, read<Number>},
        {NAME, ELEMENT, read<Text>},
        {LOCATION, ELEMENT, read<Text>},
        {VERSION, ELEMENT, read<Version>},
        {VERSION_HISTORY, ELEMENT, read<Text>},
        {CHECKSUM_CRC32, ELEMENT, read<Number>},
        {HW_COMPATIBILITY_ID, ELEMENT, read<Number>},
        {SW_COMPATIBILITY_ID, ELEMENT, read<Number>},
        {TYPE_ID, ELEMENT, read<Number>},
        {CONFIGURATION, ELEMENT, read<Number>},
        {CUSTOM, ELEMENT, read<Byte>},
        {VALID, ELEMENT, read<Byte>},
        {ACTIVE, ELEMENT, read<Byte>},
    };
    return table;
}

bool isInUpdateInfo(const ZoCInventoryItem& item)
{
    const ZoCInventoryItem* const parent = item.getParent();
    return parent != nullptr && isOfKind(*parent, UPDATE_INFO);
}

// What the item may be: the question for the reboot support reads all in an UPDATE_INFO as if it were an element, and
// any item may be a unit.
unsigned ownersIn(const ZoCInventoryItem& item)
{
    const bool isElement = isUpdateElement(item);
    unsigned owners = UNIT;
    if (!isElement) {
        owners |= BOARD;
    }
    if (isElement || isInUpdateInfo(item)) {
        owners |= ELEMENT;
    }
    return owners;
}

// Whether the item is seen, though nothing below it is and it is no element: the question for the reboot support looks
// at the first item below the root, and at all in an UPDATE_INFO.
bool isSeenByItsPlace(const ZoCInventoryItem& item)
{
    const ZoCInventoryItem* const parent = item.getParent();
    const bool isFirst = parent != nullptr && parent->getParent() == nullptr && parent->getFirstSubItem() == &item;
    return isFirst || isInUpdateInfo(item);
}

// The kinds that have names, but for those that the search knows.
bool hasName(const ZoCInventoryItem& item)
{
    static const std::array others{PRODUCT.getCategory(),
                                   FIRMWARE.getCategory(),
                                   BOARD_TYPE.getCategory(),
                                   VARIANT.getCategory(),
                                   SERIAL_NUMBER.getCategory(),
                                   SLOT.getCategory(),
                                   SLOT_COUNT.getCategory(),
                                   UNITNAME.getCategory(),
                                   PACKAGE_NAME.getCategory(),
                                   RACKNAME.getCategory(),
                                   ID.getCategory(),
                                   NAME.getCategory(),
                                   LOCATION.getCategory(),
                                   HW_COMPATIBILITY_ID.getCategory(),
                                   SW_COMPATIBILITY_ID.getCategory(),
                                   TYPE_ID.getCategory(),
                                   CUSTOM.getCategory(),
                                   CONFIGURATION.getCategory(),
                                   VALID.getCategory(),
                                   ACTIVE.getCategory(),
                                   CHECKSUM_CRC32.getCategory(),
                                   VERSION.getCategory(),
                                   VERSION_HISTORY.getCategory(),
                                   MIN_HW_COMPATIBILITY_ID.getCategory(),
                                   MAX_HW_COMPATIBILITY_ID.getCategory(),
                                   MIN_SW_COMPATIBILITY_ID.getCategory(),
                                   MAX_SW_COMPATIBILITY_ID.getCategory()};
    const auto kind = item.getID().getCategory();
    return mayHoldElements(item) || isUpdateElement(item) ||
           std::find(others.begin(), others.end(), kind) != others.end();
}

std::string textOfErrors(const ZoCErrorListPool& errors)
{
    std::string text;
    for (unsigned i = 0; i < errors.getErrorCount(); ++i) {
        text += i == 0 ? "" : "; ";
        text += errors.getErrorText(i);
    }
    return text;
}

}  // namespace

InventoryRecord::InventoryRecord(const ZoCInventoryItem& root)
{
    record(root, 0);
}

RecordedItem InventoryRecord::item(std::size_t position) const
{
    const Item& source = items.at(position);
    std::uint32_t count = 0;
    while (hasParameter(position, count)) {
        ++count;
    }
    return {source.level, allText(ZoCInventoryAddress(source.kind, source.index).toString()).substr(1), count};
}

const RecordedParameter& InventoryRecord::parameter(std::size_t itemPosition, std::size_t position) const
{
    if (!hasParameter(itemPosition, position)) {
        throw std::out_of_range("the item has no such parameter");
    }
    return parameters[firstParameter(itemPosition) + position].parameter;
}

bool InventoryRecord::hasParameter(std::size_t item, std::size_t position) const
{
    const std::size_t wanted = firstParameter(item) + position;
    return wanted < parameters.size() && parameters[wanted].item == item;
}

// That of this item, or of the next one that has any. Who asks for one parameter asks for all of the item.
std::size_t InventoryRecord::firstParameter(std::size_t item) const
{
    if (item != lateItem) {
        const auto found =
            std::lower_bound(parameters.begin(), parameters.end(), item,
                             [](const ItemParameter& other, std::size_t wanted) { return other.item < wanted; });
        lateItem = item;
        lateFirst = static_cast<std::size_t>(found - parameters.begin());
    }
    return lateFirst;
}

void InventoryRecord::record(const ZoCInventoryItem& item, unsigned level)
{
    const bool isSearched = mayHoldElements(item);
    if (level > 0 && !isSearched && !isUpdateElement(item) && !isSeenByItsPlace(item)) {
        return;
    }
    if (!hasName(item)) {
        leaveOut(item, "", "an item of a kind without a name");
        return;
    }
    items.push_back({level, item.getID().getCategory(), item.getID().getIndex()});
    recordParameters(item);
    if (isSearched || level == 0) {  // whatever the root item is, its first board is asked for the reboot support
        for (const ZoCInventoryItem& subItem : SubItems(item)) {
            record(subItem, level + 1);
        }
    }
}

// Like what follows not a part of the walk, on whose stack it would lie at every level.
[[gnu::noinline]] void InventoryRecord::leaveOut(const ZoCInventoryItem& item, const std::string& parameter,
                                                 const std::string& reason)
{
    omitted.push_back({allText(item.getAddress().toString()), parameter, reason});
}

[[gnu::noinline]] void InventoryRecord::recordParameters(const ZoCInventoryItem& item)
{
    const unsigned owners = ownersIn(item);
    const ErrorListHandle errors = makeErrorList();
    for (const KnownParameter& known : knownParameters()) {
        if ((owners & known.owner) == 0 || item.getParameter(known.address) == nullptr) {
            continue;
        }
        RecordedParameter parameter{known.text.c_str(), false, "", 0};
        known.readAs(*errors, item, known.address, parameter);
        if (errors->getErrorCount() == 0) {
            parameters.push_back({items.size() - 1, std::move(parameter)});
        } else {
            leaveOut(item, known.text, textOfErrors(*errors));
            errors->clear();
        }
    }
}

}  // namespace ZoNUpdateInventory
