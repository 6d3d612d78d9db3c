// What an inspector says before an update of what will become of each element.
#include "Inspecting.h"

using testing::ElementsAre;
using namespace ZoNTrellanUpdater;

using StatesBeforeUpdate = Inspecting;

TEST_F(StatesBeforeUpdate, ThereIsNoElementBeforeApply)
{
    boards = {ioBoard({installed(1)})};
    ASSERT_EQ(apply(), 0u);
    const std::unique_ptr<ZoITrellanUpdater> other(ZoITrellanUpdater::createInstance(options));
    const std::unique_ptr<ZoITrellanInspector> early(ZoITrellanInspector::createInstance(*other));

    EXPECT_EQ(early->getElementCount(), 0u);
    EXPECT_EQ(early->getFileCount(), 0u);
    EXPECT_EQ(early->getPhaseCount(), 0u);
    EXPECT_FALSE(early->isTargetSupported());
}

TEST_F(StatesBeforeUpdate, AnElementWithAFileIsUpdatedAndOneWithoutIsNot)
{
    boards = {ioBoard({installed(1), installed(2)})};
    entries = {ioEntry("one.bin", 1)};
    ASSERT_EQ(apply(), 0u);

    EXPECT_THAT(states(), ElementsAre("update", "noFile"));
}

TEST_F(StatesBeforeUpdate, AnElementThatHasTheFilesContentIsUpToDate)
{
    boards = {ioBoard({installed(1)})};
    entries = {ioEntry("one.bin", 1, {{"version", "1.0"}, {"checksumCrc32", 5}})};
    ASSERT_EQ(apply(), 0u);

    EXPECT_THAT(states(), ElementsAre("upToDate"));
}

TEST_F(StatesBeforeUpdate, ForceUpdatesAnElementThatHasTheFilesContentButNeverDowngradesAnUpgrade)
{
    boards = {ioBoard({installed(1), installed(2)})};
    entries = {ioEntry("one.bin", 1, {{"version", "1.0"}, {"checksumCrc32", 5}}),
               ioEntry("two.bin", 2, {{"version", "0.9"}, {"mode", "upgrade"}})};
    options.force = true;
    ASSERT_EQ(apply(), 0u);

    EXPECT_THAT(states(), ElementsAre("update", "upToDate"));
}

TEST_F(StatesBeforeUpdate, ACustomElementIsCustomOnlyWhereTheyAreLeftOut)
{
    boards = {ioBoard({installed(1, {{"CUSTOM", 1}}), installed(2, {{"CUSTOM", 1}}), installed(3)})};
    entries = {ioEntry("one.bin", 1), ioEntry("three.bin", 3)};
    ASSERT_EQ(apply(), 0u);
    EXPECT_THAT(states(), ElementsAre("update", "noFile", "update"));

    options.disableCustomElements = true;
    ASSERT_EQ(apply(), 0u);
    EXPECT_THAT(states(), ElementsAre("custom", "noFile", "update"));
}

TEST_F(StatesBeforeUpdate, ACustomElementIsCustomAlsoWhereItIsUpToDate)
{
    boards = {ioBoard({installed(1, {{"CUSTOM", 1}})})};
    entries = {ioEntry("one.bin", 1, {{"version", "1.0"}, {"checksumCrc32", 5}})};
    options.disableCustomElements = true;
    ASSERT_EQ(apply(), 0u);

    EXPECT_THAT(states(), ElementsAre("custom"));
}

TEST_F(StatesBeforeUpdate, AnElementThatTheHostDisablesIsExcludedUnlessItWasLeftOutAnyway)
{
    boards = {ioBoard({installed(1), installed(2), installed(3), installed(4)})};
    entries = {ioEntry("one.bin", 1), ioEntry("two.bin", 2),
               ioEntry("three.bin", 3, {{"version", "1.0"}, {"checksumCrc32", 5}})};
    ASSERT_EQ(apply(), 0u);
    for (const unsigned index : {1u, 2u, 3u, 4u}) {
        updater->disableUpdateElement(index);
    }

    EXPECT_THAT(states(), ElementsAre("update", "excluded", "upToDate", "noFile"));
}

TEST_F(StatesBeforeUpdate, NothingIsUpdatedOnATargetThatTheArchiveDoesNotSupport)
{
    boards = {hcnBoard({installed(1), installed(2)}), ioBoard({installed(1), installed(2), installed(3)})};
    entries = {fileEntry("hcn.bin"), ioEntry("one.bin", 1), ioEntry("two.bin", 2),
               ioEntry("three.bin", 3, {{"version", "1.0"}, {"checksumCrc32", 5}})};
    ASSERT_EQ(apply(), 2u);
    updater->disableUpdateElement(3);

    EXPECT_FALSE(inspector->isTargetSupported());
    EXPECT_THAT(states(), ElementsAre("blocked", "noFile", "blocked", "excluded", "upToDate"));
}

TEST_F(StatesBeforeUpdate, AComparisonTellsThatTheTargetIsNotSupportedToo)
{
    boards = {hcnBoard({installed(1), installed(2)}), ioBoard({installed(1)})};
    entries = {fileEntry("hcn.bin"), ioEntry("one.bin", 1)};
    ASSERT_EQ(apply(COMPARE_VERSIONS), 0u);

    EXPECT_FALSE(inspector->isTargetSupported());
    EXPECT_THAT(states(), ElementsAre("blocked", "noFile", "blocked"));
}

TEST_F(StatesBeforeUpdate, TheElementsThatBlockTheUpdateAreThoseOfTheNodesWithoutAFile)
{
    boards = {hcnBoard({installed(1), installed(2), fileElement(1, {{"LOCATION", "site.cfg"}})}),
              ioBoard({installed(2)})};
    entries = {fileEntry("hcn.bin")};
    ASSERT_EQ(apply(), 2u);

    std::vector<bool> blocks;
    for (unsigned i = 0; i < inspector->getElementCount(); ++i) {
        blocks.push_back(inspector->getElement(i).blocksUpdate);
    }
    EXPECT_THAT(blocks, ElementsAre(false, true, false, false));
}

TEST_F(StatesBeforeUpdate, ASupportedTargetHasNoBlockingElement)
{
    boards = {hcnBoard({installed(1)}), ioBoard({installed(2)})};
    entries = {fileEntry("hcn.bin")};
    ASSERT_EQ(apply(), 0u);

    EXPECT_TRUE(inspector->isTargetSupported());
    EXPECT_FALSE(inspector->getElement(0).blocksUpdate);
    EXPECT_FALSE(inspector->getElement(1).blocksUpdate);
}

TEST_F(StatesBeforeUpdate, ThePhasesAreThoseThatTheCallbackCounts)
{
    boards = {ioBoard({installed(1), installed(2), installed(3)})};
    entries = {ioEntry("one.bin", 1), ioEntry("two.bin", 2), ioEntry("three.bin", 3, {{"sequence", 2}})};
    ASSERT_EQ(apply(), 0u);
    updater->disableUpdateElement(0);

    EXPECT_EQ(inspector->getPhaseCount(), 2u);
}

TEST_F(StatesBeforeUpdate, WithoutAnArchiveNoElementHasAFile)
{
    boards = {hcnBoard({installed(1)})};
    ASSERT_EQ(apply(INSTALLED_VERSIONS), 0u);

    EXPECT_THAT(states(), ElementsAre("noFile"));
    EXPECT_FALSE(inspector->isTargetSupported());
    EXPECT_FALSE(inspector->getElement(0).blocksUpdate);
}
