// From the JSON form of an item to the item, with everything below it.
#include "simulation/libZoInventoryTree/TreeBuilder.h"

#include <array>
#include <optional>

#include "simulation/libZoInventoryTree/AddressText.h"

namespace TrellanSimulation {

namespace {

ParameterValue readValue(const Json& value, const Place& place)
{
    if (!value.isText() && !value.isNumber()) {
        throw DocumentFault(place, "neither a number nor a string");
    }
    return ParameterValue(value);
}

// Of the keys that came lately the names that they are.
class KnownNames {
public:
    explicit KnownNames(ParameterNames& names) : names(names) {}

    // Null when no parameter can have the name.
    const ParameterName* find(const JsonBits& key)
    {
        Known& known = lately[(key >> jsonTagBits ^ key >> 12) % lately.size()];
        if (known.key != key || known.name == nullptr) {
            known = {key, names.find(textOf(key))};
        }
        return known.name;
    }

private:
    struct Known {
        JsonBits key = 0;
        const ParameterName* name = nullptr;
    };

    ParameterNames& names;
    std::array<Known, 64> lately{};
};

void addParameters(TreeItem& item, const Json& parameters, const Place& place, KnownNames& names)
{
    requireObject(parameters, place);
    item.reserveParameters(parameters.size());
    parameters.forEachKey([&](const JsonBits& key, const Json& value) {
        const Place parameterPlace(place, textOf(key));
        const ParameterName* name = names.find(key);
        if (name == nullptr) {
            throw DocumentFault(parameterPlace, "unknown parameter");
        }
        item.addParameter(*name, readValue(value, parameterPlace));
    });
}

// What an item's object has, found in one walk.
struct ItemMembers {
    ItemMembers(const Json& item, const Place& place)
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
        throw DocumentFault(idPlace, "unknown id '" + std::string(text) + "'");
    }
    return *id;
}

void fillItem(TreeItem& item, const ItemMembers& source, const Place& place, unsigned level, KnownNames& names)
{
    if (source.parameters) {
        addParameters(item, *source.parameters, Place(place, "parameters"), names);
    }
    if (!source.items) {
        return;
    }
    const Place itemsPlace(place, "items");
    requireArray(*source.items, itemsPlace);
    for (std::size_t position = 0; position < source.items->size(); ++position) {
        const Place itemPlace(itemsPlace, position);
        if (level == maxTreeLevels) {
            throw DocumentFault(itemPlace, "more than " + std::to_string(maxTreeLevels) + " levels of items");
        }
        const ItemMembers members((*source.items)[position], itemPlace);
        fillItem(item.addItem(readId(members, itemPlace)), members, itemPlace, level + 1, names);
    }
}

}  // namespace

std::unique_ptr<TreeItem> buildTree(const Json& item, const Place& place)
{
    const ItemMembers members(item, place);
    auto root = std::make_unique<TreeItem>(readId(members, place));
    KnownNames names(root->parameterNames());
    fillItem(*root, members, place, 1, names);
    return root;
}

}  // namespace TrellanSimulation
