// From the JSON form of an item to the item, with everything below it.
#include "simulation/libZoInventoryTree/TreeBuilder.h"

#include "simulation/libZoInventoryTree/AddressText.h"

namespace TrellanSimulation {

namespace {

ZoCInventoryAddress readId(const Json& item, const Place& place)
{
    const std::string& text = getText(getMember(item, "id", place), Place(place, "id"));
    const auto id = parseElement(text);
    if (!id) {
        throw DocumentFault(Place(place, "id"), "unknown id '" + text + "'");
    }
    return *id;
}

ZoCInventoryParameter::Value readValue(const Json& value, const Place& place)
{
    if (value.is_string()) {
        return value.get_ref<const std::string&>();
    }
    if (!value.is_number()) {
        throw DocumentFault(place, "neither a number nor a string");
    }
    if (value.is_number_unsigned()) {
        return value.get<std::uint64_t>();
    }
    return ZoCInventoryParameter::OtherNumber{};
}

void addParameters(TreeItem& item, const Json& parameters, const Place& place)
{
    requireObject(parameters, place);
    for (const auto& [name, value] : parameters.items()) {
        const Place parameterPlace(place, name);
        if (!parseParameterAddress(name)) {
            throw DocumentFault(parameterPlace, "unknown parameter");
        }
        item.addParameter(name, readValue(value, parameterPlace));
    }
}

void fillItem(TreeItem& item, const Json& source, const Place& place, unsigned level)
{
    if (const Json* parameters = findMember(source, "parameters")) {
        addParameters(item, *parameters, Place(place, "parameters"));
    }
    const Json* items = findMember(source, "items");
    if (items == nullptr) {
        return;
    }
    const Place itemsPlace(place, "items");
    requireArray(*items, itemsPlace);
    for (std::size_t position = 0; position < items->size(); ++position) {
        const Place itemPlace(itemsPlace, position);
        if (level == maxTreeLevels) {
            throw DocumentFault(itemPlace, "more than " + std::to_string(maxTreeLevels) + " levels of items");
        }
        const Json& below = (*items)[position];
        requireMembers(below, {"id", "parameters", "items"}, itemPlace);
        fillItem(item.addItem(readId(below, itemPlace)), below, itemPlace, level + 1);
    }
}

}  // namespace

std::unique_ptr<TreeItem> buildTree(const Json& item, const Place& place)
{
    requireMembers(item, {"id", "parameters", "items"}, place);
    auto root = std::make_unique<TreeItem>(readId(item, place));
    fillItem(*root, item, place, 1);
    return root;
}

}  // namespace TrellanSimulation
