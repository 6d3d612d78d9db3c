#include "support/TargetBuilder.h"

using nlohmann::ordered_json;

namespace {

ordered_json element(const std::string& kind, unsigned index, const ordered_json& parameters)
{
    ordered_json all = {{"CONFIGURATION", 0}, {"VALID", 1}, {"ACTIVE", 1}, {"ID", index}};
    all.update(parameters.is_null() ? ordered_json::object() : parameters);
    return item(kind + "[" + std::to_string(index) + "]", all);
}

}  // namespace

ordered_json item(std::string id, ordered_json parameters, std::vector<ordered_json> items)
{
    ordered_json result = {{"id", id}};
    if (!parameters.empty()) {
        result["parameters"] = parameters;
    }
    if (!items.empty()) {
        result["items"] = items;
    }
    return result;
}

ordered_json updateElement(unsigned index, ordered_json parameters)
{
    return element("UPDATE_ELEMENT", index, parameters);
}

ordered_json fileElement(unsigned index, ordered_json parameters)
{
    return element("FILESYSTEM_ELEMENT", index, parameters);
}

ordered_json board(std::string id, ordered_json parameters, std::vector<ordered_json> elements,
                   std::vector<ordered_json> items)
{
    items.insert(items.begin(), item("UPDATE_INFO", ordered_json::object(), elements));
    return item(id, parameters, items);
}

ordered_json target(std::vector<ordered_json> items)
{
    return {{"clock", "virtual"}, {"tree", item("ROOT", ordered_json::object(), items)}};
}
