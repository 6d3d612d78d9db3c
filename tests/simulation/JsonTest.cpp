#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <memory>
#include <utility>

#include "libZoJsonLib/ZoNJson.h"
#include "support/TempDir.h"

using ZoNJson::json;

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// A stream with `content`, at its beginning.
File streamOf(const std::string& content)
{
    File file(std::tmpfile());
    std::fwrite(content.data(), 1, content.size(), file.get());
    std::rewind(file.get());
    return file;
}

json parse(const std::string& content)
{
    return json::parse(streamOf(content).get());
}

// What a document looks like when it is parsed and printed again; "invalid" when it is not valid.
std::string reprint(const std::string& content)
{
    const json value = parse(content);
    return value.is_invalid() ? "invalid" : value.dump();
}

std::string nested(std::size_t levels, const std::string& open, const std::string& close)
{
    std::string content;
    for (std::size_t level = 0; level < levels; ++level)
        content += open;
    content += "0";
    for (std::size_t level = 0; level < levels; ++level)
        content += close;
    return content;
}

const json& asConst(const json& value)
{
    return value;
}

}  // namespace

TEST(JsonParsing, AcceptsEveryKindOfValue)
{
    EXPECT_EQ(reprint("null"), "null");
    EXPECT_EQ(reprint("true"), "true");
    EXPECT_EQ(reprint("false"), "false");
    EXPECT_EQ(reprint("\"text\""), "\"text\"");
    EXPECT_EQ(reprint("-17"), "-17");
    EXPECT_EQ(reprint("[]"), "[]");
    EXPECT_EQ(reprint("{}"), "{}");
    EXPECT_EQ(reprint(" {\"a\" :\t[1, -2,\r\n3.5, \"x\", {\"b\": null}] } "), R"({"a":[1,-2,3.5,"x",{"b":null}]})");
}

TEST(JsonParsing, RefusesWhatIsNotOneDocument)
{
    for (const char* content : {"",         " ", "\n\n", "{} {}",   "1 2",      "{}x",   "nul",   "TRUE",  "'a'", "{",
                                "[",        "]", "\"",   "{\"a\"}", "{\"a\":}", "{a:1}", "{1:1}", "[1 2]", "[,]", "NaN",
                                "Infinity", "-", "+1",   "01",      "1.",       ".5",    "1e",    "0x10"})
        EXPECT_EQ(reprint(content), "invalid") << content;
}

TEST(JsonParsing, RefusesCommentsAndTrailingCommas)
{
    EXPECT_EQ(reprint("{} // comment"), "invalid");
    EXPECT_EQ(reprint("/* comment */ {}"), "invalid");
    EXPECT_EQ(reprint("# comment\n{}"), "invalid");
    EXPECT_EQ(reprint("[1,]"), "invalid");
    EXPECT_EQ(reprint("{\"a\":1,}"), "invalid");
}

TEST(JsonParsing, RefusesInvalidUtf8)
{
    EXPECT_EQ(reprint("\"\xC3\xA4\""), "\"\xC3\xA4\"");
    EXPECT_EQ(reprint("\"\xE4\""), "invalid");
    EXPECT_EQ(reprint("\"\xC0\xAF\""), "invalid");
    EXPECT_EQ(reprint("\"\xED\xA0\x80\""), "invalid");
    EXPECT_EQ(reprint("\"\xF5\x80\x80\x80\""), "invalid");
    EXPECT_EQ(reprint("{\"\xFF\":1}"), "invalid");
}

TEST(JsonParsing, RefusesLoneSurrogates)
{
    EXPECT_EQ(reprint(R"("\ud83d\ude00")"), "\"\xF0\x9F\x98\x80\"");
    EXPECT_EQ(reprint(R"("\ud83d")"), "invalid");
    EXPECT_EQ(reprint(R"("\ud83dx")"), "invalid");
    EXPECT_EQ(reprint(R"("\ud83d\u0041")"), "invalid");
    EXPECT_EQ(reprint(R"("\ude00")"), "invalid");
}

TEST(JsonParsing, RefusesRawControlCharactersInStrings)
{
    EXPECT_EQ(reprint("\"a\nb\""), "invalid");
    EXPECT_EQ(reprint("\"a\tb\""), "invalid");
    EXPECT_EQ(reprint(R"("a\nb\u0000")"), R"("a\nb\u0000")");
}

TEST(JsonParsing, RefusesNulBytesEverywhere)
{
    EXPECT_EQ(reprint(std::string("{}\0", 3)), "invalid");
    EXPECT_EQ(reprint(std::string("{}\0{}", 5)), "invalid");
    EXPECT_EQ(reprint(std::string("\0{}", 3)), "invalid");
    EXPECT_EQ(reprint(std::string("\"a\0b\"", 5)), "invalid");
    EXPECT_EQ(reprint("{}" + std::string(200000, ' ') + std::string(1, '\0')), "invalid");
}

TEST(JsonParsing, SkipsALeadingByteOrderMark)
{
    EXPECT_EQ(reprint("\xEF\xBB\xBF{\"a\":1}"), R"({"a":1})");
    EXPECT_EQ(reprint("\xEF\xBB{}"), "invalid");
    EXPECT_EQ(reprint("{}\xEF\xBB\xBF"), "invalid");
    EXPECT_EQ(reprint("\xEF\xBB\xBF"), "invalid");
}

TEST(JsonParsing, TakesTheLastOfDuplicateKeys)
{
    EXPECT_EQ(reprint(R"({"a":1,"b":2,"a":3})"), R"({"a":3,"b":2})");
    EXPECT_EQ(reprint(R"({"a":{"x":1},"a":{"y":[2]},"a":{"z":3}})"), R"({"a":{"z":3}})");
    EXPECT_EQ(reprint(R"({"a":[1,2,3],"\u0061":4})"), R"({"a":4})");
}

TEST(JsonParsing, OrdersMembersByTheBytesOfTheirKeys)
{
    EXPECT_EQ(reprint("{\"b\":1,\"\xC3\xA4\":2,\"a\":3,\"B\":4,\"aa\":5,\"\":6}"),
              "{\"\":6,\"B\":4,\"a\":3,\"aa\":5,\"b\":1,\"\xC3\xA4\":2}");
}

TEST(JsonParsing, KeepsIntegersOfUpTo64Bits)
{
    EXPECT_EQ(reprint("18446744073709551615"), "18446744073709551615");
    EXPECT_EQ(reprint("-9223372036854775808"), "-9223372036854775808");
    EXPECT_TRUE(parse("18446744073709551615").is_number_unsigned());
}

TEST(JsonParsing, TurnsLongerIntegersIntoFloatingPoint)
{
    const json value = parse("18446744073709551616");
    EXPECT_TRUE(value.is_number());
    EXPECT_FALSE(value.is_number_unsigned());
    EXPECT_EQ(value.dump(), "1.8446744073709552e+19");
    EXPECT_EQ(reprint("-9223372036854775809"), "-9.223372036854776e+18");
}

TEST(JsonParsing, RefusesNumbersBeyondADouble)
{
    EXPECT_EQ(reprint("1e308"), "1e+308");
    EXPECT_EQ(reprint("1e309"), "invalid");
    EXPECT_EQ(reprint("-1e309"), "invalid");
    EXPECT_EQ(reprint("[1, 1e400]"), "invalid");
    EXPECT_EQ(reprint(std::string(400, '9')), "invalid");
}

TEST(JsonParsing, TellsUnsignedNumbersFromOthers)
{
    EXPECT_TRUE(parse("0").is_number_unsigned());
    EXPECT_TRUE(parse("4294967296").is_number_unsigned());
    for (const char* other : {"-0", "-1", "1.0", "1e2", "0.0"}) {
        EXPECT_FALSE(parse(other).is_number_unsigned()) << other;
        EXPECT_TRUE(parse(other).is_number()) << other;
    }
    EXPECT_FALSE(parse("\"1\"").is_number());
}

TEST(JsonParsing, KeepsNumbersThroughPrinting)
{
    EXPECT_EQ(reprint("[0,-0,0.0,-0.0,1.0,0.1,-1.5,1e-7,123456789.125,5e-324]"),
              "[0,0,0.0,-0.0,1.0,0.1,-1.5,1e-07,123456789.125,5e-324]");
}

TEST(JsonParsing, Allows512NestedLevels)
{
    EXPECT_EQ(reprint(nested(512, "[", "]")), nested(512, "[", "]"));
    EXPECT_EQ(reprint(nested(512, "{\"a\":", "}")), nested(512, "{\"a\":", "}"));
}

TEST(JsonParsing, RefusesMoreThan512NestedLevels)
{
    EXPECT_EQ(reprint(nested(513, "[", "]")), "invalid");
    EXPECT_EQ(reprint(nested(513, "{\"a\":", "}")), "invalid");
    EXPECT_EQ(reprint(nested(257, "[{\"a\":", "}]")), "invalid");
    EXPECT_EQ(reprint(nested(100000, "[", "]")), "invalid");
    EXPECT_EQ(reprint(std::string(100000, '[')), "invalid");
}

TEST(JsonParsing, CountsOnlyTheLevelsThatAreOpen)
{
    const std::string deep = nested(511, "[", "]");
    EXPECT_EQ(reprint("[" + deep + "," + deep + "]"), "[" + deep + "," + deep + "]");
}

TEST(JsonParsing, TakesTheRestOfTheStream)
{
    const File file = streamOf("skipped [1,2]");
    std::fseek(file.get(), 7, SEEK_SET);
    EXPECT_EQ(json::parse(file.get()).dump(), "[1,2]");
}

TEST(JsonParsing, LeavesTheStreamOpen)
{
    const File file = streamOf("{}");
    json::parse(file.get());
    EXPECT_EQ(std::fseek(file.get(), 0, SEEK_SET), 0);
    EXPECT_EQ(json::parse(file.get()).dump(), "{}");
}

TEST(JsonParsing, RefusesAStreamThatCannotBeRead)
{
    const TempDir directory;
    const File folder(std::fopen(directory.path().c_str(), "rb"));
    ASSERT_NE(folder, nullptr);
    EXPECT_TRUE(json::parse(folder.get()).is_invalid());
}

TEST(JsonParsing, KeepsTheBlanksWithinStrings)
{
    EXPECT_EQ(reprint(R"({ "a  b" :  "  x \"  y  \\"  ,  "c":"   "  })"), R"({"a  b":"  x \"  y  \\","c":"   "})");
}

TEST(JsonParsing, KeepsNumbersApartThatOnlyBlanksSeparate)
{
    EXPECT_EQ(reprint("[1  ,  2]"), "[1,2]");
    EXPECT_EQ(reprint("[1  2]"), "invalid");
    EXPECT_EQ(reprint("[-  1]"), "invalid");
}

TEST(JsonParsing, ReadsADocumentOfManyBlanks)
{
    const std::string blanks(10000000, ' ');
    EXPECT_EQ(reprint(blanks + "[1," + blanks + "2]" + blanks), "[1,2]");
    EXPECT_EQ(reprint(blanks), "invalid");
}

TEST(JsonParsing, ReadsADocumentOfManyEntries)
{
    std::string content = "{\"files\":[";
    for (unsigned index = 0; index < 100000; ++index)
        content += (index == 0 ? "" : ",") + std::string("{\"fileName\":\"f") + std::to_string(index) + "\"}";
    const json value = parse(content + "]}");
    ASSERT_EQ(value["files"].size(), 100000u);
    EXPECT_EQ(static_cast<std::string>(value["files"][std::size_t{99999}]["fileName"]), "f99999");
}

TEST(JsonParsing, GivesNothingOfAnInvalidDocument)
{
    const json value = parse("{\"a\":1");
    EXPECT_TRUE(value.is_invalid());
    EXPECT_FALSE(value.is_null());
    EXPECT_FALSE(value.is_object());
    EXPECT_EQ(value.size(), 0u);
    EXPECT_FALSE(value.contains("a"));
    EXPECT_THROW(value["a"], ZoNJson::type_error);
}

TEST(JsonValue, IsOfTheKindItIsMadeOf)
{
    EXPECT_TRUE(json().is_null());
    EXPECT_TRUE(json(nullptr).is_null());
    EXPECT_TRUE(json(true).is_boolean());
    EXPECT_TRUE(json("text").is_string());
    EXPECT_TRUE(json(std::string("text")).is_string());
    EXPECT_TRUE(json::object().is_object());
    EXPECT_TRUE(json::array().is_array());
    EXPECT_FALSE(json().is_invalid());
    EXPECT_FALSE(json("null").is_null());
}

TEST(JsonValue, IsUnsignedOnlyWhenItIsMadeOfAnUnsignedNumber)
{
    EXPECT_TRUE(json(5u).is_number_unsigned());
    EXPECT_TRUE(json(5ull).is_number_unsigned());
    EXPECT_FALSE(json(5).is_number_unsigned());
    EXPECT_TRUE(json(5).is_number());
    EXPECT_EQ(json(-5).dump(), "-5");
    EXPECT_EQ(json(0xFFFFFFFFu).dump(), "4294967295");
    EXPECT_EQ(json(0xFFFFFFFFFFFFFFFFull).dump(), "18446744073709551615");
}

TEST(JsonValue, HasASizeOnlyAsAnArrayOrObject)
{
    EXPECT_EQ(parse("[1,2,3]").size(), 3u);
    EXPECT_EQ(parse("{\"a\":1,\"b\":2}").size(), 2u);
    EXPECT_EQ(json("text").size(), 0u);
    EXPECT_EQ(json(7u).size(), 0u);
    EXPECT_EQ(json().size(), 0u);
}

TEST(JsonValue, ContainsTheMembersOfAnObject)
{
    const json value = parse("{\"a\":null}");
    EXPECT_TRUE(value.contains("a"));
    EXPECT_FALSE(value.contains("b"));
    EXPECT_FALSE(parse("[\"a\"]").contains("a"));
    EXPECT_FALSE(json("a").contains("a"));
    EXPECT_FALSE(json().contains("a"));
}

TEST(JsonValue, GivesNullForAMemberThatIsNotThere)
{
    const json value = parse("{\"a\":1}");
    EXPECT_EQ(value["a"].dump(), "1");
    EXPECT_EQ(value[std::string("a")].dump(), "1");
    EXPECT_TRUE(value["b"].is_null());
    EXPECT_TRUE(value[std::string("b")].is_null());
    EXPECT_EQ(value.size(), 1u);
}

TEST(JsonValue, GetsAMemberThatIsSet)
{
    json value;
    value["info"]["formatVersion"] = "1.0";
    value[std::string("count")] = 3u;
    EXPECT_EQ(value.dump(), R"({"count":3,"info":{"formatVersion":"1.0"}})");
    value["count"] = nullptr;
    EXPECT_EQ(value.dump(), R"({"count":null,"info":{"formatVersion":"1.0"}})");
}

TEST(JsonValue, GrowsToTheElementThatIsSet)
{
    json value;
    value[std::size_t{2}] = "third";
    EXPECT_EQ(value.dump(), R"([null,null,"third"])");
    value[std::size_t{0}] = 1u;
    EXPECT_EQ(value.dump(), R"([1,null,"third"])");
    EXPECT_EQ(asConst(value)[std::size_t{2}].dump(), "\"third\"");
}

TEST(JsonValue, HasNoElementBeyondItsSize)
{
    const json value = parse("[1,2]");
    EXPECT_EQ(value[std::size_t{1}].dump(), "2");
    EXPECT_THROW(value[std::size_t{2}], std::out_of_range);
}

TEST(JsonValue, RefusesToBeUsedAsWhatItIsNot)
{
    json array = json::array();
    json object = json::object();
    json text("text");
    EXPECT_THROW(array["a"], ZoNJson::type_error);
    EXPECT_THROW(asConst(array)["a"], ZoNJson::type_error);
    EXPECT_THROW(asConst(array)[std::string("a")], ZoNJson::type_error);
    EXPECT_THROW(object[std::size_t{0}], ZoNJson::type_error);
    EXPECT_THROW(asConst(object)[std::size_t{0}], ZoNJson::type_error);
    EXPECT_THROW(text["a"], ZoNJson::type_error);
    EXPECT_THROW(text[std::size_t{0}], ZoNJson::type_error);
    EXPECT_EQ(text.dump(), "\"text\"");
}

TEST(JsonValue, ConvertsToAString)
{
    EXPECT_EQ(static_cast<std::string>(parse(R"("a\u00e4")")), "a\xC3\xA4");
    EXPECT_EQ(static_cast<std::string>(parse(R"("a\u0000b")")), std::string("a\0b", 3));
    EXPECT_THROW(static_cast<void>(static_cast<std::string>(json(1u))), ZoNJson::type_error);
    EXPECT_THROW(static_cast<void>(static_cast<std::string>(json())), ZoNJson::type_error);
}

TEST(JsonValue, ConvertsToAnUnsignedNumber)
{
    EXPECT_EQ(static_cast<unsigned long long>(parse("18446744073709551615")), 18446744073709551615ull);
    EXPECT_EQ(static_cast<unsigned>(parse("4294967295")), 4294967295u);
    for (const char* other : {"-1", "-0", "1.0", "\"1\"", "true", "null", "[1]"}) {
        EXPECT_THROW(static_cast<void>(static_cast<unsigned>(parse(other))), ZoNJson::type_error) << other;
        EXPECT_THROW(static_cast<void>(static_cast<unsigned long long>(parse(other))), ZoNJson::type_error) << other;
    }
}

TEST(JsonValue, BeyondTheRangeConvertsToTheLargestNumber)
{
    EXPECT_EQ(static_cast<unsigned>(parse("4294967296")), std::numeric_limits<unsigned>::max());
    EXPECT_EQ(static_cast<unsigned>(parse("18446744073709551615")), std::numeric_limits<unsigned>::max());
}

TEST(JsonValue, GivesTheElementsOfAnArrayInTheirOrder)
{
    std::string elements;
    for (const json& element : parse("[3,\"b\",[1]]"))
        elements += element.dump() + ";";
    EXPECT_EQ(elements, "3;\"b\";[1];");
}

TEST(JsonValue, GivesNoElementsWhenItIsNoArray)
{
    for (const json& value : {parse("{\"a\":1}"), json("text"), json(), json(1u), json::array(), parse("")})
        EXPECT_TRUE(value.begin() == value.end());
}

TEST(JsonValue, DoesNotChangeWithItsCopies)
{
    const json original = parse(R"({"a":{"b":[1,2]},"c":3})");
    json copy = original;
    copy["a"]["b"][std::size_t{0}] = "changed";
    copy["d"] = 4u;
    EXPECT_EQ(original.dump(), R"({"a":{"b":[1,2]},"c":3})");
    EXPECT_EQ(copy.dump(), R"({"a":{"b":["changed",2]},"c":3,"d":4})");
}

TEST(JsonValue, IsNotChangedThroughAPartThatWasTakenOut)
{
    json whole = parse(R"({"files":[{"name":"f"}]})");
    json part = whole["files"][std::size_t{0}];
    part["checksumCrc32"] = 7u;
    whole["files"][std::size_t{0}]["name"] = "g";
    EXPECT_EQ(part.dump(), R"({"checksumCrc32":7,"name":"f"})");
    EXPECT_EQ(whole.dump(), R"({"files":[{"name":"g"}]})");
}

TEST(JsonValue, SharesTheNodesOfItsCopies)
{
    const json original = parse(R"({"a":{"b":[1,2]},"c":[3]})");
    json copy = original;
    EXPECT_EQ(&asConst(copy)["c"], &original["c"]);
    copy["a"] = 1u;
    EXPECT_NE(&asConst(copy)["c"], &original["c"]);
    EXPECT_EQ(&*asConst(copy)["c"].begin(), &*original["c"].begin());
}

TEST(JsonValue, OutlivesTheDocumentItWasTakenFrom)
{
    json part;
    {
        const json whole = parse(R"({"files":[{"name":"f"}]})");
        part = whole["files"];
    }
    EXPECT_EQ(part.dump(), R"([{"name":"f"}])");
}

TEST(JsonValue, CanBecomeAPartOfItself)
{
    json value = parse(R"({"a":{"b":[1,2]}})");
    value = value["a"]["b"];
    EXPECT_EQ(value.dump(), "[1,2]");
    json moved = parse(R"({"a":{"b":[1,2]}})");
    moved = std::move(moved["a"]["b"]);
    EXPECT_EQ(moved.dump(), "[1,2]");
}

TEST(JsonValue, IsNullAfterItWasMovedAway)
{
    json value = parse("[1,2]");
    const json taken = std::move(value);
    EXPECT_EQ(taken.dump(), "[1,2]");
    EXPECT_TRUE(value.is_null());
    EXPECT_EQ(value.size(), 0u);
    EXPECT_EQ(value.dump(), "null");
}

TEST(JsonPrinting, PutsOneMemberOnALineWithAnIndent)
{
    EXPECT_EQ(parse(R"({"b":[1,{"c":true}],"a":{},"d":[]})").dump(4),
              "{\n"
              "    \"a\": {},\n"
              "    \"b\": [\n"
              "        1,\n"
              "        {\n"
              "            \"c\": true\n"
              "        }\n"
              "    ],\n"
              "    \"d\": []\n"
              "}");
}

TEST(JsonPrinting, IndentsWithTheCharacterThatIsGiven)
{
    EXPECT_EQ(parse("[[1]]").dump(1, '\t'), "[\n\t[\n\t\t1\n\t]\n]");
    EXPECT_EQ(parse("[1,2]").dump(0), "[\n1,\n2\n]");
}

TEST(JsonPrinting, EscapesWhatStringsMustNotHold)
{
    EXPECT_EQ(json("\"\\/\b\f\n\r\t\x01\x7F").dump(), R"("\"\\/\b\f\n\r\t\u0001)"
                                                      "\x7F\"");
}

TEST(JsonPrinting, EscapesCharactersBeyondAsciiWhenItIsAskedTo)
{
    const json value("\xC3\xA4\xF0\x9F\x98\x80");
    EXPECT_EQ(value.dump(), "\"\xC3\xA4\xF0\x9F\x98\x80\"");
    EXPECT_EQ(value.dump(-1, ' ', true), R"("\u00e4\ud83d\ude00")");
}

TEST(JsonPrinting, TreatsInvalidUtf8AsItIsTold)
{
    const json value(
        "a\xFF"
        "b");
    EXPECT_THROW(value.dump(), ZoNJson::type_error);
    EXPECT_EQ(value.dump(-1, ' ', false, ZoNJson::replace),
              "\"a\xEF\xBF\xBD"
              "b\"");
    EXPECT_EQ(value.dump(-1, ' ', false, ZoNJson::ignore), "\"ab\"");
}
