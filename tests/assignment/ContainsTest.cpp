// Comparing one property: which of a file's values allow an element's value.
#include "assignment/AssignmentFixture.h"

namespace {

using ZoNJson::json;

bool contains(const std::string& expected, const json& value)
{
    return ZoCUpdateAssignment::contains(parseJson(expected), value);
}

TEST(Contains, AStringAllowsOnlyItself)
{
    EXPECT_TRUE(contains(R"("A")", json("A")));
    EXPECT_FALSE(contains(R"("A")", json("a")));
    EXPECT_FALSE(contains(R"("A")", json("AA")));
    EXPECT_FALSE(contains(R"("AA")", json("A")));
    EXPECT_FALSE(contains(R"("A")", json("")));
    EXPECT_TRUE(contains(R"("")", json("")));
}

TEST(Contains, AnUnsignedNumberAllowsOnlyItself)
{
    EXPECT_TRUE(contains("5", json(5u)));
    EXPECT_TRUE(contains("0", json(0u)));
    EXPECT_FALSE(contains("5", json(6u)));
}

TEST(Contains, NumbersAreComparedWith64Bits)
{
    EXPECT_FALSE(contains("4294967301", json(5u)));
    EXPECT_TRUE(contains("18446744073709551615", json(18446744073709551615ull)));
    EXPECT_FALSE(contains("18446744073709551615", json(4294967295u)));
}

TEST(Contains, NullAllowsOnlyNull)
{
    EXPECT_TRUE(contains("null", json(nullptr)));
    EXPECT_FALSE(contains("null", json("")));
    EXPECT_FALSE(contains("null", json(0u)));
    EXPECT_FALSE(contains(R"("")", json(nullptr)));
    EXPECT_FALSE(contains("0", json(nullptr)));
}

TEST(Contains, AStringNeverEqualsANumber)
{
    EXPECT_FALSE(contains(R"("5")", json(5u)));
    EXPECT_FALSE(contains("5", json("5")));
}

TEST(Contains, SignedAndFloatingPointNumbersEqualNothing)
{
    EXPECT_FALSE(contains("-5", json(5u)));
    EXPECT_FALSE(contains("-5", json(-5)));
    EXPECT_FALSE(contains("5", json(5)));
    EXPECT_FALSE(contains("5.0", json(5u)));
    EXPECT_FALSE(contains("5e0", json(5u)));
    EXPECT_FALSE(contains("18446744073709551616", json(18446744073709551615ull)));
}

TEST(Contains, TruthValuesAndObjectsEqualNothing)
{
    EXPECT_FALSE(contains("true", json(true)));
    EXPECT_FALSE(contains("{}", json::object()));
    EXPECT_FALSE(contains(R"({"A": 5})", json(5u)));
    EXPECT_FALSE(contains(R"({"A": "A"})", json("A")));
}

TEST(Contains, AnArrayAllowsEachOfItsValues)
{
    const std::string expected = R"(["A", 5, null, "B"])";
    EXPECT_TRUE(contains(expected, json("A")));
    EXPECT_TRUE(contains(expected, json("B")));
    EXPECT_TRUE(contains(expected, json(5u)));
    EXPECT_TRUE(contains(expected, json(nullptr)));
    EXPECT_FALSE(contains(expected, json("C")));
    EXPECT_FALSE(contains(expected, json(6u)));
    EXPECT_FALSE(contains(expected, json("5")));
}

TEST(Contains, AnEmptyArrayAllowsNothing)
{
    EXPECT_FALSE(contains("[]", json("A")));
    EXPECT_FALSE(contains("[]", json(0u)));
    EXPECT_FALSE(contains("[]", json(nullptr)));
}

TEST(Contains, ANestedArrayIsNotEntered)
{
    EXPECT_FALSE(contains(R"([["A"], [5], [null]])", json("A")));
    EXPECT_FALSE(contains(R"([["A"], [5], [null]])", json(5u)));
    EXPECT_FALSE(contains(R"([["A"], [5], [null]])", json(nullptr)));
}

TEST(Contains, AnArrayIsNeverAllowedAsAValue)
{
    EXPECT_FALSE(contains(R"(["A"])", parseJson(R"(["A"])")));
    EXPECT_FALSE(contains(R"([["A"]])", parseJson(R"(["A"])")));
}

}  // namespace
