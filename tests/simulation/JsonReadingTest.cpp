#include <gtest/gtest.h>

#include "JsonText.h"
#include "simulation/json/JsonBuilder.h"

using namespace TrellanSimulation;

namespace {

constexpr std::size_t levels = 4;

// The text after it was read as a document.
std::string afterReading(std::string text, JsonVerdict expected)
{
    JsonBuilder builder(MemberOrder::written);
    const JsonVerdict verdict = readJson(text, builder, levels);
    EXPECT_TRUE(verdict == expected) << text;
    if (verdict == JsonVerdict::valid) {
        releaseValue(builder.take());
    }
    return text;
}

std::string onceRead(const std::string& text)
{
    return afterReading(text, JsonVerdict::valid);
}

bool isRefused(const std::string& text)
{
    return parse(text).is_invalid();
}

}  // namespace

TEST(JsonReading, LeavesTheTextAsItIs)
{
    EXPECT_EQ(onceRead(R"({"": "", "a": "b", "long key of 24 characters": ["a text of twenty-five bytes", 1, -2.5]})"),
              R"({"": "", "a": "b", "long key of 24 characters": ["a text of twenty-five bytes", 1, -2.5]})");
    EXPECT_EQ(onceRead("\"\""), "\"\"");
    EXPECT_EQ(onceRead("\xEF\xBB\xBF{\"\xC3\xA4\": \"\xE2\x82\xAC\"}"), "\xEF\xBB\xBF{\"\xC3\xA4\": \"\xE2\x82\xAC\"}");
}

TEST(JsonReading, LeavesATextWithEscapesAsItIs)
{
    EXPECT_EQ(onceRead(R"({"a\n": "\u00e4\\", "b": "\"c\""})"), R"({"a\n": "\u00e4\\", "b": "\"c\""})");
}

TEST(JsonReading, LeavesATextThatItRefusesAsItIs)
{
    EXPECT_EQ(afterReading(R"({"a": "b", "c": "d)", JsonVerdict::invalid), R"({"a": "b", "c": "d)");
    EXPECT_EQ(afterReading(R"({"a": "b", "c" "d"})", JsonVerdict::invalid), R"({"a": "b", "c" "d"})");
    EXPECT_EQ(afterReading("{\"a\": \"b\tc\"}", JsonVerdict::invalid), "{\"a\": \"b\tc\"}");
    EXPECT_EQ(afterReading(R"({"a": ["b", {"c": [[]]}]})", JsonVerdict::tooDeep), R"({"a": ["b", {"c": [[]]}]})");
}

TEST(JsonReading, LeavesATextWithANumberThatOnlyTheSecondParserTakesAsItIs)
{
    EXPECT_EQ(onceRead(R"({"a": "b", "c": 0e400, "d": "e"})"), R"({"a": "b", "c": 0e400, "d": "e"})");
}

TEST(JsonReading, RefusesAControlCharacterOrInvalidUtf8WhereverItStandsInALongText)
{
    const std::string around = "[\"" + std::string(1100, 'a') + "\"]";
    ASSERT_FALSE(isRefused(around));
    for (const char* const refused : {"\x1A", "\x1F", "\x80", "\xFF", "\xC3", "\xED\xA0\x80"}) {
        for (std::size_t at = 2; at < 1102; ++at) {
            EXPECT_TRUE(isRefused(std::string(around).insert(at, refused))) << at;
        }
    }
}

TEST(JsonReading, TakesCharactersOfSeveralBytesWhereverTheyStandInALongText)
{
    const std::string blanks(1100, ' ');
    for (std::size_t at = 0; at <= blanks.size(); ++at) {
        const std::string text = std::string(blanks).insert(at, "\"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\"");
        EXPECT_EQ(parse(text).dump(), "\"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\"") << at;
    }
}

TEST(JsonReading, FindsAnEscapeWhereverItStandsInALongText)
{
    const std::string blanks(1100, ' ');
    for (std::size_t at = 0; at <= blanks.size(); ++at) {
        EXPECT_EQ(parse(std::string(blanks).insert(at, R"("\u0041")")).dump(), "\"A\"") << at;
    }
}

TEST(JsonReading, ReadsStringsOfAnyLengthWhereverTheyStand)
{
    for (std::size_t before = 0; before < 17; ++before) {
        for (std::size_t length = 0; length < 40; ++length) {
            const std::string text = '"' + std::string(length, 'a') + '"';
            EXPECT_EQ(parse(std::string(before, ' ') + text).dump(), text);
        }
    }
}

TEST(JsonReading, RefusesAControlCharacterOrAMissingQuoteAtAnyPlaceInAString)
{
    for (std::size_t at = 0; at < 40; ++at) {
        for (const char control : {'\x01', '\t', '\n', '\x1B', '\x1F'}) {
            EXPECT_TRUE(isRefused('"' + std::string(at, 'a') + control + "aaaaaaaaaa\"")) << at;
        }
        EXPECT_TRUE(isRefused('"' + std::string(at, 'a'))) << at;
    }
}

TEST(JsonReading, TakesBlanksOfAnyKindAndNumberBetweenValues)
{
    for (std::size_t count = 0; count < 40; ++count) {
        for (const char blank : {' ', '\n', '\r', '\t'}) {
            const std::string blanks(count, blank);
            const std::string indent = "\r\n" + std::string(count, ' ') + "\t";
            std::string text = blanks;
            for (const char* const part : {"{", "\"a\"", ":", "[", "1", ",", "true", "]", "}"}) {
                text += part + blanks + indent;
            }
            EXPECT_EQ(parse(text).dump(), R"({"a":[1,true]})") << count;
        }
    }
}

TEST(JsonReading, RefusesWhatIsNoBlankOfJsonBetweenValues)
{
    for (const char* const other : {"\v", "\f", "\x01", "\xC2\xA0", "\xE2\x80\xA8"}) {
        for (std::size_t count = 0; count < 20; ++count) {
            EXPECT_TRUE(isRefused("[1,\n" + std::string(count, ' ') + other + " 2]")) << other << count;
        }
    }
}
