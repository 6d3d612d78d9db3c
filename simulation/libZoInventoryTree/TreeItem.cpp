// Items with their parameters, their neighbours and their reading, scripted faults included.
#include "simulation/libZoInventoryTree/TreeItem.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "simulation/base/Resources.h"
#include "simulation/libZoInventoryTree/AddressText.h"
#include "simulation/libZoInventoryTree/PlatformErrors.h"

namespace TrellanSimulation {

namespace {

constexpr std::size_t fewItems = 8;  // are looked through one by one

// Tells the elements of addresses apart.
std::uint64_t numberOf(ZoCInventoryAddress::Category category, unsigned index)
{
    return std::uint64_t{category} << 32 | index;
}

static_assert(sizeof(ZoCInventoryParameter) == sizeof(JsonBits), "a value of the document is a parameter");

const ZoCInventoryParameter& parameterAt(const JsonBits& value)
{
    return reinterpret_cast<const ZoCInventoryParameter&>(value);
}

// convert: sets `result` to `value` and returns true; false when a result of this type cannot hold it.

bool convert(const ParameterValue& value, ZoCString& result)
{
    const auto text = value.text();
    if (text) {
        result = ZoCString(text->data(), text->length());
    }
    return text.has_value();
}

bool convert(const ParameterValue& value, ZoCVersion& result)
{
    const auto text = value.text();
    // A NUL is in no version; what stands before it alone might be one.
    if (text && text->find('\0') == std::string_view::npos) {
        result = ZoCVersion(std::string(*text).c_str());
    }
    return text.has_value();
}

template <class Unsigned>
bool convert(const ParameterValue& value, Unsigned& result)
{
    const auto number = value.number();
    if (!number || *number > std::numeric_limits<Unsigned>::max()) {
        return false;
    }
    result = static_cast<Unsigned>(*number);
    return true;
}

}  // namespace

TreeItem::TreeItem(const ZoCInventoryAddress& id)
    : tree(std::make_unique<Tree>().release()), category(id.getCategory()), index(id.getIndex())
{
}

TreeItem::TreeItem(const ZoCInventoryAddress& id, const Json& source) : TreeItem(id)
{
    tree->document = JsonDocument(source);
}

TreeItem::TreeItem(const ZoCInventoryAddress& id, TreeItem& parent)
    : tree(parent.tree), category(id.getCategory()), index(id.getIndex()), parent(&parent)
{
}

// The memory of the items below is the tree's.
TreeItem::~TreeItem()
{
    const std::unique_ptr<Tree> ownTree(parent == nullptr ? tree : nullptr);
    for (TreeItem* item = firstBelow(); item != nullptr;) {
        std::exchange(item, item->nextBeside())->~TreeItem();
    }
    if (ownTree && ownTree->handedOut) {
        --resources().inventoryTrees;
    }
}

TreeItem& TreeItem::addItem(const ZoCInventoryAddress& itemId)
{
    auto* item = new (tree->memory.allocate(sizeof(TreeItem), alignof(TreeItem))) TreeItem(itemId, *this);
    item->next = last == nullptr ? item : std::exchange(last->next, item);
    last = item;
    tree->itemsById.erase(this);
    return *item;
}

void TreeItem::setParameter(const ZoCInventoryAddress& address, ParameterValue value)
{
    const ParameterName& name = tree->names.of(address);
    LaterParameters& own = tree->later[this];
    for (auto& [ofOne, parameter] : own) {
        if (ofOne == &name) {
            parameter.value = std::move(value);
            return;
        }
    }
    own.emplace_back(&name, ZoCInventoryParameter{std::move(value)});
}

void TreeItem::setFaults(std::shared_ptr<const ValueFaults> treeFaults)
{
    tree->faults = std::move(treeFaults);
}

ZoCInventoryItem* TreeItem::handOut(std::unique_ptr<TreeItem> root)
{
    root->tree->handedOut = true;
    ++resources().inventoryTrees;
    return root.release();
}

ZoCInventoryAddress TreeItem::getID() const
{
    return ZoCInventoryAddress(category, index);
}

bool TreeItem::hasId(const ZoCInventoryAddress& address) const
{
    return address.getCategory() == category && address.getIndex() == index;
}

ZoCInventoryAddress TreeItem::getAddress() const
{
    return parent == nullptr ? getID() : parent->getAddress() / getID();
}

ZoCInventoryItem* TreeItem::getParent() const
{
    return parent;
}

ZoCInventoryItem* TreeItem::getFirstSubItem() const
{
    return firstBelow();
}

ZoCInventoryItem* TreeItem::getNext() const
{
    return nextBeside();
}

ZoCInventoryItem* TreeItem::getItem(const ZoCInventoryAddress& address) const
{
    TreeItem* item = nullptr;
    for (std::size_t position = 0; position < address.getLength(); ++position) {
        item = (item == nullptr ? this : item)->findItem(address.getElement(position));
        if (item == nullptr) {
            return nullptr;
        }
    }
    return item;
}

// Whoever searches a second time among many may go on doing so.
TreeItem* TreeItem::findItem(const ZoCInventoryAddress& itemId) const
{
    TreeItem* item = firstBelow();
    for (std::size_t looked = 0; item != nullptr && !item->hasId(itemId); ++looked) {
        if (looked == fewItems && !tree->searched.insert(this).second) {
            return findAmongMany(itemId);
        }
        item = item->nextBeside();
    }
    return item;
}

TreeItem* TreeItem::findAmongMany(const ZoCInventoryAddress& itemId) const
{
    auto items = tree->itemsById.find(this);
    if (items == tree->itemsById.end()) {
        ItemsById made;
        for (TreeItem* item = firstBelow(); item != nullptr; item = item->nextBeside()) {
            made.try_emplace(numberOf(item->category, item->index), item);
        }
        items = tree->itemsById.emplace(this, std::move(made)).first;
    }
    const auto found = items->second.find(numberOf(itemId.getCategory(), itemId.getIndex()));
    return found == items->second.end() ? nullptr : found->second;
}

const ZoCInventoryParameter* TreeItem::getParameter(const ZoCInventoryAddress& address) const
{
    const ParameterName* name = tree->names.find(address);
    if (name == nullptr) {
        return tree->names.areAll() ? nullptr : findByText(address);
    }
    if (const auto own = tree->later.find(this); own != tree->later.end()) {
        for (const auto& [ofOne, parameter] : own->second) {
            if (ofOne == name) {
                return &parameter;
            }
        }
    }
    const JsonValues members = documented.values();
    for (const JsonBits key : name->keys) {
        if (name->latePlace < members.count && members.first[name->latePlace] == key) {
            return &parameterAt(members.first[name->latePlace + 1]);
        }
        for (std::size_t place = 0; place < members.count; place += 2) {
            if (members.first[place] == key) {
                name->latePlace = place;
                return &parameterAt(members.first[place + 1]);
            }
        }
    }
    return name->hasAllKeys ? nullptr : findByText(address);
}

const ZoCInventoryParameter* TreeItem::findByText(const ZoCInventoryAddress& address) const
{
    const auto value = documented.find(parameterAddressText(address));
    return value ? &parameterAt(*value->identity()) : nullptr;
}

void TreeItem::readValue(ZoCErrorListPool& errors, const ZoCInventoryAddress& address, ZoCString& value) const
{
    read(errors, address, value);
}

void TreeItem::readValue(ZoCErrorListPool& errors, const ZoCInventoryAddress& address, unsigned int& value) const
{
    read(errors, address, value);
}

void TreeItem::readValue(ZoCErrorListPool& errors, const ZoCInventoryAddress& address, unsigned char& value) const
{
    read(errors, address, value);
}

void TreeItem::readValue(ZoCErrorListPool& errors, const ZoCInventoryAddress& address, ZoCVersion& value) const
{
    read(errors, address, value);
}

bool TreeItem::addFaults(ZoCErrorListPool& errors, const ZoCInventoryAddress& parameter) const
{
    const ValueFaults* treeFaults = tree->faults.get();
    if (treeFaults == nullptr || treeFaults->empty()) {
        return false;
    }
    return treeFaults->add(errors, itemAddressText(getAddress()) + ':' + parameterAddressText(parameter));
}

template <class T>
void TreeItem::read(ZoCErrorListPool& errors, const ZoCInventoryAddress& address, T& value) const
{
    if (addFaults(errors, address)) {
        return;
    }
    const auto addError = [&](PlatformError error) {
        addPlatformError(errors, error, {parameterAddressText(address), itemAddressText(getAddress())});
    };
    const ZoCInventoryParameter* parameter = getParameter(address);
    if (parameter == nullptr) {
        addError(PlatformError::parameterMissing);
    } else if (!convert(parameter->value, value)) {
        addError(PlatformError::parameterType);
    }
}

}  // namespace TrellanSimulation
