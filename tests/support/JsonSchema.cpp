// The validator passes over keywords that it does not know, so a schema with such a one is refused first. It takes a
// whole number from 2^63 on for a negative one, so the greatest below stands in for these.
#include "support/JsonSchema.h"

#include <algorithm>
#include <cstdint>
#include <limits>
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

constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();

bool hasGreaterNumber(const json& value)
{
    return value.is_structured() ? std::any_of(value.begin(), value.end(), hasGreaterNumber)
                                 : value.is_number_unsigned() && value.get<std::uint64_t>() > greatest;
}

void replaceGreaterNumbers(json& value)
{
    if (value.is_structured()) {
        std::for_each(value.begin(), value.end(), replaceGreaterNumbers);
    } else if (hasGreaterNumber(value)) {
        value = greatest;
    }
}

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
    if (hasGreaterNumber(schema)) {
        throw std::invalid_argument("a number that 63 bits do not hold would be taken for another one");
    }
    valijson::SchemaParser().populateSchema(NlohmannJsonAdapter(schema), *root);
}

JsonSchema::~JsonSchema() = default;

std::vector<std::string> JsonSchema::violations(const json& document) const
{
    if (hasGreaterNumber(document)) {
        json replaced = document;
        replaceGreaterNumbers(replaced);
        return violations(replaced);
    }
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
