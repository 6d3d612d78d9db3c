// The validator passes over keywords that it does not know, so a schema with such a one is refused first.
#include "support/JsonSchema.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

using nlohmann::json;
using valijson::adapters::NlohmannJsonAdapter;

namespace {

// The keywords that are checked, by what stands behind them: nothing that is checked, a value, a schema, several
// schemas.
const std::set<std::string> annotations = {"$schema", "title", "description"};
const std::set<std::string> withValue = {"$ref",    "type",        "const",           "enum",     "required",
                                         "minimum", "maximum",     "minItems",        "maxItems", "minLength",
                                         "pattern", "uniqueItems", "exclusiveMinimum"};
const std::set<std::string> withSchema = {"items", "additionalProperties", "not", "if", "then", "else"};
const std::set<std::string> withSchemas = {"$defs", "definitions", "properties", "patternProperties",
                                           "oneOf", "anyOf",       "allOf"};

void refuseUncheckedKeywords(const json& schema)
{
    for (const auto& [keyword, rule] : schema.items()) {
        if (annotations.contains(keyword)) {
            continue;
        }
        const bool known = withValue.contains(keyword) || withSchema.contains(keyword) || withSchemas.contains(keyword);
        if (!known || (schema.contains("$ref") && keyword != "$ref")) {
            throw std::invalid_argument("the keyword " + keyword + " would not be checked");
        }
        if (withSchema.contains(keyword) && rule.is_object()) {
            refuseUncheckedKeywords(rule);
        }
        if (withSchemas.contains(keyword)) {
            std::for_each(rule.begin(), rule.end(), refuseUncheckedKeywords);
        }
    }
}

}  // namespace

JsonSchema::JsonSchema(const json& schema) : root(std::make_unique<valijson::Schema>())
{
    refuseUncheckedKeywords(schema);
    valijson::SchemaParser().populateSchema(NlohmannJsonAdapter(schema), *root);
}

JsonSchema::~JsonSchema() = default;

std::vector<std::string> JsonSchema::violations(const json& document) const
{
    static valijson::Validator validator;  // keeps each pattern that it has compiled, which takes it milliseconds
    valijson::ValidationResults results;
    validator.validate(*root, NlohmannJsonAdapter(document), &results);
    std::vector<std::string> found;
    for (const valijson::ValidationResults::Error& error : results) {
        found.emplace_back();
        for (const std::string& step : error.context) {
            found.back() += step;
        }
        found.back() += ": " + error.description;
    }
    return found;
}
