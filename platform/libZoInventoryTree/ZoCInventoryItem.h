// ZoCInventoryItem: one item of an inventory tree.
//
// A tree belongs to whoever received its root item; the items below it belong to their parent. Pointers to items are
// valid as long as the tree is. Nothing here changes the tree.
#pragma once

#include "libZoComposite/ZoCString.h"
#include "libZoCompositeFactory/ZoCVersion.h"
#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "libZoInventoryTree/ZoCInventoryAddress.h"

class ZoCInventoryParameter;

class ZoCInventoryItem {
public:
    // Releases the item with everything below it. Only for a root item that the caller owns.
    virtual ~ZoCInventoryItem() = default;
    ZoCInventoryItem(const ZoCInventoryItem&) = delete;
    ZoCInventoryItem& operator=(const ZoCInventoryItem&) = delete;

    // The item's own element, with its index.
    virtual ZoCInventoryAddress getID() const = 0;

    // The path from the root item to this one, both included.
    virtual ZoCInventoryAddress getAddress() const = 0;

    // The item above; null for the root item.
    virtual ZoCInventoryItem* getParent() const = 0;

    // The first item below this one, and the next item below the same parent; null when there is none.
    virtual ZoCInventoryItem* getFirstSubItem() const = 0;
    virtual ZoCInventoryItem* getNext() const = 0;

    // The item at `address`, relative to this one; null when there is none.
    virtual ZoCInventoryItem* getItem(const ZoCInventoryAddress& address) const = 0;

    // The parameter at `address`, relative to this item; null when the item does not have it. Only good for a presence
    // test: its value is read with getValue.
    virtual const ZoCInventoryParameter* getParameter(const ZoCInventoryAddress& address) const = 0;

    // The value of the parameter at `address`, as T: ZoCString, unsigned int, unsigned char or ZoCVersion. A missing
    // parameter and a value that T cannot hold add an error to `errors` and give T's default value. A version text that
    // does not parse gives the empty version without an error.
    template <class T>
    T getValue(ZoCErrorListPool& errors, const ZoCInventoryAddress& address) const
    {
        T value{};
        readValue(errors, address, value);
        return value;
    }

protected:
    ZoCInventoryItem() = default;

    virtual void readValue(ZoCErrorListPool& errors, const ZoCInventoryAddress& address, ZoCString& value) const = 0;
    virtual void readValue(ZoCErrorListPool& errors, const ZoCInventoryAddress& address, unsigned int& value) const = 0;
    virtual void readValue(ZoCErrorListPool& errors, const ZoCInventoryAddress& address,
                           unsigned char& value) const = 0;
    virtual void readValue(ZoCErrorListPool& errors, const ZoCInventoryAddress& address, ZoCVersion& value) const = 0;
};
