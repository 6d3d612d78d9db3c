// The items of the simulated target's inventory trees.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <variant>
#include <vector>

#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "libZoInventoryTree/ZoCInventoryItem.h"

// A parameter's value: text, an unsigned number, or a number of another kind (negative, fractional, beyond 64 bits).
class ZoCInventoryParameter {
public:
    struct OtherNumber {};
    using Value = std::variant<std::string, std::uint64_t, OtherNumber>;

    std::string name;  // its address as text, "PRODUCT/NAME"
    Value value;
};

namespace TrellanSimulation {

// Errors that reading a value adds, by "ITEM:PARAMETER" ("/ROOT/HCN:PRODUCT/NAME"). The value then reads as the
// default.
using ValueFaults = std::unordered_map<std::string, std::vector<ZoSErrorRecord>>;

class TreeItem final : public ZoCInventoryItem {
public:
    // An item without parent.
    explicit TreeItem(const ZoCInventoryAddress& id);
    ~TreeItem() override;

    // Appends an item with the identity `id` below this one, which owns it.
    TreeItem& addItem(const ZoCInventoryAddress& id);

    // Appends a parameter. `name` must not be there yet.
    void addParameter(std::string name, ZoCInventoryParameter::Value value);

    // Gives the parameter at `address` another value; appends it when it is not there.
    void setParameter(const ZoCInventoryAddress& address, ZoCInventoryParameter::Value value);

    // Calls `visit` with this item and every item below it, in document order.
    template <class Visit>
    void forEach(Visit&& visit)
    {
        visit(*this);
        for (const auto& item : items) {
            item->forEach(visit);
        }
    }

    // Gives the tree of this root item the faults of its values; null: none.
    void setFaults(std::shared_ptr<const ValueFaults> faults);

    // Passes `root` with everything below it to a caller of the platform, and counts it among the trees handed out
    // until it is deleted.
    static ZoCInventoryItem* handOut(std::unique_ptr<TreeItem> root);

    ZoCInventoryAddress getID() const override;
    ZoCInventoryAddress getAddress() const override;
    ZoCInventoryItem* getParent() const override;
    ZoCInventoryItem* getFirstSubItem() const override;
    ZoCInventoryItem* getNext() const override;

    // Of several items with the same identity the first one; null for the empty address.
    ZoCInventoryItem* getItem(const ZoCInventoryAddress& address) const override;

    const ZoCInventoryParameter* getParameter(const ZoCInventoryAddress& address) const override;

protected:
    void readValue(ZoCErrorListPool& errors, const ZoCInventoryAddress& address, ZoCString& value) const override;
    void readValue(ZoCErrorListPool& errors, const ZoCInventoryAddress& address, unsigned int& value) const override;
    void readValue(ZoCErrorListPool& errors, const ZoCInventoryAddress& address, unsigned char& value) const override;
    void readValue(ZoCErrorListPool& errors, const ZoCInventoryAddress& address, ZoCVersion& value) const override;

private:
    const TreeItem& root() const;
    bool addFaults(ZoCErrorListPool& errors, const std::string& parameter) const;
    template <class T>
    void read(ZoCErrorListPool& errors, const ZoCInventoryAddress& address, T& value) const;

    ZoCInventoryAddress id;
    TreeItem* parent = nullptr;
    TreeItem* next = nullptr;
    std::vector<std::unique_ptr<TreeItem>> items;
    std::unordered_map<std::string, TreeItem*> itemsById;  // by the text of the identity
    std::vector<ZoCInventoryParameter> parameters;
    std::shared_ptr<const ValueFaults> faults;  // of the root item
    bool handedOut = false;
};

}  // namespace TrellanSimulation
