// Walking the items directly below an inventory item.
#pragma once

#include "libZoInventoryTree/ZoCInventoryItem.h"

namespace ZoNUpdateInventory {

// The items below `parent`, in order, for a range-based for.
class SubItems {
public:
    class Iterator {
    public:
        explicit Iterator(ZoCInventoryItem* item) : item(item) {}
        ZoCInventoryItem& operator*() const { return *item; }
        Iterator& operator++()
        {
            item = item->getNext();
            return *this;
        }
        bool operator!=(const Iterator& other) const { return item != other.item; }

    private:
        ZoCInventoryItem* item;
    };

    explicit SubItems(const ZoCInventoryItem& parent) : parent(parent) {}
    Iterator begin() const { return Iterator(parent.getFirstSubItem()); }
    Iterator end() const { return Iterator(nullptr); }

private:
    const ZoCInventoryItem& parent;
};

inline bool isOfKind(const ZoCInventoryItem& item, const ZoCInventoryAddress& kind)
{
    return item.getID().getCategory() == kind.getCategory();
}

// The first item of that kind below `parent`; null when there is none.
inline ZoCInventoryItem* firstSubItemOfKind(const ZoCInventoryItem& parent, const ZoCInventoryAddress& kind)
{
    for (ZoCInventoryItem& item : SubItems(parent)) {
        if (isOfKind(item, kind)) {
            return &item;
        }
    }
    return nullptr;
}

}  // namespace ZoNUpdateInventory
