// What copies of a value share, and that no copy changes with another one.
#include <gtest/gtest.h>

#include <utility>

#include "JsonText.h"
#include "allocations/Allocations.h"

using ZoNJson::json;

namespace {

const json& unchanged(const json& value)
{
    return value;
}

}  // namespace

TEST(JsonCopy, DoesNotChangeWithItsOriginal)
{
    const json original = parse(R"({"a":{"b":[1,2]},"c":3})");
    json copy = original;
    copy["a"]["b"][std::size_t{0}] = "changed";
    copy["d"] = 4u;
    EXPECT_EQ(original.dump(), R"({"a":{"b":[1,2]},"c":3})");
    EXPECT_EQ(copy.dump(), R"({"a":{"b":["changed",2]},"c":3,"d":4})");
}

TEST(JsonCopy, OfAPartDoesNotChangeWithTheWhole)
{
    json whole = parse(R"({"files":[{"name":"f"}]})");
    json part = whole["files"][std::size_t{0}];
    part["checksumCrc32"] = 7u;
    whole["files"][std::size_t{0}]["name"] = "g";
    EXPECT_EQ(part.dump(), R"({"checksumCrc32":7,"name":"f"})");
    EXPECT_EQ(whole.dump(), R"({"files":[{"name":"g"}]})");
}

TEST(JsonCopy, OfACopyDoesNotChangeWithIt)
{
    for (const char* const text : {R"({"a":1})", "[1]"}) {
        json original = parse(text);
        const bool isObject = original.is_object();
        const auto change = [&](json& value, unsigned number) {
            isObject ? value["a"] = number : value[std::size_t{0}] = number;
        };
        change(original, 2);
        json first = original;
        json second = first;
        json third = second;
        change(second, 3);
        change(first, 4);
        const auto shown = [&](const char* number) {
            return isObject ? "{\"a\":" + std::string(number) + "}" : "[" + std::string(number) + "]";
        };
        EXPECT_EQ(original.dump(), shown("2"));
        EXPECT_EQ(first.dump(), shown("4"));
        EXPECT_EQ(second.dump(), shown("3"));
        EXPECT_EQ(third.dump(), shown("2"));
        EXPECT_EQ(third.size(), 1U);
    }
}

TEST(JsonCopy, SharesTheNodesOfItsOriginal)
{
    const json original = parse(R"({"a":{"b":[1,2]},"c":[3]})");
    json copy = original;
    EXPECT_EQ(&unchanged(copy)["c"], &original["c"]);
    copy["a"] = 1u;
    EXPECT_NE(&unchanged(copy)["c"], &original["c"]);
    EXPECT_EQ(&*unchanged(copy)["c"].begin(), &*original["c"].begin());
}

TEST(JsonCopy, AsksForNoMemory)
{
    const json whole = parse(R"({"files":[{"name":"firmware/image.bin","boards":[{"boardType":"T"}]}]})");
    EXPECT_EQ(allocationsOf([&] {
                  const json entry = whole["files"][0];
                  const json name = entry["name"];
              }),
              0u);
}

TEST(JsonCopy, IsNotChangedThroughAReferenceThatWasHandedOutBefore)
{
    json original;
    json& member = original["a"];
    const json copy = original;
    member = 5u;
    EXPECT_EQ(copy.dump(), R"({"a":null})");
    EXPECT_EQ(original.dump(), R"({"a":5})");
}

TEST(JsonCopy, IsNotChangedThroughAReferenceToALowerLevel)
{
    json original = parse(R"({"a":{"b":[1,{"c":2}]},"d":[3]})");
    json& deep = original["a"]["b"][1]["c"];
    json& element = original["d"][0];
    json copy = original;
    const json secondCopy = copy;
    json assigned;
    assigned = original["a"];
    deep = "changed";
    element = "changed";
    EXPECT_EQ(copy.dump(), R"({"a":{"b":[1,{"c":2}]},"d":[3]})");
    EXPECT_EQ(secondCopy.dump(), R"({"a":{"b":[1,{"c":2}]},"d":[3]})");
    EXPECT_EQ(assigned.dump(), R"({"b":[1,{"c":2}]})");
    EXPECT_EQ(original.dump(), R"({"a":{"b":[1,{"c":"changed"}]},"d":["changed"]})");
}

TEST(JsonCopy, IsNotChangedThroughAReferenceThatMovedWithItsValue)
{
    json original = parse("[1,2]");
    json& element = original[0];
    json moved = std::move(original);
    const json copy = moved;
    json assigned;
    assigned = std::move(moved);
    const json copyOfAssigned = assigned;
    element = "changed";
    EXPECT_EQ(copy.dump(), "[1,2]");
    EXPECT_EQ(copyOfAssigned.dump(), "[1,2]");
    EXPECT_EQ(assigned.dump(), R"(["changed",2])");
}

TEST(JsonCopy, MayBecomeAPartOfItsOriginal)
{
    json array = json::array();
    array[0] = 1u;
    array[1] = array;
    EXPECT_EQ(array.dump(), "[1,[1,null]]");
    json object;
    object["x"] = 1u;
    object["self"] = object;
    object["self"]["self"] = object;
    EXPECT_EQ(object.dump(), R"({"self":{"self":{"self":{"self":null,"x":1},"x":1},"x":1},"x":1})");
}

TEST(JsonCopy, SharesOnlyTheLevelsOfWhichNoReferenceWasHandedOut)
{
    json original = parse(R"({"a":{"b":[1,2]},"c":[3]})");
    original["a"]["d"] = 4u;
    const json copy = original;
    EXPECT_NE(&copy["c"], &unchanged(original)["c"]);
    EXPECT_NE(&copy["a"]["b"], &unchanged(original)["a"]["b"]);
    EXPECT_EQ(&*copy["c"].begin(), &*unchanged(original)["c"].begin());
    EXPECT_EQ(&*copy["a"]["b"].begin(), &*unchanged(original)["a"]["b"].begin());
    const json second = copy;  // the copy has handed out nothing
    EXPECT_EQ(&second["c"], &copy["c"]);
    EXPECT_EQ(&second["a"]["b"], &copy["a"]["b"]);
}

TEST(JsonCopy, OutlivesTheDocumentItWasTakenFrom)
{
    json part;
    {
        const json whole = parse(R"({"files":[{"name":"f"}]})");
        part = whole["files"];
    }
    EXPECT_EQ(part.dump(), R"([{"name":"f"}])");
}

TEST(JsonCopy, OfAPartMayTakeThePlaceOfTheWhole)
{
    json value = parse(R"({"a":{"b":[1,2]}})");
    value = value["a"]["b"];
    EXPECT_EQ(value.dump(), "[1,2]");
    json moved = parse(R"({"a":{"b":[1,2]}})");
    moved = std::move(moved["a"]["b"]);
    EXPECT_EQ(moved.dump(), "[1,2]");
}
