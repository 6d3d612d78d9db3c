// The checker that the documents are held against finds what is wrong with one.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/BuildTree.h"
#include "support/JsonSchema.h"
#include "support/TextFile.h"

using nlohmann::json;

namespace {

std::vector<std::string> violations(const json& document)
{
    const JsonSchema schema(json::parse(readText(TRELLAN_SOURCE_DIR "/docs/trellan-update.schema.json")));
    return schema.violations(document);
}

json listDocument()
{
    return json::parse(R"({"schemaVersion": 1, "command": "list",
                           "archive": {"name": "", "version": "", "productName": "", "formatVersion": "", "variant": ""},
                           "files": [{"name": "a", "version": "1.0"}]})");
}

// Whether `found` names this place and, there, what is wrong.
bool names(const std::vector<std::string>& found, const std::string& place, const std::string& what)
{
    return std::any_of(found.begin(), found.end(), [&](const std::string& violation) {
        return violation.starts_with(place + ": ") && violation.find(what) != std::string::npos;
    });
}

}  // namespace

TEST(Schema, ADocumentOfOneCommandConforms)
{
    EXPECT_TRUE(violations(listDocument()).empty());
    EXPECT_TRUE(violations({{"schemaVersion", 1}, {"command", "scan"}, {"elements", json::array()}}).empty());
}

TEST(Schema, AnUnknownMemberIsFound)
{
    json document = listDocument();
    document["files"][0]["checksum"] = 1;
    EXPECT_TRUE(names(violations(document), "<root>[files][0]", "checksum"));
}

TEST(Schema, AMissingMemberIsFound)
{
    json document = listDocument();
    document["archive"].erase("variant");
    EXPECT_TRUE(names(violations(document), "<root>[archive]", "'variant'"));
}

TEST(Schema, AWrongTypeIsFound)
{
    json document = listDocument();
    document["files"][0]["version"] = 1.0;
    EXPECT_TRUE(names(violations(document), "<root>[files][0][version]", "'type'"));
    document["files"] = json::object();
    EXPECT_TRUE(names(violations(document), "<root>[files]", "'type'"));
}

TEST(Schema, AnotherCommandIsFound)
{
    json document = listDocument();
    document["command"] = "describe";
    EXPECT_TRUE(names(violations(document), "<root>[command]", "'const'"));
    EXPECT_TRUE(names(violations(document), "<root>", "oneOf"));
}

TEST(Schema, NumbersBeyondTheirRangeAreFound)
{
    const JsonSchema schema(json::parse(R"({"type": "integer", "minimum": 0, "maximum": 4294967295})"));
    EXPECT_TRUE(schema.violations(0).empty());
    EXPECT_TRUE(schema.violations(4294967295).empty());
    EXPECT_TRUE(names(schema.violations(-1), "<root>", "greater than or equal to 0"));
    EXPECT_TRUE(names(schema.violations(4294967296), "<root>", "less than or equal to 4294967295"));
    EXPECT_TRUE(names(schema.violations(9223372036854775808u), "<root>", "less than or equal to 4294967295"));
    EXPECT_TRUE(names(schema.violations(18446744073709551615u), "<root>", "less than or equal to 4294967295"));
    EXPECT_TRUE(names(schema.violations(1.5), "<root>", "'type'"));
}

TEST(Schema, NumbersOf64BitsAreNotNegative)
{
    const JsonSchema schema(json::parse(R"({"items": {"type": "integer", "minimum": 3}})"));
    EXPECT_TRUE(schema.violations({9223372036854775807, 9223372036854775808u, 18446744073709551615u}).empty());
    EXPECT_TRUE(names(schema.violations({18446744073709551615u, 2}), "<root>[1]", "greater than or equal to 3"));
}

TEST(Schema, ADigestThatIsCutShortIsFound)
{
    const std::string digest(64, '7');
    json plan = json::parse(R"({"schemaVersion": 1, "command": "update", "supported": true, "counts": {"noFile": 0,
        "custom": 0, "upToDate": 0, "excluded": 0, "blocked": 0, "update": 0}, "phases": [], "options": {
        "description": "", "boardTypes": "", "serialNumbers": "", "elementNames": "", "exclude": [], "force": false,
        "configuration": false, "disableCustomElements": false, "noCheck": false}, "findings": [], "elements": []})");
    plan["archive"] = {{"path", "/a"}, {"version", "1.0"}, {"sha256", digest}};
    plan["digest"] = digest;
    EXPECT_TRUE(violations(plan).empty());
    plan["digest"] = digest.substr(1);
    EXPECT_FALSE(violations(plan).empty());
    plan["digest"] = digest;
    plan["archive"]["sha256"] = nullptr;
    EXPECT_FALSE(violations(plan).empty());
}

TEST(Schema, AKeywordThatIsNotCheckedIsRefused)
{
    for (const char* const text :
         {R"({"prefixItems": []})", R"({"properties": {"a": {"minContains": 1}}})", R"({"items": {"typ": "string"}})",
          R"({"oneOf": [{"unevaluatedProperties": false}]})", R"({"$ref": "#/$defs/a", "minimum": 1})"}) {
        EXPECT_THROW(JsonSchema(json::parse(text)), std::invalid_argument) << text;
    }
}

TEST(Schema, ANumberThatWouldBeTakenForAnotherIsRefused)
{
    EXPECT_NO_THROW(JsonSchema(json::parse(R"({"items": {"maximum": 9223372036854775807}})")));
    EXPECT_THROW(JsonSchema(json::parse(R"({"items": {"maximum": 9223372036854775808}})")), std::invalid_argument);
}
