#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "JsonText.h"

using ZoNJson::json;

namespace {

const json& asConst(const json& value)
{
    return value;
}

}  // namespace

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
