// The items of the simulated target's inventory trees.
#pragma once

#include <cstdint>
#include <memory>
#include <memory_resource>
#include <string>
#include <unordered_map>
#include <vector>

#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "libZoInventoryTree/ZoCInventoryItem.h"
#include "simulation/libZoInventoryTree/ParameterNames.h"
#include "simulation/libZoInventoryTree/ParameterValue.h"

class ZoCInventoryParameter {
public:
    const TrellanSimulation::ParameterName* name = nullptr;  // of the tree
    TrellanSimulation::ParameterValue value;
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

    // The names of the tree's parameters.
    ParameterNames& parameterNames() { return tree->names; }

    // Makes room for so many parameters.
    void reserveParameters(std::size_t count) { parameters.reserve(count); }

    // Appends a parameter. `name`, of this tree, must not be there yet.
    void addParameter(const ParameterName& name, ParameterValue value);

    // The same for a name that is written so ("PRODUCT/NAME"). Throws std::invalid_argument when no parameter can have
    // it.
    void addParameter(std::string_view name, ParameterValue value);

    // Gives the parameter at `address` another value; appends it when it is not there.
    void setParameter(const ZoCInventoryAddress& address, ParameterValue value);

    // Calls `visit` with this item and every item below it, in document order.
    template <class Visit>
    void forEach(Visit&& visit)
    {
        visit(*this);
        forEachBelow([&](TreeItem& item) { item.forEach(visit); });
    }

    // Calls `visit` with every item directly below this one, in document order.
    template <class Visit>
    void forEachBelow(Visit&& visit)
    {
        for (TreeItem* item = first; item != nullptr; item = item->next) {
            visit(*item);
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
    TreeItem(const ZoCInventoryAddress& id, TreeItem& parent);

    // What the items of a tree have in common.
    struct Tree {
        std::pmr::monotonic_buffer_resource memory;  // of all items but the root, and of their parameters
        ParameterNames names;
        std::shared_ptr<const ValueFaults> faults;
        bool handedOut = false;
        std::size_t lastFound = 0;  // position of the parameter that was found last
    };

    bool hasId(const ZoCInventoryAddress& address) const;
    TreeItem* findItem(const ZoCInventoryAddress& id) const;
    std::size_t findParameter(const ZoCInventoryAddress& address) const;
    bool addFaults(ZoCErrorListPool& errors, const ZoCInventoryAddress& parameter) const;
    template <class T>
    void read(ZoCErrorListPool& errors, const ZoCInventoryAddress& address, T& value) const;

    using ItemsById = std::unordered_map<std::uint64_t, TreeItem*>;

    std::unique_ptr<Tree> ownTree;  // of the root item
    Tree* tree;
    const ZoCInventoryAddress::Category category;
    const unsigned index;
    TreeItem* parent = nullptr;
    TreeItem* next = nullptr;
    TreeItem* first = nullptr;  // of those below
    TreeItem* last = nullptr;
    std::size_t count = 0;
    mutable std::unique_ptr<ItemsById> itemsById;  // made where many are searched
    std::pmr::vector<ZoCInventoryParameter> parameters;
};

}  // namespace TrellanSimulation
