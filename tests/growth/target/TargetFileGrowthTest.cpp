// Twice the target file, at most 2.2 times the steps, whatever names it holds.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "growth/Steps.h"
#include "libZoInventoryTree/ZoNInventoryIDs.h"
#include "simulation/target/TargetFile.h"
#include "support/TempDir.h"

namespace {

using namespace TrellanSimulation;

// The elements of a list, joined by commas.
std::string listOf(unsigned count, const std::function<std::string(unsigned)>& element)
{
    std::string text;
    for (unsigned number = 1; number <= count; ++number) {
        text += (number == 1 ? "" : ",") + element(number);
    }
    return text;
}

// Looks for some parameters of each item, of which it may have some.
void readParameters(TreeItem& root)
{
    using namespace ZoNInventoryIDs;
    root.forEach([](const TreeItem& item) {
        item.getParameter(CONFIGURATION);
        item.getParameter(PRODUCT / BOARD_TYPE);
        item.getParameter(FIRMWARE / BOARD_TYPE);
        item.getParameter(LOCATION[2]);
        item.getParameter(LOCATION[5000]);
    });
}

// Of a target file with this content, which is read, and each of whose items is looked at.
void expectLinear(unsigned size, const std::function<std::string(unsigned)>& textOf)
{
    const TempDir folder;
    expectTwiceTheStepsAtMost(size, [&](unsigned count) {
        const auto path = folder.write("target.json", textOf(count));
        return stepsOf([&] {
            TargetFile file(path);
            readParameters(*file.makeTree());
        });
    });
}

std::string withItems(const std::string& items)
{
    return R"({"tree":{"id":"ROOT","items":[)" + items + "]}}";
}

}  // namespace

// More names than are remembered while a document is read, so that each of them comes anew in each item.
TEST(TargetFileGrowth, OfItemsThatShareManyLongNamesIsThatOfTheItems)
{
    const std::string parameters =
        listOf(300, [](unsigned number) { return "\"LOCATION[" + std::to_string(number + 1) + "]\":1"; });
    expectLinear(200, [&](unsigned count) {
        return withItems(listOf(
            count, [&](unsigned) { return R"({"id":"HCN","parameters":{"CONFIGURATION":1,)" + parameters + "}}"; }));
    });
}

TEST(TargetFileGrowth, OfItemsThatShareTwoLongNamesIsThatOfTheItems)
{
    expectLinear(2000, [](unsigned count) {
        return withItems(listOf(count, [](unsigned) {
            return std::string(R"({"id":"HCN","parameters":{"LOCATION[331]":1,"CONFIGURATION":1}})");
        }));
    });
}

TEST(TargetFileGrowth, OfNamesThatAreAllDifferentIsThatOfTheNames)
{
    expectLinear(2000, [](unsigned count) {
        return withItems(listOf(count, [](unsigned number) {
            return R"({"id":"HCN","parameters":{"LOCATION[)" + std::to_string(number + 1) + "]\":1}}";
        }));
    });
}

TEST(TargetFileGrowth, OfNamesThatEndAlikeIsThatOfTheNames)
{
    expectLinear(2000, [](unsigned count) {
        return withItems(listOf(count, [](unsigned number) {
            return R"({"id":"HCN","parameters":{"PRODUCT[)" + std::to_string(number + 1) + "]/BOARD_TYPE\":1}}";
        }));
    });
}

TEST(TargetFileGrowth, OfTheCallsOfAScriptIsThatOfTheirNumber)
{
    const TempDir folder;
    expectTwiceTheStepsAtMost(1000, [&](unsigned count) {
        const auto path =
            folder.write("target.json", R"({"tree":{"id":"ROOT"},"script":{"elements":{"/ROOT#1":{"polls":[)" +
                                            listOf(count, [](unsigned) { return std::string("{}"); }) + "]}}}}");
        return stepsOf([&] {
            const TargetFile file(path);
            ScriptPositions positions;
            while (positions.next(file.script()->element("/ROOT#1").polls, "polls", "/ROOT#1")) {
            }
        });
    });
}
