// Following the running updates of a phase, and its progress.
#include "operation/OperationFixture.h"
#include "support/Namespaces.h"

using ::testing::ContainsRegex;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace {

// The callbacks carry no context: the target, and the last of its calls before each report of progress.
const SimulatedTarget* watchedByStatus = nullptr;
std::vector<std::string> callsBeforeProgress;

void noteCallBeforeProgress(unsigned)
{
    callsBeforeProgress.push_back(watchedByStatus->trace().back().at("call"));
}

}  // namespace

class Status : public OperationFixture {
protected:
    // Follows the updates of elements that have these states, outside of a whole update.
    void follow(const std::vector<State>& newStates)
    {
        PhaseList list = become(newStates);
        operation().updateStatus(list);
    }

    // The pieces of progress lines and the reports of progress, in one order.
    std::vector<std::string> progress() const
    {
        std::vector<std::string> found;
        for (const std::string& event : journal->events()) {
            if (event.find('%') != std::string::npos || event.starts_with("<progress")) {
                found.push_back(withStars(event));
            }
        }
        return found;
    }
};

TEST_F(Status, ShowsTheProgressWithASpinner)
{
    options.noProgress = false;
    scriptOf(1, 1)["polls"] = Json::array({running(0, 10), running(5, 10), finished()});
    addElement(1, 1);
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(progress(), ElementsAre("  0% *                                                  \r", "<progress 0>",
                                        " 50% *                                                  \r", "<progress 50>",
                                        "100% *                                                  \r", "<progress 100>",
                                        "100% *                                                  \r", "<progress 100>",
                                        "100%                                                    "));
}

TEST_F(Status, TakesTheAverageOfThePhaseRoundedDown)
{
    scriptOf(1, 1)["polls"] = Json::array({running(5, 10), finished()});
    scriptOf(1, 2)["polls"] = Json::array({running(2, 3), finished()});
    scriptOf(2, 1)["polls"] = Json::array({running(1, 3), finished()});
    addElement(1, 1);
    addElement(1, 2);
    addElement(2, 1);
    prepare();

    EXPECT_TRUE(update());

    // (50 + 66 + 33) / 3
    EXPECT_THAT(journal->reports(),
                ElementsAre("phase 0", "progress 49", "progress 100", "progress 100", "end of phases"));
}

TEST_F(Status, RoundsEachElementDownBeforeTheAverage)
{
    scriptOf(1, 1)["polls"] = Json::array({running(999, 1000), finished()});
    scriptOf(1, 2)["polls"] = Json::array({running(199, 1000), finished()});
    addElement(1, 1);
    addElement(1, 2);
    prepare();

    EXPECT_TRUE(update());

    // (99 + 19) / 2
    EXPECT_EQ(journal->reports().at(1), "progress 59");
}

TEST_F(Status, CountsLargeAmountsOfWorkCorrectly)
{
    scriptOf(1, 1)["polls"] = Json::array({running(60000000, 120000000), running(3000000000, 4000000000), finished()});
    addElement(1, 1);
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(journal->reports(),
                ElementsAre("phase 0", "progress 50", "progress 75", "progress 100", "progress 100", "end of phases"));
}

TEST_F(Status, TakesAnUpdateWithoutWorkForComplete)
{
    scriptOf(1, 1)["polls"] = Json::array({running(0, 0), running(7, 0), finished()});
    addElement(1, 1);
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "progress 100", "progress 100", "progress 100",
                                                "progress 100", "end of phases"));
    EXPECT_EQ(calls("updateStatus2").size(), 3u);
}

TEST_F(Status, AddsOnePassAfterTheLastRunningUpdate)
{
    scriptOf(1, 1)["polls"] = Json::array({finished()});
    addElement(1, 1);
    prepare();

    EXPECT_TRUE(update());

    EXPECT_EQ(calls("updateStatus2").size(), 1u);
    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "progress 100", "progress 100", "end of phases"));
    ASSERT_EQ(calls("usleep").size(), 3u);
    EXPECT_EQ(calls("usleep")[1].at("microseconds"), 200000);
    EXPECT_EQ(calls("usleep")[2].at("microseconds"), 200000);
}

TEST_F(Status, WaitsAFifthOfASecondForEachPassNotForEachElement)
{
    for (unsigned board = 1; board <= 3; ++board) {
        scriptOf(board, 1)["polls"] = Json::array({running(1, 2), finished()});
        addElement(board, 1);
    }
    prepare();

    EXPECT_TRUE(update());

    std::vector<unsigned> waits;
    for (const Json& call : calls("usleep")) {
        waits.push_back(call.at("microseconds"));
    }
    EXPECT_THAT(waits, ElementsAre(500000u, 500000u, 500000u, 200000u, 200000u, 200000u));
}

TEST_F(Status, ReportsTheProgressOfAPassBeforeItWaits)
{
    scriptOf(1, 1)["polls"] = Json::array({running(1, 2), finished()});
    addElement(1, 1);
    prepare();
    watchedByStatus = simulated.get();
    callsBeforeProgress.clear();
    updater->setProgressCallBack(noteCallBeforeProgress);

    EXPECT_TRUE(update());

    // The pass at the end polls nothing: before it comes the wait of the one before.
    EXPECT_THAT(callsBeforeProgress, ElementsAre("updateStatus2", "updateStatus2", "usleep"));
}

TEST_F(Status, PollsTheRunningElementsInTheirOrder)
{
    scriptOf(1, 1)["polls"] = Json::array({running(1, 2), finished()});
    scriptOf(2, 5)["polls"] = Json::array({running(1, 2), running(1, 2), finished()});
    addElement(1, 1);
    addElement(2, 5);
    prepare();

    EXPECT_TRUE(update());

    std::vector<std::string> polled;
    for (const Json& call : calls("updateStatus2")) {
        polled.push_back(call.at("board").get<std::string>() + " " + std::to_string(call.at("id").get<unsigned>()));
    }
    EXPECT_THAT(polled, ElementsAre("/ROOT/IOMODULE 1", "/ROOT/IOMODULE[2] 5", "/ROOT/IOMODULE 1",
                                    "/ROOT/IOMODULE[2] 5", "/ROOT/IOMODULE[2] 5"));
}

TEST_F(Status, ToleratesOneFailedPollAndAddsNothingForIt)
{
    scriptOf(1, 1)["polls"] = Json::array({running(8, 10), failing(4, "lost"), running(9, 10), finished()});
    scriptOf(2, 1)["polls"] = Json::array({running(4, 10), running(5, 10), running(6, 10), finished()});
    addElement(1, 1);
    addElement(2, 1);
    prepare();

    EXPECT_FALSE(update());

    // (80 + 40) / 2, (0 + 50) / 2, (90 + 60) / 2; the error is reported once the update has finished.
    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "progress 60", "progress 25", "progress 75", "progress 100",
                                                "progress 100", "failure 0", "end of phases"));
    EXPECT_THAT(states(), ElementsAre(FINISHED, FINISHED));
}

TEST_F(Status, FailsAnUpdateWhoseStatusCannotBeReadTwiceInARow)
{
    scriptOf(1, 1)["polls"] = Json::array({failing(4, "lost"), failing(4, "lost again")});
    addElement(1, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->reports(),
                ElementsAre("phase 0", "progress 0", "failure 0", "progress 100", "progress 100", "end of phases"));
    EXPECT_THAT(listed(*element(0).statusErrorList), ElementsAre("4 lost", "4 lost again"));
    EXPECT_THAT(states(), ElementsAre(FAILED));
    EXPECT_EQ(calls("updateStatus2").size(), 2u);
}

TEST_F(Status, ForgivesAFailedPollAfterACleanOne)
{
    scriptOf(1, 1)["polls"] = Json::array(
        {failing(4, "lost"), running(5, 10), failing(4, "lost"), running(6, 10), failing(4, "lost"), finished()});
    addElement(1, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(FINISHED));
    EXPECT_EQ(element(0).statusErrorCount, 0u);
    EXPECT_THAT(journal->reports(),
                ElementsAre("phase 0", "progress 0", "progress 50", "progress 0", "progress 60", "progress 0",
                            "progress 100", "progress 100", "failure 0", "end of phases"));
}

TEST_F(Status, CountsConsecutiveFailedPollsOnly)
{
    scriptOf(1, 1)["polls"] =
        Json::array({failing(4, "a"), running(5, 10), failing(4, "b"), failing(4, "c"), finished()});
    addElement(1, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(FAILED));
    EXPECT_EQ(calls("updateStatus2").size(), 4u);
    EXPECT_EQ(element(0).statusErrorCount, 2u);
}

TEST_F(Status, ToleratesAFailedPollAlsoInASecondUpdate)
{
    scriptOf(1, 1)["polls"] =
        Json::array({failing(4, "a"), failing(4, "b"), failing(4, "c"), running(5, 10), finished()});
    addElement(1, 1);
    prepare();
    ASSERT_FALSE(update());
    ASSERT_THAT(states(), ElementsAre(FAILED));
    journal->clear();

    EXPECT_FALSE(update());

    // The errors of the first update are still with the element, so that it is reported once it has finished.
    EXPECT_THAT(states(), ElementsAre(FINISHED));
    EXPECT_EQ(calls("updateStatus2").size(), 5u);
    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "progress 0", "progress 50", "progress 100", "progress 100",
                                                "failure 0", "end of phases"));
}

TEST_F(Status, DoesNotTrustTheStatusOfAFailedPoll)
{
    Json failed = failing(4, "lost");
    failed["status"] = 3;
    scriptOf(1, 1)["polls"] = Json::array({failed, running(1, 2), finished()});
    addElement(1, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(FINISHED));
    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "progress 0", "progress 50", "progress 100", "progress 100",
                                                "failure 0", "end of phases"));
}

TEST_F(Status, FailsAnUpdateWithAnyOtherStatusAtOnce)
{
    unsigned board = 1;
    for (const unsigned value : {0u, 3u, 4u, 0xFFFFFFFFu}) {
        scriptOf(board, 1)["polls"] = Json::array({{{"status", value}}});
        addElement(board++, 1);
    }
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(FAILED, FAILED, FAILED, FAILED));
    EXPECT_EQ(calls("updateStatus2").size(), 4u);
    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "failure 0", "failure 1", "failure 2", "failure 3",
                                                "progress 100", "progress 100", "end of phases"));
}

TEST_F(Status, CountsAFailedStartAsComplete)
{
    letStartFail(1, 1);
    scriptOf(2, 1)["polls"] = Json::array({running(1, 2), finished()});
    addElement(1, 1);
    addElement(2, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->reports(),
                ElementsAre("phase 0", "failure 0", "progress 75", "progress 100", "progress 100", "end of phases"));
}

TEST_F(Status, ReportsTheProgressAlsoWithoutProgressLines)
{
    scriptOf(1, 1)["polls"] = Json::array({running(1, 4), finished()});
    addElement(1, 1);
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(progress(), ElementsAre("<progress 25>", "<progress 100>", "<progress 100>"));
}

TEST_F(Status, ShowsOneLineForFilesOfTheFlashDrive)
{
    options.noProgress = false;
    SKIP_WITHOUT_MOUNT();
    hasFlashDrive = true;
    addFileElement(1, 1, "a.bin");
    addFileElement(1, 2, "b.bin");
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(progress(), ElementsAre(ContainsRegex("100% .*\r"), "<progress 100>", StartsWith("100% ")));
    EXPECT_EQ(calls("usleep").size(), 1u);
    EXPECT_THAT(calls("updateStatus2"), IsEmpty());
}

TEST_F(Status, HasNothingToFollowInAnEmptyList)
{
    options.noProgress = false;
    prepare();
    PhaseList list;

    operation().updateStatus(list);

    EXPECT_THAT(journal->events(), IsEmpty());
    EXPECT_THAT(trace(), IsEmpty());
}

TEST_F(Status, HasNothingToFollowWithoutAStartedUpdate)
{
    options.noProgress = false;
    addElement(1, 1);
    addElement(1, 2);
    addElement(1, 3);
    prepare();

    follow({NOTHING_TO_DO, PENDING, CANCELLED});

    EXPECT_THAT(journal->events(), IsEmpty());
    EXPECT_THAT(trace(), IsEmpty());
    EXPECT_THAT(states(), ElementsAre(NOTHING_TO_DO, PENDING, CANCELLED));
}

TEST_F(Status, LeavesElementsOutOfTheAverageThatWereNotStarted)
{
    for (unsigned id = 1; id <= 5; ++id) {
        addElement(1, id);
    }
    prepare();

    follow({NOTHING_TO_DO, PENDING, CANCELLED, FAILED, FINISHED});

    EXPECT_THAT(journal->events(), ElementsAre("<progress 100>"));
    ASSERT_THAT(callNames(), ElementsAre("usleep"));
    EXPECT_EQ(trace()[0].at("microseconds"), 200000);
}
