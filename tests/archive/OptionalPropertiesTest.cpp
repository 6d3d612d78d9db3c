// Optional properties of an entry and of a board: accepted types, array elements, values, and which defect is named.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "ArchiveReader.h"

using nlohmann::ordered_json;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

constexpr std::int32_t entryItself = -1;

// A value of each kind that JSON knows; versions and modes are spelt so that a property of that name accepts them.
const char* const kinds[] = {"null",       "true", "text",     "unsigned", "negative",
                             "minus zero", "real", "too long", "array",    "object"};

struct PropertyRule {
    const char* name;
    std::vector<std::string> acceptedKinds;
};

// In the order of the type check.
const PropertyRule propertyRules[] = {
    {"boardType", {"text", "array"}},
    {"boardVariant", {"null", "text", "array"}},
    {"boardId", {"unsigned", "array"}},
    {"id", {"unsigned"}},
    {"targetPath", {"text"}},
    {"hwCompatibilityId", {"unsigned", "array"}},
    {"swCompatibilityId", {"unsigned", "array"}},
    {"version", {"text", "null"}},
    {"checksumCrc32", {"unsigned"}},
    {"mode", {"text"}},
};

std::string valueOf(const std::string& kind, const std::string& property)
{
    if (kind == "text") {
        return property == "version" ? "\"1.0\"" : property == "mode" ? "\"standard\"" : "\"text\"";
    }
    if (kind == "unsigned") {
        return "18446744073709551615";
    }
    if (kind == "negative") {
        return "-1";
    }
    if (kind == "minus zero") {
        return "-0";
    }
    if (kind == "real") {
        return "1.0";
    }
    if (kind == "too long") {
        return "18446744073709551616";
    }
    if (kind == "array") {
        return "[]";
    }
    if (kind == "object") {
        return "{}";
    }
    return kind;
}

std::string member(const std::string& name, const std::string& value)
{
    return "\"" + name + "\":" + value;
}

class OptionalProperties : public ::testing::Test {
protected:
    // Checks the object with these members.
    bool check(const std::string& members, std::uint32_t entry, std::int32_t board)
    {
        reader.messages.clear();
        return reader.archive().checkOptionalProperties(parseJson("{" + members + "}"), entry, board);
    }

    void expectAccepted(const std::string& members, std::int32_t board = entryItself)
    {
        SCOPED_TRACE(members);
        EXPECT_TRUE(check(members, 4, board));
        EXPECT_THAT(reader.messages.fragments(), IsEmpty());
    }

    void expectRefused(const std::string& members, std::uint32_t entry, std::int32_t board, const std::string& message)
    {
        SCOPED_TRACE(members);
        EXPECT_FALSE(check(members, entry, board));
        EXPECT_THAT(reader.messages.fragments(), ElementsAre(message));
    }

    void expectWrongType(const std::string& members, const std::string& name)
    {
        expectRefused(members, 4, entryItself,
                      "ERROR: File entry 4 is invalid. Property \"" + name + "\" has an invalid value.\n");
        expectRefused(members, 12, 3,
                      "ERROR: File entry 12 is invalid. Property \"" + name +
                          "\" of \"boards\"-element 3 has an invalid value.\n");
    }

    void expectWrongElements(const std::string& members, const std::string& name)
    {
        expectRefused(members, 4, entryItself,
                      "ERROR: File entry 4 is invalid. Property \"" + name + "\" has invalid elements.\n");
        expectRefused(members, 12, 0,
                      "ERROR: File entry 12 is invalid. Property \"" + name +
                          "\" of \"boards\" element 0 has invalid elements.\n");
    }

    TestArchive archive{"unused"};
    ArchiveReader reader{archive};
};

}  // namespace

TEST_F(OptionalProperties, MayAllBeAbsent)
{
    expectAccepted("");
    expectAccepted("", 0);
}

TEST_F(OptionalProperties, AcceptTheirTypesAtTheEntry)
{
    for (const PropertyRule& rule : propertyRules) {
        for (const std::string& kind : rule.acceptedKinds) {
            expectAccepted(member(rule.name, valueOf(kind, rule.name)));
        }
    }
}

TEST_F(OptionalProperties, AcceptTheirTypesInABoard)
{
    const std::vector<std::string> belongToTheFile = {"version", "checksumCrc32", "mode"};
    for (const PropertyRule& rule : propertyRules) {
        for (const std::string& kind : rule.acceptedKinds) {
            if (std::count(belongToTheFile.begin(), belongToTheFile.end(), rule.name) == 0) {
                expectAccepted(member(rule.name, valueOf(kind, rule.name)), 3);
            }
        }
    }
}

TEST_F(OptionalProperties, RefuseEveryOtherType)
{
    for (const PropertyRule& rule : propertyRules) {
        for (const std::string kind : kinds) {
            if (std::count(rule.acceptedKinds.begin(), rule.acceptedKinds.end(), kind) == 0) {
                expectWrongType(member(rule.name, valueOf(kind, rule.name)), rule.name);
            }
        }
    }
}

TEST_F(OptionalProperties, OtherMembersAreNotLookedAt)
{
    expectAccepted("\"BoardType\":5,\"modes\":5,\"name\":5,\"sequence\":-1,\"featureLevel\":\"x\"");
}

TEST_F(OptionalProperties, LastPropertyOfAWrongTypeIsNamed)
{
    for (const PropertyRule* first = propertyRules; first != std::end(propertyRules); ++first) {
        for (const PropertyRule* last = first + 1; last != std::end(propertyRules); ++last) {
            expectWrongType(member(first->name, "true") + "," + member(last->name, "true"), last->name);
            expectWrongType(member(last->name, "true") + "," + member(first->name, "true"), last->name);
        }
    }
    expectWrongType("\"boardType\":5,\"mode\":7", "mode");
}

TEST_F(OptionalProperties, StringsMayBeEmpty)
{
    for (const char* name : {"boardType", "boardVariant", "targetPath"}) {
        expectAccepted(member(name, "\"\""));
    }
}

TEST_F(OptionalProperties, ArraysOfGoodElementsAreAccepted)
{
    for (std::int32_t board : {entryItself, 3}) {
        expectAccepted("\"boardType\":[\"a\",\"\",\"a\"]", board);
        expectAccepted("\"boardVariant\":[\"a\",null]", board);
        expectAccepted("\"boardVariant\":[null,null,\"\"]", board);
        for (const char* name : {"boardId", "hwCompatibilityId", "swCompatibilityId"}) {
            expectAccepted(member(name, "[0,1,4294967295,18446744073709551615]"), board);
        }
    }
}

TEST_F(OptionalProperties, BoardTypesMustBeStrings)
{
    for (const char* elements : {"[null]", "[5]", "[true]", "[[]]", "[[\"a\"]]", "[{}]", "[\"a\",1]", "[1,\"a\"]"}) {
        expectWrongElements(member("boardType", elements), "boardType");
    }
}

TEST_F(OptionalProperties, BoardVariantsMustBeStringsOrNull)
{
    for (const char* elements : {"[5]", "[false]", "[[null]]", "[{}]", "[\"a\",null,0]", "[-1.5,\"a\"]"}) {
        expectWrongElements(member("boardVariant", elements), "boardVariant");
    }
}

TEST_F(OptionalProperties, NumericElementsMustBeUnsignedIntegers)
{
    for (const char* name : {"boardId", "hwCompatibilityId", "swCompatibilityId"}) {
        for (const char* elements : {"[null]", "[\"1\"]", "[true]", "[-1]", "[-0]", "[1.0]", "[1e3]", "[[1]]", "[{}]",
                                     "[1,\"2\"]", "[\"1\",2]", "[18446744073709551616]"}) {
            expectWrongElements(member(name, elements), name);
        }
    }
}

TEST_F(OptionalProperties, FirstPropertyWithABadElementIsNamed)
{
    const char* const names[] = {"boardType", "boardVariant", "boardId", "hwCompatibilityId", "swCompatibilityId"};
    for (const char* const* first = names; first != std::end(names); ++first) {
        for (const char* const* last = first + 1; last != std::end(names); ++last) {
            expectWrongElements(member(*first, "[true]") + "," + member(*last, "[true]"), *first);
            expectWrongElements(member(*last, "[true]") + "," + member(*first, "[true]"), *first);
        }
    }
}

TEST_F(OptionalProperties, TypesAreCheckedBeforeElements)
{
    expectWrongType("\"boardType\":[5],\"id\":\"1\"", "id");
    expectWrongType("\"boardId\":[-1],\"boardType\":5", "boardType");
}

TEST_F(OptionalProperties, ElementsAreCheckedBeforeTheVersion)
{
    expectWrongElements("\"swCompatibilityId\":[\"1\"],\"version\":\"\"", "swCompatibilityId");
}

TEST_F(OptionalProperties, VersionMustParse)
{
    for (const char* version : {"", "0", "0.0", "new", "1.2.3.4", "1.2 ", "256.1"}) {
        const std::string members = member("version", "\"" + std::string(version) + "\"");
        expectRefused(members, 4, entryItself, "ERROR: File entry 4 is invalid. Property \"version\" is invalid.\n");
        expectRefused(members, 12, 3,
                      "ERROR: File entry 12 is invalid. Property \"version\" of \"boards\" element 3 is invalid.\n");
    }
}

TEST_F(OptionalProperties, VersionMayBeAnyVersion)
{
    for (const char* version : {"1", "0.1", "1.2", "1.2.3", "1.2a3", "1.2b3", "1.2.3r4p5", "5.0s3.7", "01.02"}) {
        expectAccepted(member("version", "\"" + std::string(version) + "\""));
    }
}

TEST_F(OptionalProperties, VersionIsCheckedBeforeTheMode)
{
    expectRefused("\"version\":\"\",\"mode\":\"none\"", 4, entryItself,
                  "ERROR: File entry 4 is invalid. Property \"version\" is invalid.\n");
}

TEST_F(OptionalProperties, ModeIsStandardOrUpgrade)
{
    expectAccepted("\"mode\":\"standard\"");
    expectAccepted("\"mode\":\"upgrade\"");
    for (const char* mode : {"", "Standard", "UPGRADE", "standard ", " upgrade", "upgrades", "upgrad", "upgrade\\u0000",
                             "standard\\u0000x"}) {
        const std::string members = member("mode", "\"" + std::string(mode) + "\"");
        expectRefused(members, 4, entryItself, "ERROR: File entry 4 is invalid. Property \"mode\" is invalid.\n");
        expectRefused(members, 12, 3,
                      "ERROR: File entry 12 is invalid. Property \"mode\" of \"boards\" element 3 is invalid.\n");
    }
}

TEST_F(OptionalProperties, OfTheFileAreNotAllowedInABoard)
{
    for (const char* members :
         {"\"version\":\"1.0\"", "\"version\":null", "\"checksumCrc32\":0", "\"mode\":\"standard\"",
          "\"mode\":\"upgrade\",\"version\":\"1.0\",\"checksumCrc32\":1"}) {
        expectAccepted(members);
        expectRefused(members, 12, 3,
                      "ERROR: File entry 12 is invalid. \"boards\" element 3 is invalid. Properties \"version\", "
                      "\"checksumCrc32\" and \"mode\" must not be specified inside a \"boards\" element.\n");
    }
}

TEST_F(OptionalProperties, ValuesAreCheckedBeforeTheirPlace)
{
    expectRefused("\"checksumCrc32\":1,\"mode\":\"none\"", 4, 0,
                  "ERROR: File entry 4 is invalid. Property \"mode\" of \"boards\" element 0 is invalid.\n");
    expectWrongElements("\"checksumCrc32\":1,\"boardId\":[-1]", "boardId");
}
