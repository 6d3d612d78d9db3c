// Cancelling later updates of a board whose update failed: they build on the ones before.
#include "operation/OperationTest.h"
#include "support/Namespaces.h"

using ::testing::ElementsAre;

using CancelTest = OperationTest;

TEST_F(CancelTest, CancelsLaterPhasesOfTheSameBoardOnly)
{
    scriptOf(1, 1)["polls"] = Json::array({{{"status", 3}}});
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    addElement(1, 3, 3);
    addElement(2, 1, 2);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_EQ(journal->told(),
              "<phase 0>"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 1                        \n"
              "<failure 0>"
              "<progress 100><progress 100>"
              "<failure 1><failure 2>"
              "[ERROR]\n"
              "<phase 1>"
              "\nUpdating:\n"
              "        Board 2, SN 2, Element 1                        \n"
              "<progress 100><progress 100>"
              "[OK]\n"
              "<phase 2>"
              "<phase 4294967295>"
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "    ERROR: Board 1, SN 1, Element 2:\n"
              "       Update cancelled due to previous update errors on the same board.\n"
              "    ERROR: Board 1, SN 1, Element 3:\n"
              "       Update cancelled due to previous update errors on the same board.\n"
              "\n    Update failed!\n");
    EXPECT_THAT(states(), ElementsAre(3u, 4u, 4u, 5u));
    EXPECT_EQ(calls("update2").size(), 2u);
}

TEST_F(CancelTest, LetsOtherUpdatesOfTheSamePhaseFinish)
{
    scriptOf(1, 1)["start"] = Json::array({failing(4, "no room")});
    addElement(1, 1, 1);
    addElement(1, 2, 1);
    addElement(1, 3, 2);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(3u, 5u, 4u));
}

TEST_F(CancelTest, LeavesEarlierPhasesAsTheyAre)
{
    scriptOf(1, 2)["polls"] = Json::array({{{"status", 3}}});
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    addElement(1, 3, 3);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(5u, 3u, 4u));
}

TEST_F(CancelTest, ReportsEachCancelledElementOnce)
{
    scriptOf(1, 1)["polls"] = Json::array({{{"status", 3}}});
    scriptOf(1, 2)["polls"] = Json::array({{{"status", 3}}});
    addElement(1, 1, 1);
    addElement(1, 2, 1);
    addElement(1, 3, 2);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "failure 0", "failure 1", "progress 100", "progress 100",
                                                "failure 2", "phase 1", "phase 4294967295"));
}

TEST_F(CancelTest, CancelsFilesOfTheFlashDriveOnTheSameBoard)
{
    SKIP_WITHOUT_MOUNT();
    hasFlashDrive = true;
    scriptOf(1, 1)["polls"] = Json::array({{{"status", 3}}});
    addElement(1, 1, 1);
    addFileElement(1, 2, "c.bin", 2);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(3u, 4u));
    EXPECT_FALSE(std::filesystem::exists(drive() / "c.bin"));
}

TEST_F(CancelTest, DoesNotCheckTheFilesOfCancelledElements)
{
    scriptOf(1, 1)["polls"] = Json::array({{{"status", 3}}});
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    missingFiles = {"b1e2.bin"};
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(3u, 4u));
    EXPECT_EQ(journal->text(),
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 1                        \n"
              "[ERROR]\n"
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "    ERROR: Board 1, SN 1, Element 2:\n"
              "       Update cancelled due to previous update errors on the same board.\n"
              "\n    Update failed!\n");
}

TEST_F(CancelTest, CancelsPendingElementsFromThePhaseOn)
{
    for (unsigned id = 1; id <= 8; ++id) {
        addElement(1, id, id);
    }
    addElement(2, 1, 8);
    prepare();
    ASSERT_TRUE(update());
    journal->clear();
    const std::uint32_t newStates[] = {1, 1, 1, 0, 2, 3, 5, 1, 1};
    for (unsigned i = 0; i < 9; ++i) {
        element(i).updateState = newStates[i];
    }

    operation().cancelUpdates(element(0).boardAddress, 2);

    EXPECT_THAT(states(), ElementsAre(1u, 1u, 4u, 0u, 2u, 3u, 5u, 4u, 1u));
    EXPECT_EQ(journal->told(), "<failure 2><failure 7>");
}

TEST_F(CancelTest, FindsPendingElementsOutsideOfAnUpdate)
{
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    addElement(2, 1, 2);
    prepare();
    for (unsigned i = 0; i < 3; ++i) {
        element(i).updateState = 1;
    }

    operation().cancelUpdates(element(2).boardAddress, 1);
    EXPECT_THAT(states(), ElementsAre(1u, 1u, 4u));

    operation().cancelUpdates(element(0).boardAddress, 0);
    EXPECT_THAT(states(), ElementsAre(4u, 4u, 4u));
    EXPECT_EQ(journal->told(), "<failure 2><failure 0><failure 1>");
}

TEST_F(CancelTest, FindsElementsThatHaveBecomePendingAgain)
{
    scriptOf(1, 1)["polls"] = Json::array({{{"status", 3}}});
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    addElement(1, 3, 3);
    prepare();
    updater->disableUpdateElement(1);
    ASSERT_FALSE(update());
    ASSERT_THAT(states(), ElementsAre(3u, 0u, 4u));
    element(1).updateState = 1;
    element(2).updateState = 1;

    operation().cancelUpdates(element(0).boardAddress, 1);

    EXPECT_THAT(states(), ElementsAre(3u, 4u, 4u));
}

TEST_F(CancelTest, CancelsNothingOfAnotherBoard)
{
    addElement(1, 1);
    prepare();
    element(0).updateState = 1;

    operation().cancelUpdates(element(0).boardAddress[3], 0);
    operation().cancelUpdates(ZoCInventoryAddress(), 0);

    EXPECT_THAT(states(), ElementsAre(1u));
    EXPECT_EQ(journal->told(), "");
}

TEST_F(CancelTest, CancelsAgainInALaterUpdate)
{
    scriptOf(1, 1)["polls"] = Json::array({{{"status", 3}}, {{"status", 3}}});
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    prepare();
    ASSERT_FALSE(update());
    ASSERT_THAT(states(), ElementsAre(3u, 4u));
    journal->clear();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(3u, 4u));
    EXPECT_EQ(calls("update2").size(), 2u);
    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "failure 0", "progress 100", "progress 100", "failure 1",
                                                "phase 1", "phase 4294967295"));
}
