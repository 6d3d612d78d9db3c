// From the JSON form of an item to the item, with everything below it.
#include "simulation/libZoInventoryTree/TreeBuilder.h"

#include <optional>

#include "json/Shortened.h"
#include "simulation/libZoInventoryTree/AddressText.h"

namespace TrellanSimulation {

namespace {

// What an item is filled with stands apart from the walk down the tree, on whose stack it would lie at every level.
[[gnu::noinline]] void addParameters(TreeItem& item, const Json& parameters, const Place& itemPlace)
{
    const Place place(itemPlace, "parameters");
    requireObject(parameters, place);
    ParameterNames& names = item.parameterNames();
    parameters.forEachKey([&](const JsonBits& key, const Json& value) {
        if (!names.add(key)) {
            throw DocumentFault(Place(place, textOf(key)), "unknown parameter");
        }
        if (!value.isText() && !value.isNumber()) {
            throw DocumentFault(Place(place, textOf(key)), "neither a number nor a string");
        }
    });
    item.takeParameters(parameters);
}

// What an item's object has, found in one walk.
struct ItemMembers {
    [[gnu::noinline]] ItemMembers(const Json& item, const Place& place)
    {
        requireObject(item, place);
        item.forEachMember([&](std::string_view name, const Json& value) {
            if (name == "id") {
                id = value;
            } else if (name == "parameters") {
                parameters = value;
            } else if (name == "items") {
                items = value;
            } else {
                throw DocumentFault(Place(place, name), "unknown member");
            }
        });
    }

    std::optional<Json> id;
    std::optional<Json> parameters;
    std::optional<Json> items;
};

ZoCInventoryAddress readId(const ItemMembers& item, const Place& place)
{
    const Place idPlace(place, "id");
    if (!item.id) {
        throw DocumentFault(idPlace, "missing");
    }
    const std::string_view text = getText(*item.id, idPlace);
    const auto id = parseElement(text);
    if (!id) {
        throw DocumentFault(idPlace, "unknown id '" + TrellanJson::shortened(text) + "'");
    }
    return *id;
}

[[gnu::noinline]] TreeItem& addItem(TreeItem& above, const ItemMembers& source, const Place& place)
{
    return above.addItem(readId(source, place));
}

[[gnu::noinline]] void requireRoom(unsigned level, const Place& itemPlace)
{
    if (level == maxTreeLevels) {
        throw DocumentFault(itemPlace, "more than " + std::to_string(maxTreeLevels) + " levels of items");
    }
}

void fillItem(TreeItem& item, const ItemMembers& source, const Place& place, unsigned level)
{
    if (source.parameters) {
        addParameters(item, *source.parameters, place);
    }
    if (!source.items) {
        return;
    }
    const Place itemsPlace(place, "items");
    requireArray(*source.items, itemsPlace);
    for (std::size_t position = 0; position < source.items->size(); ++position) {
        const Place itemPlace(itemsPlace, position);
        requireRoom(level, itemPlace);
        const ItemMembers members((*source.items)[position], itemPlace);
        fillItem(addItem(item, members, itemPlace), members, itemPlace, level + 1);
    }
}

}  // namespace

std::unique_ptr<TreeItem> buildTree(const Json& item, const Place& place)
{
    const ItemMembers members(item, place);
    auto root = std::make_unique<TreeItem>(readId(members, place), item);
    fillItem(*root, members, place, 1);
    return root;
}

}  // namespace TrellanSimulation
