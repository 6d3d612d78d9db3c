#include "support/JsonSchema.h"

#include <stdexcept>
#include <utility>

using nlohmann::json;

namespace {

bool hasType(const json& value, const std::string& type)
{
    if (type == "object") {
        return value.is_object();
    }
    if (type == "array") {
        return value.is_array();
    }
    if (type == "string") {
        return value.is_string();
    }
    if (type == "boolean") {
        return value.is_boolean();
    }
    if (type == "integer") {
        return value.is_number_integer();
    }
    throw std::invalid_argument("unknown type " + type);
}

bool isAnnotation(const std::string& keyword)
{
    return keyword == "$schema" || keyword == "$defs" || keyword == "title" || keyword == "description";
}

}  // namespace

JsonSchema::JsonSchema(json schema) : root(std::move(schema)) {}

std::vector<std::string> JsonSchema::violations(const json& document) const
{
    Violations found;
    check(root, document, "", found);
    return found;
}

void JsonSchema::check(const json& schema, const json& value, const std::string& place, Violations& found) const
{
    for (const auto& [keyword, ignored] : schema.items()) {
        checkKeyword(keyword, schema, value, place, found);
    }
}

void JsonSchema::checkKeyword(const std::string& keyword, const json& schema, const json& value,
                              const std::string& place, Violations& found) const
{
    const json& rule = schema[keyword];
    if (isAnnotation(keyword) || keyword == "additionalProperties") {
        if (keyword == "additionalProperties" && (rule != false || !schema.contains("properties"))) {
            throw std::invalid_argument("additionalProperties is only known as false beside properties");
        }
    } else if (keyword == "$ref") {
        check(root.at(json::json_pointer(rule.get<std::string>().substr(1))), value, place, found);
    } else if (keyword == "oneOf") {
        checkOneOf(rule, value, place, found);
    } else if (keyword == "type") {
        if (!hasType(value, rule)) {
            found.push_back(place + ": is no " + rule.get<std::string>());
        }
    } else if (keyword == "const") {
        if (value != rule) {
            found.push_back(place + ": is not " + rule.dump());
        }
    } else if (keyword == "minimum" || keyword == "maximum") {
        if (value.is_number() && (keyword == "minimum" ? value < rule : value > rule)) {
            found.push_back(place + ": is beyond the " + keyword + " " + rule.dump());
        }
    } else if (keyword == "required") {
        for (const json& name : rule) {
            if (value.is_object() && !value.contains(name.get<std::string>())) {
                found.push_back(place + ": lacks " + name.get<std::string>());
            }
        }
    } else if (keyword == "properties") {
        checkMembers(schema, value, place, found);
    } else if (keyword == "items") {
        for (std::size_t i = 0; value.is_array() && i < value.size(); ++i) {
            check(rule, value[i], place + "/" + std::to_string(i), found);
        }
    } else {
        throw std::invalid_argument("unknown keyword " + keyword);
    }
}

void JsonSchema::checkOneOf(const json& choices, const json& value, const std::string& place, Violations& found) const
{
    unsigned fitting = 0;
    Violations all;
    for (const json& choice : choices) {
        Violations ofChoice;
        check(choice, value, place, ofChoice);
        fitting += ofChoice.empty() ? 1 : 0;
        all.insert(all.end(), ofChoice.begin(), ofChoice.end());
    }
    if (fitting == 1) {
        return;
    }
    found.push_back(place + ": fits " + std::to_string(fitting) + " choices");
    found.insert(found.end(), all.begin(), all.end());
}

void JsonSchema::checkMembers(const json& schema, const json& value, const std::string& place, Violations& found) const
{
    if (!value.is_object()) {
        return;
    }
    const json& properties = schema["properties"];
    for (const auto& [name, member] : value.items()) {
        if (properties.contains(name)) {
            check(properties[name], member, place + "/" + name, found);
        } else if (schema.contains("additionalProperties")) {
            found.push_back(place + ": has the unknown member " + name);
        }
    }
}
