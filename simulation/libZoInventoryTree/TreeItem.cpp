// Items with their parameters, their neighbours and their reading, scripted faults included.
#include "simulation/libZoInventoryTree/TreeItem.h"

#include <algorithm>
#include <limits>

#include "simulation/base/Resources.h"
#include "simulation/libZoInventoryTree/AddressText.h"
#include "simulation/libZoInventoryTree/PlatformErrors.h"

namespace TrellanSimulation {

namespace {

using Value = ZoCInventoryParameter::Value;

// convert: sets `result` to `value` and returns true; false when a result of this type cannot hold it.

bool convert(const Value& value, ZoCString& result)
{
    const auto* text = std::get_if<std::string>(&value);
    if (text != nullptr) {
        result = ZoCString(text->data(), text->length());
    }
    return text != nullptr;
}

bool convert(const Value& value, ZoCVersion& result)
{
    const auto* text = std::get_if<std::string>(&value);
    // A NUL is in no version; what stands before it alone might be one.
    if (text != nullptr && text->find('\0') == std::string::npos) {
        result = ZoCVersion(text->c_str());
    }
    return text != nullptr;
}

template <class Unsigned>
bool convert(const Value& value, Unsigned& result)
{
    const auto* number = std::get_if<std::uint64_t>(&value);
    if (number == nullptr || *number > std::numeric_limits<Unsigned>::max()) {
        return false;
    }
    result = static_cast<Unsigned>(*number);
    return true;
}

}  // namespace

TreeItem::TreeItem(const ZoCInventoryAddress& id) : id(id) {}

TreeItem::~TreeItem()
{
    if (handedOut) {
        --resources().inventoryTrees;
    }
}

TreeItem& TreeItem::addItem(const ZoCInventoryAddress& itemId)
{
    TreeItem& item = *items.emplace_back(std::make_unique<TreeItem>(itemId));
    item.parent = this;
    if (items.size() > 1) {
        items[items.size() - 2]->next = &item;
    }
    itemsById.try_emplace(itemAddressText(itemId), &item);
    return item;
}

void TreeItem::addParameter(std::string name, Value value)
{
    parameters.push_back({std::move(name), std::move(value)});
}

void TreeItem::setParameter(const ZoCInventoryAddress& address, Value value)
{
    const std::string name = parameterAddressText(address);
    const auto found = std::find_if(parameters.begin(), parameters.end(),
                                    [&](const ZoCInventoryParameter& parameter) { return parameter.name == name; });
    if (found == parameters.end()) {
        addParameter(name, std::move(value));
    } else {
        found->value = std::move(value);
    }
}

void TreeItem::setFaults(std::shared_ptr<const ValueFaults> treeFaults)
{
    faults = std::move(treeFaults);
}

ZoCInventoryItem* TreeItem::handOut(std::unique_ptr<TreeItem> root)
{
    root->handedOut = true;
    ++resources().inventoryTrees;
    return root.release();
}

ZoCInventoryAddress TreeItem::getID() const
{
    return id;
}

ZoCInventoryAddress TreeItem::getAddress() const
{
    std::vector<const TreeItem*> path;
    for (const TreeItem* item = this; item != nullptr; item = item->parent) {
        path.push_back(item);
    }
    ZoCInventoryAddress address;
    for (auto item = path.rbegin(); item != path.rend(); ++item) {
        address = address / (*item)->id;
    }
    return address;
}

ZoCInventoryItem* TreeItem::getParent() const
{
    return parent;
}

ZoCInventoryItem* TreeItem::getFirstSubItem() const
{
    return items.empty() ? nullptr : items.front().get();
}

ZoCInventoryItem* TreeItem::getNext() const
{
    return next;
}

ZoCInventoryItem* TreeItem::getItem(const ZoCInventoryAddress& address) const
{
    const TreeItem* above = this;
    TreeItem* item = nullptr;
    for (std::size_t position = 0; position < address.getLength(); ++position) {
        const auto found = above->itemsById.find(itemAddressText(address.getElement(position)));
        if (found == above->itemsById.end()) {
            return nullptr;
        }
        above = item = found->second;
    }
    return item;
}

const ZoCInventoryParameter* TreeItem::getParameter(const ZoCInventoryAddress& address) const
{
    const auto found = std::find_if(parameters.begin(), parameters.end(),
                                    [name = parameterAddressText(address)](const ZoCInventoryParameter& parameter) {
                                        return parameter.name == name;
                                    });
    return found == parameters.end() ? nullptr : &*found;
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

const TreeItem& TreeItem::root() const
{
    const TreeItem* item = this;
    while (item->parent != nullptr) {
        item = item->parent;
    }
    return *item;
}

bool TreeItem::addFaults(ZoCErrorListPool& errors, const std::string& parameter) const
{
    const ValueFaults* treeFaults = root().faults.get();
    if (treeFaults == nullptr || treeFaults->empty()) {
        return false;
    }
    const auto found = treeFaults->find(itemAddressText(getAddress()) + ':' + parameter);
    if (found == treeFaults->end() || found->second.empty()) {
        return false;
    }
    for (const ZoSErrorRecord& error : found->second) {
        errors.addError(error);
    }
    return true;
}

template <class T>
void TreeItem::read(ZoCErrorListPool& errors, const ZoCInventoryAddress& address, T& value) const
{
    const std::string name = parameterAddressText(address);
    if (addFaults(errors, name)) {
        return;
    }
    const ZoCInventoryParameter* parameter = getParameter(address);
    if (parameter == nullptr) {
        addPlatformError(errors, PlatformError::parameterMissing, {name, itemAddressText(getAddress())});
    } else if (!convert(parameter->value, value)) {
        addPlatformError(errors, PlatformError::parameterType, {name, itemAddressText(getAddress())});
    }
}

}  // namespace TrellanSimulation
