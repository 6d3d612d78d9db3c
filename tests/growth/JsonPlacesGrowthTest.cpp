// Twice the description, at most 2.2 times the steps to find the places of what the check has found in it.
#include <gtest/gtest.h>

#include "growth/Steps.h"
#include "tool/documents/JsonPlaces.h"

namespace {

using TrellanTool::AskedPointers;

constexpr unsigned size = 2000;

// Pointers to the entries from the first on, or to board objects of the first entry.
class AskedInOrder final : public AskedPointers {
public:
    AskedInOrder(unsigned count, bool forBoards) : count(count), forBoards(forBoards) {}

    std::size_t size() const override { return count; }

    Asked at(std::size_t position) override
    {
        const auto number = static_cast<std::int32_t>(position);
        pointer = forBoards ? "/files/0/boards/" + std::to_string(position) : "/files/" + std::to_string(position);
        return forBoards ? Asked{0, number, pointer} : Asked{number, -1, pointer};
    }

    void takePlace(std::size_t, std::optional<std::size_t> offset) override { found += offset ? 1 : 0; }

    unsigned found = 0;

private:
    const unsigned count;
    const bool forBoards;
    std::string pointer;
};

// How many keys of the text stand in their objects already.
std::size_t duplicatesIn(std::string_view text)
{
    AskedInOrder none(0, false);
    return findJsonPlaces(text, none).duplicates.size();
}

// How many of `count` pointers lead to something in the text.
unsigned foundIn(std::string_view text, unsigned count, bool forBoards)
{
    AskedInOrder asked(count, forBoards);
    findJsonPlaces(text, asked);
    return asked.found;
}

std::string repeated(const std::string& piece, unsigned count)
{
    std::string text;
    for (unsigned i = 0; i < count; ++i) {
        text += piece;
    }
    return text;
}

}  // namespace

TEST(JsonPlacesGrowth, OfDuplicatesOfOneMemberIsThatOfTheirNumber)
{
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        const std::string text = "{" + repeated("\"a\":1,", count) + "\"a\":1}";
        return stepsOf([&] { EXPECT_EQ(duplicatesIn(text), count); });
    });
}

TEST(JsonPlacesGrowth, OfObjectsWithADuplicateIsThatOfTheirNumber)
{
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        const std::string text = "[" + repeated("{\"a\":1,\"a\":1},\n", count) + "0]";
        return stepsOf([&] { EXPECT_EQ(duplicatesIn(text), count); });
    });
}

TEST(JsonPlacesGrowth, OfElementsBelowALongKeyIsThatOfBoth)
{
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        const std::string text = "{\"" + repeated("long", count) + "\":[" + repeated("1,", count) + "0]}";
        return stepsOf([&] { foundIn(text, 1, false); });
    });
}

TEST(JsonPlacesGrowth, OfManyPlacesIsThatOfTheirNumber)
{
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        const std::string text = "{\"files\":[" + repeated("{},\n", count) + "0]}";
        return stepsOf([&] { EXPECT_EQ(foundIn(text, count, false), count); });
    });
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        const std::string text = "{\"files\":[{\"boards\":[" + repeated("{},\n", count) + "0]}]}";
        return stepsOf([&] { EXPECT_EQ(foundIn(text, count, true), count); });
    });
}

TEST(JsonPlacesGrowth, OfListsInWhosePlaceAnotherOneCountsIsThatOfTheirNumber)
{
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        const std::string text =
            "{" + repeated("\"files\":[0],", count) + "\"files\":[" + repeated("{},", count) + "0]}";
        return stepsOf([&] { EXPECT_EQ(foundIn(text, count, false), count); });
    });
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        const std::string text =
            "{\"files\":[{" + repeated("\"boards\":[0],", count) + "\"boards\":[" + repeated("{},", count) + "0]}]}";
        return stepsOf([&] { EXPECT_EQ(foundIn(text, count, true), count); });
    });
}
