#include <gtest/gtest.h>

#include <cstdint>
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

TEST(JsonValue, IsMadeOfAnyIntegerType)
{
    EXPECT_EQ(json(std::uint64_t{18446744073709551615ull}).dump(), "18446744073709551615");
    EXPECT_EQ(json(std::int64_t{-9223372036854775807}).dump(), "-9223372036854775807");
    EXPECT_EQ(json(-9223372036854775807LL).dump(), "-9223372036854775807");
    EXPECT_TRUE(json(std::uint64_t{5}).is_number_unsigned());
    EXPECT_TRUE(json(5UL).is_number_unsigned());
    EXPECT_TRUE(json(5L).is_number());
    EXPECT_FALSE(json(5L).is_number_unsigned());
    EXPECT_FALSE(json(5LL).is_number_unsigned());
    json value;
    value["size"] = std::size_t{3};
    EXPECT_EQ(value.dump(), R"({"size":3})");
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

TEST(JsonValue, ContainsEachOfManyMembersAndNoOther)
{
    std::string text = "{";
    for (int i = 0; i < 100; i += 2) {
        text += "\"member " + std::to_string(i) + "\":" + std::to_string(i) + ",";
    }
    const json value = parse(text + "\"x\":-1}");
    for (int i = 0; i < 100; i += 2) {
        const json& member = value["member " + std::to_string(i)];
        EXPECT_EQ(member.dump(), std::to_string(i));
        EXPECT_FALSE(value.contains("member " + std::to_string(i + 1))) << i;
    }
    EXPECT_EQ(value["x"].dump(), "-1");
    EXPECT_FALSE(value.contains(""));
    EXPECT_FALSE(value.contains("y"));
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
    EXPECT_THROW(value[2], std::out_of_range);
    EXPECT_THROW(value[-1], std::out_of_range);
}

TEST(JsonValue, DoesNotGrowToAnElementThatNoArrayCanHave)
{
    json value = parse("[1,2]");
    EXPECT_THROW(value[-1], std::out_of_range);
    EXPECT_THROW(value[std::numeric_limits<std::size_t>::max()], std::out_of_range);
    EXPECT_EQ(value.dump(), "[1,2]");
}

TEST(JsonValue, TakesAnIndexOfAnyIntegerType)
{
    json value = parse("[1,2]");
    EXPECT_EQ(asConst(value)[0].dump(), "1");
    EXPECT_EQ(asConst(value)[1].dump(), "2");
    EXPECT_EQ(asConst(value)[0u].dump(), "1");
    EXPECT_EQ(asConst(value)[0L].dump(), "1");
    EXPECT_EQ(asConst(value)[0ull].dump(), "1");
    value[0] = "a";
    value[1u] = "b";
    value[2L] = "c";
    EXPECT_EQ(value.dump(), R"(["a","b","c"])");
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
    EXPECT_EQ(static_cast<std::uint64_t>(parse("18446744073709551615")), 18446744073709551615ull);
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
    for (const json& element : parse("[3,\"b\",[1]]")) {
        elements += element.dump() + ";";
    }
    EXPECT_EQ(elements, "3;\"b\";[1];");
}

TEST(JsonValue, GivesNoElementsWhenItIsNoArray)
{
    for (const json& value : {parse("{\"a\":1}"), json("text"), json(), json(1u), json::array(), parse("")}) {
        EXPECT_TRUE(value.begin() == value.end());
    }
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
