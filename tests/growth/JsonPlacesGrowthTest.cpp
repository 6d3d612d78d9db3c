// Twice the description, at most 2.2 times the steps to find the places of what the check has found in it.
#include <gtest/gtest.h>

#include "growth/Steps.h"
#include "tool/documents/JsonPlaces.h"

namespace {

using TrellanTool::findJsonPlaces;

constexpr unsigned size = 2000;

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
        return stepsOf([&] { EXPECT_EQ(findJsonPlaces(text, {}).duplicateKeys.size(), count); });
    });
}

TEST(JsonPlacesGrowth, OfObjectsWithADuplicateIsThatOfTheirNumber)
{
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        const std::string text = "[" + repeated("{\"a\":1,\"a\":1},\n", count) + "0]";
        return stepsOf([&] { EXPECT_EQ(findJsonPlaces(text, {}).duplicateKeys.size(), count); });
    });
}

TEST(JsonPlacesGrowth, OfElementsBelowALongKeyIsThatOfBoth)
{
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        const std::string text = "{\"" + repeated("long", count) + "\":[" + repeated("1,", count) + "0]}";
        return stepsOf([&] { findJsonPlaces(text, {"/files/0"}); });
    });
}

TEST(JsonPlacesGrowth, OfManyPlacesIsThatOfTheirNumber)
{
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        const std::string text = "{\"files\":[" + repeated("{},\n", count) + "0]}";
        std::vector<std::string> pointers;
        for (unsigned i = 0; i < count; ++i) {
            pointers.push_back("/files/" + std::to_string(i));
        }
        return stepsOf([&] { EXPECT_TRUE(findJsonPlaces(text, pointers).places.back()); });
    });
}
