// Twice the description, at most 2.2 times the steps to check it: where lists are shared by many board objects, and
// where they stand beside many board types.
#include <gtest/gtest.h>

#include "ZoITrellanInspector.h"
#include "growth/Steps.h"
#include "growth/World.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr unsigned size = 500;

// Of a check of so many of these entries.
std::size_t stepsOfCheck(unsigned entries, const std::function<Json(unsigned)>& entry)
{
    World world({entry, [](Json&, Json&, unsigned) {}}, entries, 1);
    world.apply();
    const std::unique_ptr<ZoITrellanInspector> inspector(ZoITrellanInspector::createInstance(world.updater()));
    return stepsOf([&] { inspector->checkArchive(nullptr, nullptr); });
}

// Of entries for what `target` says, with so many numbers of hardware and as many board objects, for a type each, that
// share them.
std::size_t stepsOfBoards(unsigned entries, unsigned count, const Json& target)
{
    Json members = target;
    for (unsigned i = 0; i < count; ++i) {
        members["hwCompatibilityId"].push_back(i);
        members["boards"].push_back({{"boardType", "T" + std::to_string(i)}});
    }
    return stepsOfCheck(entries, [&](unsigned) { return members; });
}

// Of entries for what `target` says, with so many numbers of hardware and as many board types.
std::size_t stepsOfTypes(unsigned entries, unsigned count, const Json& target)
{
    Json members = target;
    for (unsigned i = 0; i < count; ++i) {
        members["hwCompatibilityId"].push_back(i);
        members["boardType"].push_back("T" + std::to_string(i));
    }
    return stepsOfCheck(entries, [&](unsigned) { return members; });
}

}  // namespace

TEST(CheckGrowth, OfBoardObjectsThatShareAListIsThatOfTheirNumberAndTheList)
{
    for (const unsigned entries : {1u, 2u, 20u}) {
        expectTwiceTheStepsAtMost(size / entries, [=](unsigned count) {
            return stepsOfBoards(entries, count, {{"targetPath", "p"}});
        });
        expectTwiceTheStepsAtMost(size / entries, [=](unsigned count) {
            return stepsOfBoards(entries, count, {{"id", 1}});
        });
    }
}

TEST(CheckGrowth, OfBoardTypesBesideAListIsThatOfBoth)
{
    for (const unsigned entries : {1u, 2u, 20u}) {
        expectTwiceTheStepsAtMost(size / entries, [=](unsigned count) {
            return stepsOfTypes(entries, count, {{"targetPath", "p"}});
        });
        expectTwiceTheStepsAtMost(size / entries, [=](unsigned count) {
            return stepsOfTypes(entries, count, {{"id", 1}});
        });
    }
}

TEST(CheckGrowth, OfBoardObjectsThatShareAPathIsThatOfTheirNumberAndThePath)
{
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        Json members = {{"targetPath", std::string(100 * count, 'p')}};
        for (unsigned i = 0; i < count; ++i) {
            members["boards"].push_back({{"boardType", "T" + std::to_string(i)}});
        }
        return stepsOfCheck(1, [&](unsigned) { return members; });
    });
}
