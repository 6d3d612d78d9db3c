// The course of a whole update: which elements are updated, in which order, and what the host hears of it.
#include <algorithm>

#include "operation/OperationFixture.h"

using ::testing::_;
using ::testing::ContainsRegex;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

using Driver = OperationFixture;

TEST_F(Driver, UpdatesOneElement)
{
    addElement(1, 1);
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(callNames(), ElementsAre("lock", "sendLog", "update2", "usleep", "updateStatus2", "usleep", "usleep",
                                         "updateErrors2", "unlock"));
    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "progress 100", "progress 100", "end of phases"));
    EXPECT_THAT(states(), ElementsAre(FINISHED));
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(Driver, RunsPhasesInAscendingOrderOneAfterTheOther)
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
              "<end of phases>"
              "\nResults:\n"
              "\n    Update completed successfully!\n");
}

TEST_F(Driver, FinishesAPhaseBeforeTheNextIsStarted)
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

TEST_F(Driver, LocksReportsTheEndAndUnlocksAlsoWithoutAPhase)
{
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(callNames(), ElementsAre("lock", "unlock"));
    EXPECT_THAT(journal->events(), ElementsAre("<end of phases>", _, _));  // the results follow
}

TEST_F(Driver, NeverStartsADisabledElementThatHasAFile)
{
    addElement(1, 1);
    addElement(1, 2);
    prepare();
    element(0).updateState = FAILED;
    updater->disableUpdateElement(0);

    EXPECT_TRUE(update());

    EXPECT_EQ(element(0).updateFileIndex, 0);
    EXPECT_THAT(states(), ElementsAre(NOTHING_TO_DO, FINISHED));
    ASSERT_EQ(calls("update2").size(), 1u);
    EXPECT_EQ(calls("update2")[0].at("id"), 2);
}

TEST_F(Driver, ReportsAPhaseWhoseElementsWereDisabledAfterwards)
{
    addElement(1, 1);
    prepare();
    updater->disableUpdateElement(0);

    EXPECT_TRUE(update());

    EXPECT_THAT(journal->events(), ElementsAre("<phase 0>", "<end of phases>", _, _));
    EXPECT_THAT(callNames(), ElementsAre("lock", "unlock"));
}

TEST_F(Driver, LeavesAnElementWithoutAFileAlone)
{
    addElement(1, 1);
    addElement(1, 2);
    prepare();
    element(0).updateFileIndex = -1;
    element(0).updateState = CANCELLED;

    EXPECT_TRUE(update());

    EXPECT_THAT(states(), ElementsAre(NOTHING_TO_DO, FINISHED));
    EXPECT_EQ(calls("update2").size(), 1u);
}

TEST_F(Driver, PrintsTheNoticesBeforeTheFirstPhase)
{
    addElement(1, 1);
    addElement(1, 2);
    addElement(1, 3);
    prepare();
    element(0).updateFileIndex = -1;
    element(1).notRequired = true;
    element(1).disabled = true;

    EXPECT_TRUE(update());

    const std::string told = journal->told();
    const std::string notices = told.substr(0, told.find("<phase 0>"));
    EXPECT_THAT(notices, ContainsRegex("Element 1(.|\n)*Element 2"));
    EXPECT_THAT(notices, Not(HasSubstr("Element 3")));
    EXPECT_THAT(states(), ElementsAre(NOTHING_TO_DO, NOTHING_TO_DO, FINISHED));
}

TEST_F(Driver, ReportsTheEndOfThePhasesBeforeItUnlocks)
{
    options.verbose = true;
    script["unlock"] = Json::array({failing(3, "busy")});
    addElement(1, 1);
    prepare();

    EXPECT_TRUE(update());

    const std::vector<std::string> events = journal->events();
    const auto end = std::find(events.begin(), events.end(), "<end of phases>");
    EXPECT_THAT(std::vector<std::string>(end, events.end()),
                ElementsAre("<end of phases>", HasSubstr("unlock"), _, _));  // the results follow
}

TEST_F(Driver, CollectsThePendingElementsOfAPhaseBehindWhatTheListHolds)
{
    for (unsigned id = 1; id <= 6; ++id) {
        addElement(1, id, id == 6 ? 2 : 1);
    }
    prepare();
    EXPECT_TRUE(update());
    become({PENDING, NOTHING_TO_DO, RUNNING, FAILED, PENDING, PENDING});

    PhaseList list = {&element(5)};
    operation().getUpdateElementsOfPhase(0, list);

    EXPECT_THAT(list, ElementsAre(&element(5), &element(0), &element(4)));
}

TEST_F(Driver, CollectsThePendingElementsOfAPhaseAlsoOutsideOfAnUpdate)
{
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    addElement(1, 3, 2);
    addElement(1, 4, 2);
    prepare();
    become({PENDING, PENDING, NOTHING_TO_DO, PENDING});
    element(3).phase = 7;

    PhaseList list;
    operation().getUpdateElementsOfPhase(1, list);
    operation().getUpdateElementsOfPhase(7, list);

    EXPECT_THAT(list, ElementsAre(&element(1), &element(3)));
}

TEST_F(Driver, FindsNoElementOfAPhaseBeyondTheLast)
{
    addElement(1, 1);
    prepare();
    EXPECT_TRUE(update());
    element(0).updateState = PENDING;

    PhaseList list;
    operation().getUpdateElementsOfPhase(1, list);

    EXPECT_TRUE(list.empty());
}
