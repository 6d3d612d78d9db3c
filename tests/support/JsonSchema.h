// JsonSchema: what JSON documents are held against.
#pragma once

#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace valijson {
class Schema;
}

class JsonSchema {
public:
    // Throws std::invalid_argument where the schema has a keyword that the validator would pass over: one that came
    // after draft 7, or one beside "$ref" that says more than a description; or where it has a number that 63 bits do
    // not hold.
    explicit JsonSchema(const nlohmann::json& schema);
    ~JsonSchema();

    // What is wrong with `document`, each with its place ("<root>[elements][0]: ..."); empty when it conforms.
    std::vector<std::string> violations(const nlohmann::json& document) const;

private:
    std::unique_ptr<valijson::Schema> root;
};
