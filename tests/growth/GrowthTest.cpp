// Twice the input, at most 2.2 times the steps: what is read, looked up, told and updated.
#include <gtest/gtest.h>

#include "ZoITrellanInspector.h"
#include "archive/ZoCUpdateArchive.h"
#include "growth/Steps.h"
#include "growth/World.h"
#include "inventory/ZoCUpdateInventory.h"

namespace {

constexpr unsigned size = 500;

void expectLinearRun(unsigned command)
{
    expectTwiceTheStepsAtMost(size, [&](unsigned count) {
        World world(production(), count, count, command);
        world.apply();
        return stepsOf([&] { world.updater().run(); });
    });
}

// Of `work(inspector)`, after an archive and a target of this size were read.
template <class Work>
void expectLinearInspection(Work work)
{
    expectTwiceTheStepsAtMost(size, [&](unsigned count) {
        World world(production(), count, count);
        world.apply();
        const std::unique_ptr<ZoITrellanInspector> inspector(ZoITrellanInspector::createInstance(world.updater()));
        return stepsOf([&] { work(*inspector); });
    });
}

}  // namespace

TEST(Growth, OfReadingADescriptionIsThatOfItsEntries)
{
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        World world(production(), count, 1);
        const std::string path = world.archive().path() + "/archive.json";
        ZoCUpdateArchive& archive = world.updater().getArchive();
        return stepsOf([&] { EXPECT_TRUE(archive.readDescriptionFileJson(world.errorPool(), path)); });
    });
}

TEST(Growth, OfTheElementSearchIsThatOfTheElements)
{
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        World world(production(), 1, count);
        ZoCUpdateInventory& inventory = world.updater().getInventory();
        const std::size_t steps = stepsOf([&] { inventory.getInventory(world.errorPool()); });
        EXPECT_EQ(inventory.getUpdateElementList().size(), count);
        return steps;
    });
}

TEST(Growth, OfApplyIsThatOfEntriesAndElements)
{
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        World world(production(), count, count);
        return stepsOf([&] { world.apply(); });
    });
}

TEST(Growth, OfTheTableOfUpdateFilesIsThatOfTheEntries)
{
    expectLinearRun(ZoNTrellanUpdater::PRINT_ARCHIVE);
}

TEST(Growth, OfTheDescriptionThatIsPrintedIsThatOfTheEntries)
{
    expectLinearRun(ZoNTrellanUpdater::OUTPUT_DESCRIPTION);
}

TEST(Growth, OfTheTableOfInstalledVersionsIsThatOfTheElements)
{
    expectLinearRun(ZoNTrellanUpdater::INSTALLED_VERSIONS);
}

TEST(Growth, OfTheComparisonIsThatOfTheElements)
{
    expectLinearRun(ZoNTrellanUpdater::COMPARE_VERSIONS);
}

TEST(Growth, OfAnUpdateIsThatOfTheElements)
{
    expectLinearRun(ZoNTrellanUpdater::UPDATE);
}

// The device is polled as often for each element, however long the waiting is.
TEST(Growth, OfThePollsOfAnUpdateIsThatOfItsDuration)
{
    expectTwiceTheStepsAtMost(100, [](unsigned seconds) {
        World world(production(), 10, 10, ZoNTrellanUpdater::UPDATE, seconds);
        world.apply();
        return stepsOf([&] { EXPECT_EQ(world.updater().run(), 1u); });
    });
}

TEST(Growth, OfTheHostsListsIsThatOfTheElements)
{
    expectTwiceTheStepsAtMost(size, [](unsigned count) {
        World world(production(), count, count);
        world.apply();
        return stepsOf([&] {
            for (unsigned i = 0; i < count; ++i) {
                world.updater().disableUpdateElement(i);
            }
        });
    });
}

TEST(Growth, OfACheckIsThatOfTheEntries)
{
    expectLinearInspection([](ZoITrellanInspector& inspector) { inspector.checkArchive(nullptr, nullptr); });
}

TEST(Growth, OfACheckOfTheUsedFilesIsThatOfTheEntries)
{
    expectLinearInspection([](ZoITrellanInspector& inspector) { inspector.checkUsedFiles(nullptr, nullptr); });
}

TEST(Growth, OfExplainingEachElementIsThatOfTheElements)
{
    expectLinearInspection([](ZoITrellanInspector& inspector) {
        for (unsigned i = 0; i < inspector.getElementCount(); ++i) {
            EXPECT_GT(inspector.explainElement(i), 0u);
        }
    });
}

TEST(Growth, OfExplainingAnEntryIsThatOfTheElements)
{
    expectLinearInspection([](ZoITrellanInspector& inspector) { EXPECT_GT(inspector.explainFile(0), 0u); });
}
