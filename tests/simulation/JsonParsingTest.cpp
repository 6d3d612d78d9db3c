#include <gtest/gtest.h>

#include "JsonText.h"
#include "allocations/Allocations.h"
#include "support/TempDir.h"

using ZoNJson::json;

namespace {

// What a document looks like when it is parsed and printed again; "invalid" when it is not valid.
std::string reprint(const std::string& content)
{
    const json value = parse(content);
    return value.is_invalid() ? "invalid" : value.dump();
}

std::string nested(std::size_t levels, const std::string& open, const std::string& close)
{
    std::string content;
    for (std::size_t level = 0; level < levels; ++level) {
        content += open;
    }
    content += "0";
    for (std::size_t level = 0; level < levels; ++level) {
        content += close;
    }
    return content;
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
                                "Infinity", "-", "+1",   "01",      "1.",       ".5",    "1e",    "0x10"}) {
        EXPECT_EQ(reprint(content), "invalid") << content;
    }
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

TEST(JsonParsing, RefusesRawControlCharactersWhereverTheyStandInAString)
{
    for (const std::string& filling :
         {std::string(50, 'a'), std::string(24, 'a') + "\xC3\xBC" + std::string(24, 'a')}) {
        for (std::size_t at = 0; at < filling.size(); ++at) {
            if (static_cast<unsigned char>(filling[at]) >= 0x80) {
                continue;
            }
            for (char character = 1; character < ' '; ++character) {
                std::string text = filling;
                text[at] = character;
                EXPECT_TRUE(parse('"' + text + '"').is_invalid()) << at << ' ' << int{character};
            }
            std::string text = filling;
            text[at] = '\x7F';
            EXPECT_FALSE(parse('"' + text + '"').is_invalid()) << at;
        }
    }
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
    const OpenFile file = streamOf("skipped [1,2]");
    std::fseek(file.get(), 7, SEEK_SET);
    EXPECT_EQ(json::parse(file.get()).dump(), "[1,2]");
}

TEST(JsonParsing, LeavesTheStreamOpen)
{
    const OpenFile file = streamOf("{}");
    json::parse(file.get());
    EXPECT_EQ(std::fseek(file.get(), 0, SEEK_SET), 0);
    EXPECT_EQ(json::parse(file.get()).dump(), "{}");
}

TEST(JsonParsing, RefusesAStreamThatCannotBeRead)
{
    const TempDir directory;
    const OpenFile folder(std::fopen(directory.path().c_str(), "rb"));
    ASSERT_NE(folder, nullptr);
    EXPECT_TRUE(json::parse(folder.get()).is_invalid());
}

TEST(JsonParsing, RefusesAStreamThatFailsBehindAWholeDocument)
{
    bool wasRead = false;
    const auto readOnce = [](void* cookie, char* buffer, std::size_t) -> ssize_t {
        bool& done = *static_cast<bool*>(cookie);
        if (done) {
            return -1;
        }
        done = true;
        buffer[0] = '{';
        buffer[1] = '}';
        buffer[2] = ' ';
        return 3;
    };
    const OpenFile stream(fopencookie(&wasRead, "rb", {readOnce, nullptr, nullptr, nullptr}));
    ASSERT_NE(stream, nullptr);
    EXPECT_TRUE(json::parse(stream.get()).is_invalid());
    EXPECT_TRUE(wasRead);
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
    for (unsigned index = 0; index < 100000; ++index) {
        content += (index == 0 ? "" : ",") + std::string("{\"fileName\":\"f") + std::to_string(index) + "\"}";
    }
    const json value = parse(content + "]}");
    ASSERT_EQ(value["files"].size(), 100000u);
    EXPECT_EQ(static_cast<std::string>(value["files"][std::size_t{99999}]["fileName"]), "f99999");
}

TEST(JsonParsing, AsksForMemoryInBlocksNotForEachValue)
{
    std::string content = "[";
    for (unsigned index = 0; index < 10000; ++index) {
        content += (index == 0 ? "" : ",") + std::string("{\"fileName\":\"a name of some length\",\"ids\":[1,2.7]}");
    }
    const OpenFile file = streamOf(content + "]");
    EXPECT_LT(allocationsOf([&] { json::parse(file.get()); }), 100u);
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
