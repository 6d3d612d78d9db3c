// InventoryRecord: what the library can see of the target's inventory, written down.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "libZoInventoryTree/ZoCInventoryItem.h"

namespace ZoNUpdateInventory {

// A parameter of an item: a text, or else a number. A version is recorded by its text.
struct RecordedParameter {
    const char* address;  // such as "PRODUCT/BOARD_TYPE"
    bool isText;
    std::string text;
    std::uint32_t number;
};

struct RecordedItem {
    unsigned level;  // 0 for the root item; an item belongs to the last one before it that is a level higher
    std::string id;  // kind and index, such as "UPDATE_ELEMENT[2]"
    std::uint32_t parameterCount;
};

// What is left out, since it cannot be read.
struct RecordOmission {
    std::string item;       // its address
    std::string parameter;  // its address; empty: the item itself, with what is below it
    std::string reason;     // what the platform says of it
};

// The items that the search for elements sees, in the order of the tree, with the parameters that it could ever read of
// them. No filter is heeded. A tree made of the record is seen as the one recorded.
class InventoryRecord {
public:
    // An empty record.
    InventoryRecord() = default;

    // Records the tree of this root item.
    explicit InventoryRecord(const ZoCInventoryItem& root);

    std::size_t itemCount() const { return items.size(); }

    // The item at this position, and one of its parameters. Both throw std::out_of_range.
    RecordedItem item(std::size_t position) const;
    const RecordedParameter& parameter(std::size_t itemPosition, std::size_t position) const;

    const std::vector<RecordOmission>& omissions() const { return omitted; }

private:
    // A tree may have millions of items, most of them without parameters.
    struct Item {
        unsigned level;
        ZoCInventoryAddress::Category kind;
        unsigned index;
    };
    struct ItemParameter {
        std::size_t item;
        RecordedParameter parameter;
    };

    void record(const ZoCInventoryItem& item, unsigned level);
    void leaveOut(const ZoCInventoryItem& item, const std::string& parameter, const std::string& reason);
    void recordParameters(const ZoCInventoryItem& item);
    bool hasParameter(std::size_t item, std::size_t position) const;
    std::size_t firstParameter(std::size_t item) const;

    std::deque<Item> items;
    std::deque<ItemParameter> parameters;                         // in the order of the items
    mutable std::size_t lateItem = static_cast<std::size_t>(-1);  // that was asked for last, and its first parameter
    mutable std::size_t lateFirst = 0;
    std::vector<RecordOmission> omitted;
};

}  // namespace ZoNUpdateInventory
