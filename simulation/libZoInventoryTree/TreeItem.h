// The items of the simulated target's inventory trees.
#pragma once

#include <cstdint>
#include <memory>
#include <memory_resource>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "libZoInventoryTree/ZoCInventoryItem.h"
#include "simulation/libZoInventoryTree/Document.h"
#include "simulation/libZoInventoryTree/ParameterNames.h"
#include "simulation/libZoInventoryTree/ParameterValue.h"
#include "simulation/libZoInventoryTree/ValueFaults.h"

class ZoCInventoryParameter {
public:
    TrellanSimulation::ParameterValue value;
};

namespace TrellanSimulation {

class TreeItem final : public ZoCInventoryItem {
public:
    // An item without parent.
    explicit TreeItem(const ZoCInventoryAddress& id);

    // The same for a tree whose items have their parameters in the document that `source` is a part of. It stays as
    // long as the tree.
    TreeItem(const ZoCInventoryAddress& id, const Json& source);

    ~TreeItem() override;

    // Appends an item with the identity `id` below this one, which owns it.
    TreeItem& addItem(const ZoCInventoryAddress& id);

    // The names of the tree's parameters.
    ParameterNames& parameterNames() { return tree->names; }

    // Gives the item as its parameters the members of `parameters`, in the tree's document: texts and numbers whose
    // keys are all noted in parameterNames().
    void takeParameters(const Json& parameters) { documented = parameters; }

    // Gives the item a parameter, or another value in the place of the one that it has.
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
        for (TreeItem* item = firstBelow(); item != nullptr; item = item->nextBeside()) {
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

    static constexpr JsonBits noParameters = 0;

    using ItemsById = std::unordered_map<std::uint64_t, TreeItem*>;
    using LaterParameters = std::vector<std::pair<const ParameterName*, ZoCInventoryParameter>>;

    // What the items of a tree have in common, and what few of them have.
    struct Tree {
        std::pmr::monotonic_buffer_resource memory;  // of all items but the root
        JsonDocument document;
        ParameterNames names;
        std::shared_ptr<const ValueFaults> faults;
        std::unordered_set<const TreeItem*> searched;              // parents of many among whom an item was searched
        std::unordered_map<const TreeItem*, ItemsById> itemsById;  // of those that were searched again
        std::unordered_map<const TreeItem*, LaterParameters> later;
        bool handedOut = false;
    };

    TreeItem* firstBelow() const { return last == nullptr ? nullptr : last->next; }
    TreeItem* nextBeside() const { return parent == nullptr || parent->last == this ? nullptr : next; }
    bool hasId(const ZoCInventoryAddress& address) const;
    TreeItem* findItem(const ZoCInventoryAddress& id) const;
    TreeItem* findAmongMany(const ZoCInventoryAddress& id) const;
    const ZoCInventoryParameter* findByText(const ZoCInventoryAddress& address) const;
    bool addFaults(ZoCErrorListPool& errors, const ZoCInventoryAddress& parameter) const;
    template <class T>
    void read(ZoCErrorListPool& errors, const ZoCInventoryAddress& address, T& value) const;

    Tree* tree;  // owned by the root item
    const ZoCInventoryAddress::Category category;
    const unsigned index;
    TreeItem* parent = nullptr;
    TreeItem* next = nullptr;              // behind the last one comes the first one
    TreeItem* last = nullptr;              // of those below
    Json documented = Json(noParameters);  // the parameters, but for later ones, which count before these
};

}  // namespace TrellanSimulation
