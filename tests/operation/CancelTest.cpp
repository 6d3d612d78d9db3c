// Cancelling later updates of a board whose update failed: they build on the ones before.
#include "operation/OperationFixture.h"
#include "support/Namespaces.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Cancel = OperationFixture;

TEST_F(Cancel, CancelsLaterPhasesOfTheSameBoardOnly)
{
    letUpdateFail(1, 1);
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    addElement(1, 3, 3);
    addElement(2, 1, 2);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "failure 0", "progress 100", "progress 100",  //
                                                "failure 1", "failure 2",                                //
                                                "phase 1", "progress 100", "progress 100",               //
                                                "phase 2", "end of phases"));
    EXPECT_THAT(states(), ElementsAre(FAILED, CANCELLED, CANCELLED, FINISHED));
    EXPECT_EQ(calls("update2").size(), 2u);
}

TEST_F(Cancel, LetsOtherUpdatesOfTheSamePhaseFinish)
{
    letStartFail(1, 1);
    addElement(1, 1, 1);
    addElement(1, 2, 1);
    addElement(1, 3, 2);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(FAILED, FINISHED, CANCELLED));
}

TEST_F(Cancel, LeavesEarlierPhasesAsTheyAre)
{
    letUpdateFail(1, 2);
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    addElement(1, 3, 3);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(FINISHED, FAILED, CANCELLED));
}

TEST_F(Cancel, ReportsEachCancelledElementOnce)
{
    letUpdateFail(1, 1);
    letUpdateFail(1, 2);
    addElement(1, 1, 1);
    addElement(1, 2, 1);
    addElement(1, 3, 2);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "failure 0", "failure 1", "progress 100", "progress 100",
                                                "failure 2", "phase 1", "end of phases"));
}

TEST_F(Cancel, CancelsFilesOfTheFlashDriveOnTheSameBoard)
{
    SKIP_WITHOUT_MOUNT();
    hasFlashDrive = true;
    letUpdateFail(1, 1);
    addElement(1, 1, 1);
    addFileElement(1, 2, "c.bin", 2);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(FAILED, CANCELLED));
    EXPECT_FALSE(std::filesystem::exists(drive() / "c.bin"));
}

TEST_F(Cancel, DoesNotCheckTheFilesOfCancelledElements)
{
    letUpdateFail(1, 1);
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    missingFiles = {"b1e2.bin"};
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(FAILED, CANCELLED));
    EXPECT_FALSE(file(1).fileMissing);
}

TEST_F(Cancel, CancelsPendingElementsFromThePhaseOn)
{
    for (unsigned id = 1; id <= 8; ++id) {
        addElement(1, id, id);
    }
    addElement(2, 1, 8);
    prepare();
    ASSERT_TRUE(update());
    journal->clear();
    become({PENDING, PENDING, PENDING, NOTHING_TO_DO, RUNNING, FAILED, FINISHED, PENDING, PENDING});

    operation().cancelUpdates(element(0).boardAddress, 2);

    EXPECT_THAT(states(),
                ElementsAre(PENDING, PENDING, CANCELLED, NOTHING_TO_DO, RUNNING, FAILED, FINISHED, CANCELLED, PENDING));
    EXPECT_THAT(journal->events(), ElementsAre("<failure 2>", "<failure 7>"));
}

TEST_F(Cancel, FindsPendingElementsOutsideOfAnUpdate)
{
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    addElement(2, 1, 2);
    prepare();
    become({PENDING, PENDING, PENDING});

    operation().cancelUpdates(element(2).boardAddress, 1);
    EXPECT_THAT(states(), ElementsAre(PENDING, PENDING, CANCELLED));

    operation().cancelUpdates(element(0).boardAddress, 0);
    EXPECT_THAT(states(), ElementsAre(CANCELLED, CANCELLED, CANCELLED));
    EXPECT_THAT(journal->reports(), ElementsAre("failure 2", "failure 0", "failure 1"));
}

TEST_F(Cancel, FindsElementsThatHaveBecomePendingAgain)
{
    letUpdateFail(1, 1);
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    addElement(1, 3, 3);
    prepare();
    updater->disableUpdateElement(1);
    ASSERT_FALSE(update());
    ASSERT_THAT(states(), ElementsAre(FAILED, NOTHING_TO_DO, CANCELLED));
    element(1).updateState = PENDING;
    element(2).updateState = PENDING;

    operation().cancelUpdates(element(0).boardAddress, 1);

    EXPECT_THAT(states(), ElementsAre(FAILED, CANCELLED, CANCELLED));
}

TEST_F(Cancel, CancelsNothingOfAnotherBoard)
{
    addElement(1, 1);
    prepare();
    element(0).updateState = PENDING;

    operation().cancelUpdates(element(0).boardAddress[3], 0);
    operation().cancelUpdates(ZoCInventoryAddress(), 0);

    EXPECT_THAT(states(), ElementsAre(PENDING));
    EXPECT_THAT(journal->events(), IsEmpty());
}

TEST_F(Cancel, CancelsAgainInALaterUpdate)
{
    scriptOf(1, 1)["polls"] = Json::array({failed(), failed()});
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    prepare();
    ASSERT_FALSE(update());
    ASSERT_THAT(states(), ElementsAre(FAILED, CANCELLED));
    journal->clear();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(FAILED, CANCELLED));
    EXPECT_EQ(calls("update2").size(), 2u);
    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "failure 0", "progress 100", "progress 100", "failure 1",
                                                "phase 1", "end of phases"));
}
