// The checker that the documents are held against finds what is wrong with one.
#include <gtest/gtest.h>

#include <algorithm>

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
    return json::parse(R"({"command": "list",
                           "archive": {"name": "", "version": "", "productName": "", "formatVersion": "", "variant": ""},
                           "files": [{"name": "a", "version": "1.0"}]})");
}

bool contains(const std::vector<std::string>& found, const std::string& violation)
{
    return std::find(found.begin(), found.end(), violation) != found.end();
}

}  // namespace

TEST(SchemaTest, ADocumentOfOneCommandConforms)
{
    EXPECT_TRUE(violations(listDocument()).empty());
    EXPECT_TRUE(violations({{"command", "scan"}, {"elements", json::array()}}).empty());
}

TEST(SchemaTest, AnUnknownMemberIsFound)
{
    json document = listDocument();
    document["files"][0]["checksum"] = 1;
    EXPECT_TRUE(contains(violations(document), "/files/0: has the unknown member checksum"));
}

TEST(SchemaTest, AMissingMemberIsFound)
{
    json document = listDocument();
    document["archive"].erase("variant");
    EXPECT_TRUE(contains(violations(document), "/archive: lacks variant"));
}

TEST(SchemaTest, AWrongTypeIsFound)
{
    json document = listDocument();
    document["files"][0]["version"] = 1.0;
    EXPECT_TRUE(contains(violations(document), "/files/0/version: is no string"));
    document["files"] = json::object();
    EXPECT_TRUE(contains(violations(document), "/files: is no array"));
}

TEST(SchemaTest, AnotherCommandIsFound)
{
    json document = listDocument();
    document["command"] = "update";
    EXPECT_TRUE(contains(violations(document), "/command: is not \"list\""));
    EXPECT_TRUE(contains(violations(document), ": fits 0 choices"));
}

TEST(SchemaTest, NumbersBeyondTheirRangeAreFound)
{
    const JsonSchema schema(json::parse(R"({"type": "integer", "minimum": -1, "maximum": 4294967295})"));
    EXPECT_TRUE(schema.violations(-1).empty());
    EXPECT_TRUE(schema.violations(4294967295).empty());
    EXPECT_EQ(schema.violations(-2), std::vector<std::string>{": is beyond the minimum -1"});
    EXPECT_EQ(schema.violations(4294967296), std::vector<std::string>{": is beyond the maximum 4294967295"});
    EXPECT_EQ(schema.violations(1.5), std::vector<std::string>{": is no integer"});
}

TEST(SchemaTest, AKeywordThatIsNotCheckedIsRefused)
{
    EXPECT_THROW(JsonSchema(json::parse(R"({"pattern": "x"})")).violations("x"), std::invalid_argument);
    EXPECT_THROW(JsonSchema(json::parse(R"({"additionalProperties": true})")).violations("x"), std::invalid_argument);
    EXPECT_THROW(JsonSchema(json::parse(R"({"type": "number"})")).violations(1), std::invalid_argument);
}
