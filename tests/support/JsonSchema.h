// Checks JSON documents against a JSON Schema, as far as this project's schemas go: $ref within the schema, oneOf,
// type, const, minimum, maximum, properties, required, additionalProperties and items.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

class JsonSchema {
public:
    explicit JsonSchema(nlohmann::json schema);

    // What is wrong with `document`, each with its place ("/elements/0/index: is no integer"); empty when it conforms.
    // Throws std::invalid_argument where the schema uses a keyword that is not known here.
    std::vector<std::string> violations(const nlohmann::json& document) const;

private:
    using Violations = std::vector<std::string>;

    void check(const nlohmann::json& schema, const nlohmann::json& value, const std::string& place,
               Violations& found) const;
    void checkKeyword(const std::string& keyword, const nlohmann::json& schema, const nlohmann::json& value,
                      const std::string& place, Violations& found) const;
    void checkOneOf(const nlohmann::json& choices, const nlohmann::json& value, const std::string& place,
                    Violations& found) const;
    void checkMembers(const nlohmann::json& schema, const nlohmann::json& value, const std::string& place,
                      Violations& found) const;

    nlohmann::json root;
};
