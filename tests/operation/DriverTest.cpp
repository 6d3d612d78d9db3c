// The course of a whole update: which elements are updated, in which order, and what the host hears of it.
#include "operation/OperationTest.h"

using ::testing::ElementsAre;

using DriverTest = OperationTest;

TEST_F(DriverTest, UpdatesOneElement)
{
    addElement(1, 1);
    prepare();

    EXPECT_TRUE(update());

    EXPECT_EQ(journal->text(), textOfOneUpdate);
    EXPECT_THAT(callNames(), ElementsAre("lock", "sendLog", "update2", "usleep", "updateStatus2", "usleep", "usleep",
                                         "updateErrors2", "unlock"));
    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "progress 100", "progress 100", "phase 4294967295"));
    EXPECT_THAT(states(), ElementsAre(5u));
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(DriverTest, ShowsTheProgressOfAPhaseInOneLine)
{
    options.noProgress = false;
    addElement(1, 1);
    prepare();

    EXPECT_TRUE(update());

    EXPECT_EQ(withStars(journal->text()),
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 1                        \n"
              "100% *                                                  \r"
              "100% *                                                  \r"
              "100%                                                    [OK]\n"
              "\nResults:\n"
              "\n    Update completed successfully!\n");
}

TEST_F(DriverTest, RunsPhasesInAscendingOrderOneAfterTheOther)
{
    addElement(1, 1, 5);
    addElement(1, 2, 3);
    addElement(1, 3, 5);
    addElement(1, 4, 7);
    prepare();

    EXPECT_TRUE(update());

    EXPECT_EQ(journal->told(),
              "<phase 0>"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 2                        \n"
              "<progress 100><progress 100>"
              "[OK]\n"
              "<phase 1>"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 1                        \n"
              "        Board 1, SN 1, Element 3                        \n"
              "<progress 100><progress 100>"
              "[OK]\n"
              "<phase 2>"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 4                        \n"
              "<progress 100><progress 100>"
              "[OK]\n"
              "<phase 4294967295>"
              "\nResults:\n"
              "\n    Update completed successfully!\n");
}

TEST_F(DriverTest, FinishesAPhaseBeforeTheNextIsStarted)
{
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(callNames(), ElementsAre("lock",  //
                                         "sendLog", "update2", "usleep", "updateStatus2", "usleep", "usleep",
                                         "updateErrors2",  //
                                         "sendLog", "update2", "usleep", "updateStatus2", "usleep", "usleep",
                                         "updateErrors2",  //
                                         "unlock"));
}

TEST_F(DriverTest, LocksReportsTheEndAndUnlocksAlsoWithoutAPhase)
{
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(callNames(), ElementsAre("lock", "unlock"));
    EXPECT_EQ(journal->told(),
              "<phase 4294967295>"
              "\nResults:\n"
              "\n    Update completed successfully!\n");
}

TEST_F(DriverTest, NeverStartsADisabledElementThatHasAFile)
{
    addElement(1, 1);
    addElement(1, 2);
    prepare();
    element(0).updateState = 3;
    updater->disableUpdateElement(0);

    EXPECT_TRUE(update());

    EXPECT_EQ(element(0).updateFileIndex, 0);
    EXPECT_THAT(states(), ElementsAre(0u, 5u));
    ASSERT_EQ(calls("update2").size(), 1u);
    EXPECT_EQ(calls("update2")[0].at("id"), 2);
    EXPECT_EQ(journal->text(),
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 2                        \n"
              "[OK]\n"
              "\nResults:\n"
              "\n    Update completed successfully!\n");
}

TEST_F(DriverTest, ReportsAPhaseWhoseElementsWereDisabledAfterwards)
{
    addElement(1, 1);
    prepare();
    updater->disableUpdateElement(0);

    EXPECT_TRUE(update());

    EXPECT_EQ(journal->told(),
              "<phase 0>"
              "<phase 4294967295>"
              "\nResults:\n"
              "\n    Update completed successfully!\n");
    EXPECT_THAT(callNames(), ElementsAre("lock", "unlock"));
}

TEST_F(DriverTest, LeavesAnElementWithoutAFileAlone)
{
    addElement(1, 1);
    addElement(1, 2);
    prepare();
    element(0).updateFileIndex = -1;
    element(0).updateState = 4;

    EXPECT_TRUE(update());

    EXPECT_THAT(states(), ElementsAre(0u, 5u));
    EXPECT_EQ(calls("update2").size(), 1u);
}

TEST_F(DriverTest, PrintsTheNoticesBeforeTheFirstPhase)
{
    addElement(1, 1);
    addElement(1, 2);
    addElement(1, 3);
    prepare();
    element(0).updateFileIndex = -1;
    element(1).notRequired = true;
    element(1).disabled = true;

    EXPECT_TRUE(update());

    EXPECT_EQ(journal->told(),
              "\nUnsupported update elements (will be ignored):\n"
              "        Board 1, SN 1, Element 1\n"
              "\n"
              "\nNo update is required for these elements:\n"
              "        Board 1, SN 1, Element 2\n"
              "<phase 0>"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 3                        \n"
              "<progress 100><progress 100>"
              "[OK]\n"
              "<phase 4294967295>"
              "\nResults:\n"
              "\n    Update completed successfully!\n");
}

TEST_F(DriverTest, ReportsTheEndOfThePhasesBeforeItUnlocks)
{
    options.verbose = true;
    script["unlock"] = Json::array({failing(3, "busy")});
    addElement(1, 1);
    prepare();

    EXPECT_TRUE(update());

    EXPECT_EQ(journal->told(),
              "<phase 0>"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 1                        \n"
              "<progress 100><progress 100>"
              "[OK]\n"
              "<phase 4294967295>"
              "ERROR: Cannot unlock target system!\n"
              "\nResults:\n"
              "\n    Update completed successfully!\n");
}

TEST_F(DriverTest, CollectsThePendingElementsOfAPhaseBehindWhatTheListHolds)
{
    for (unsigned id = 1; id <= 6; ++id) {
        addElement(1, id, id == 6 ? 2 : 1);
    }
    prepare();
    EXPECT_TRUE(update());
    const std::uint32_t newStates[] = {1, 0, 2, 3, 1, 1};
    for (unsigned i = 0; i < 6; ++i) {
        element(i).updateState = newStates[i];
    }

    PhaseList list = {&element(5)};
    operation().getUpdateElementsOfPhase(0, list);

    EXPECT_THAT(list, ElementsAre(&element(5), &element(0), &element(4)));
}

TEST_F(DriverTest, CollectsThePendingElementsOfAPhaseAlsoOutsideOfAnUpdate)
{
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    addElement(1, 3, 2);
    addElement(1, 4, 2);
    prepare();
    const std::uint32_t newStates[] = {1, 1, 0, 1};
    for (unsigned i = 0; i < 4; ++i) {
        element(i).updateState = newStates[i];
    }
    element(3).phase = 7;

    PhaseList list;
    operation().getUpdateElementsOfPhase(1, list);
    operation().getUpdateElementsOfPhase(7, list);

    EXPECT_THAT(list, ElementsAre(&element(1), &element(3)));
}

TEST_F(DriverTest, FindsNoElementOfAPhaseBeyondTheLast)
{
    addElement(1, 1);
    prepare();
    EXPECT_TRUE(update());
    element(0).updateState = 1;

    PhaseList list;
    operation().getUpdateElementsOfPhase(1, list);

    EXPECT_TRUE(list.empty());
}

TEST_F(DriverTest, RunsThroughTheInterface)
{
    addElement(1, 1);
    prepare();

    EXPECT_EQ(updater->run(), 1);

    EXPECT_EQ(journal->text(), textOfOneUpdate);
}
