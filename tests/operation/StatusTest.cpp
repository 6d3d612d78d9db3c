// Following the running updates of a phase, and its progress.
#include "operation/OperationTest.h"
#include "support/Namespaces.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

// The callbacks carry no context: the target, and the last of its calls before each report of progress.
const SimulatedTarget* watchedByStatus = nullptr;
std::vector<std::string> callsBeforeProgress;

void noteCallBeforeProgress(unsigned)
{
    callsBeforeProgress.push_back(watchedByStatus->trace().back().at("call"));
}

}  // namespace

class StatusTest : public OperationTest {
protected:
    static Json running(std::uint32_t done, std::uint32_t total)
    {
        return {{"status", 1}, {"done", done}, {"total", total}};
    }
    static Json status(unsigned value) { return {{"status", value}}; }

    // Gives the elements these states and follows their updates outside of a whole update.
    void follow(const std::vector<std::uint32_t>& newStates)
    {
        PhaseList list;
        for (unsigned i = 0; i < newStates.size(); ++i) {
            element(i).updateState = newStates[i];
            list.push_back(&element(i));
        }
        operation().updateStatus(list);
    }
};

TEST_F(StatusTest, ShowsTheProgressWithASpinner)
{
    options.noProgress = false;
    scriptOf(1, 1)["polls"] = Json::array({running(0, 10), running(5, 10), status(2)});
    addElement(1, 1);
    prepare();

    EXPECT_TRUE(update());

    EXPECT_EQ(withStars(journal->told()),
              "<phase 0>"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 1                        \n"
              "  0% *                                                  \r<progress 0>"
              " 50% *                                                  \r<progress 50>"
              "100% *                                                  \r<progress 100>"
              "100% *                                                  \r<progress 100>"
              "100%                                                    [OK]\n"
              "<phase 4294967295>"
              "\nResults:\n"
              "\n    Update completed successfully!\n");
}

TEST_F(StatusTest, TakesTheAverageOfThePhaseRoundedDown)
{
    scriptOf(1, 1)["polls"] = Json::array({running(5, 10), status(2)});
    scriptOf(1, 2)["polls"] = Json::array({running(2, 3), status(2)});
    scriptOf(2, 1)["polls"] = Json::array({running(1, 3), status(2)});
    addElement(1, 1);
    addElement(1, 2);
    addElement(2, 1);
    prepare();

    EXPECT_TRUE(update());

    // (50 + 66 + 33) / 3
    EXPECT_THAT(journal->reports(),
                ElementsAre("phase 0", "progress 49", "progress 100", "progress 100", "phase 4294967295"));
}

TEST_F(StatusTest, RoundsEachElementDownBeforeTheAverage)
{
    scriptOf(1, 1)["polls"] = Json::array({running(999, 1000), status(2)});
    scriptOf(1, 2)["polls"] = Json::array({running(199, 1000), status(2)});
    addElement(1, 1);
    addElement(1, 2);
    prepare();

    EXPECT_TRUE(update());

    // (99 + 19) / 2
    EXPECT_EQ(journal->reports().at(1), "progress 59");
}

TEST_F(StatusTest, CountsLargeAmountsOfWorkCorrectly)
{
    scriptOf(1, 1)["polls"] = Json::array({running(60000000, 120000000), running(3000000000, 4000000000), status(2)});
    addElement(1, 1);
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "progress 50", "progress 75", "progress 100", "progress 100",
                                                "phase 4294967295"));
}

TEST_F(StatusTest, TakesAnUpdateWithoutWorkForComplete)
{
    scriptOf(1, 1)["polls"] = Json::array({running(0, 0), running(7, 0), status(2)});
    addElement(1, 1);
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "progress 100", "progress 100", "progress 100",
                                                "progress 100", "phase 4294967295"));
    EXPECT_EQ(calls("updateStatus2").size(), 3u);
}

TEST_F(StatusTest, AddsOnePassAfterTheLastRunningUpdate)
{
    scriptOf(1, 1)["polls"] = Json::array({status(2)});
    addElement(1, 1);
    prepare();

    EXPECT_TRUE(update());

    EXPECT_EQ(calls("updateStatus2").size(), 1u);
    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "progress 100", "progress 100", "phase 4294967295"));
    ASSERT_EQ(calls("usleep").size(), 3u);
    EXPECT_EQ(calls("usleep")[1].at("microseconds"), 200000);
    EXPECT_EQ(calls("usleep")[2].at("microseconds"), 200000);
}

TEST_F(StatusTest, WaitsAFifthOfASecondForEachPassNotForEachElement)
{
    for (unsigned board = 1; board <= 3; ++board) {
        scriptOf(board, 1)["polls"] = Json::array({running(1, 2), status(2)});
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

TEST_F(StatusTest, ReportsTheProgressOfAPassBeforeItWaits)
{
    scriptOf(1, 1)["polls"] = Json::array({running(1, 2), status(2)});
    addElement(1, 1);
    prepare();
    watchedByStatus = simulated.get();
    callsBeforeProgress.clear();
    updater->setProgressCallBack(noteCallBeforeProgress);

    EXPECT_TRUE(update());

    // The pass at the end polls nothing: before it comes the wait of the one before.
    EXPECT_THAT(callsBeforeProgress, ElementsAre("updateStatus2", "updateStatus2", "usleep"));
}

TEST_F(StatusTest, PollsTheRunningElementsInTheirOrder)
{
    scriptOf(1, 1)["polls"] = Json::array({running(1, 2), status(2)});
    scriptOf(2, 5)["polls"] = Json::array({running(1, 2), running(1, 2), status(2)});
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

TEST_F(StatusTest, ToleratesOneFailedPollAndAddsNothingForIt)
{
    scriptOf(1, 1)["polls"] = Json::array({running(8, 10), failing(4, "lost"), running(9, 10), status(2)});
    scriptOf(2, 1)["polls"] = Json::array({running(4, 10), running(5, 10), running(6, 10), status(2)});
    addElement(1, 1);
    addElement(2, 1);
    prepare();

    EXPECT_FALSE(update());

    // (80 + 40) / 2, (0 + 50) / 2, (90 + 60) / 2; the error is reported once the update has finished.
    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "progress 60", "progress 25", "progress 75", "progress 100",
                                                "progress 100", "failure 0", "phase 4294967295"));
    EXPECT_THAT(states(), ElementsAre(5u, 5u));
}

TEST_F(StatusTest, FailsAnUpdateWhoseStatusCannotBeReadTwiceInARow)
{
    options.noProgress = false;
    scriptOf(1, 1)["polls"] = Json::array({failing(4, "lost"), failing(4, "lost again")});
    addElement(1, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_EQ(withStars(journal->told()),
              "<phase 0>"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 1                        \n"
              "  0% *                                                  \r<progress 0>"
              "<failure 0>"
              "100% *                                                  \r<progress 100>"
              "100% *                                                  \r<progress 100>"
              "100%                                                    [ERROR]\n"
              "<phase 4294967295>"
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "       ERROR 0x4 (reported by Host PC):\n"
              "         lost\n"
              "       ERROR 0x4 (reported by Host PC):\n"
              "         lost again\n"
              "\n    Update failed!\n");
    EXPECT_THAT(states(), ElementsAre(3u));
    EXPECT_EQ(calls("updateStatus2").size(), 2u);
}

TEST_F(StatusTest, ForgivesAFailedPollAfterACleanOne)
{
    scriptOf(1, 1)["polls"] = Json::array(
        {failing(4, "lost"), running(5, 10), failing(4, "lost"), running(6, 10), failing(4, "lost"), status(2)});
    addElement(1, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(5u));
    EXPECT_EQ(element(0).statusErrorCount, 0u);
    EXPECT_THAT(journal->reports(),
                ElementsAre("phase 0", "progress 0", "progress 50", "progress 0", "progress 60", "progress 0",
                            "progress 100", "progress 100", "failure 0", "phase 4294967295"));
}

TEST_F(StatusTest, CountsConsecutiveFailedPollsOnly)
{
    scriptOf(1, 1)["polls"] =
        Json::array({failing(4, "a"), running(5, 10), failing(4, "b"), failing(4, "c"), status(2)});
    addElement(1, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(3u));
    EXPECT_EQ(calls("updateStatus2").size(), 4u);
    EXPECT_EQ(element(0).statusErrorCount, 2u);
}

TEST_F(StatusTest, ToleratesAFailedPollAlsoInASecondUpdate)
{
    scriptOf(1, 1)["polls"] =
        Json::array({failing(4, "a"), failing(4, "b"), failing(4, "c"), running(5, 10), status(2)});
    addElement(1, 1);
    prepare();
    ASSERT_FALSE(update());
    ASSERT_THAT(states(), ElementsAre(3u));
    journal->clear();

    EXPECT_FALSE(update());

    // The errors of the first update are still with the element, so that it is reported once it has finished.
    EXPECT_THAT(states(), ElementsAre(5u));
    EXPECT_EQ(calls("updateStatus2").size(), 5u);
    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "progress 0", "progress 50", "progress 100", "progress 100",
                                                "failure 0", "phase 4294967295"));
}

TEST_F(StatusTest, DoesNotTrustTheStatusOfAFailedPoll)
{
    Json failed = failing(4, "lost");
    failed["status"] = 3;
    scriptOf(1, 1)["polls"] = Json::array({failed, running(1, 2), status(2)});
    addElement(1, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(5u));
    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "progress 0", "progress 50", "progress 100", "progress 100",
                                                "failure 0", "phase 4294967295"));
}

TEST_F(StatusTest, FailsAnUpdateWithAnyOtherStatusAtOnce)
{
    unsigned board = 1;
    for (const unsigned value : {0u, 3u, 4u, 0xFFFFFFFFu}) {
        scriptOf(board, 1)["polls"] = Json::array({status(value)});
        addElement(board++, 1);
    }
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(3u, 3u, 3u, 3u));
    EXPECT_EQ(calls("updateStatus2").size(), 4u);
    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "failure 0", "failure 1", "failure 2", "failure 3",
                                                "progress 100", "progress 100", "phase 4294967295"));
    EXPECT_EQ(journal->text(),
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 1                        \n"
              "        Board 2, SN 2, Element 1                        \n"
              "        Board 3, SN 3, Element 1                        \n"
              "        Board 4, SN 4, Element 1                        \n"
              "[ERROR]\n"
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "    ERROR: Board 2, SN 2, Element 1:\n"
              "    ERROR: Board 3, SN 3, Element 1:\n"
              "    ERROR: Board 4, SN 4, Element 1:\n"
              "\n    Update failed!\n");
}

TEST_F(StatusTest, CountsAFailedStartAsComplete)
{
    scriptOf(1, 1)["start"] = Json::array({failing(4, "no room")});
    scriptOf(2, 1)["polls"] = Json::array({running(1, 2), status(2)});
    addElement(1, 1);
    addElement(2, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->reports(),
                ElementsAre("phase 0", "failure 0", "progress 75", "progress 100", "progress 100", "phase 4294967295"));
}

TEST_F(StatusTest, ReportsTheProgressAlsoWithoutProgressLines)
{
    scriptOf(1, 1)["polls"] = Json::array({running(1, 4), status(2)});
    addElement(1, 1);
    prepare();

    EXPECT_TRUE(update());

    EXPECT_EQ(journal->told(),
              "<phase 0>"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 1                        \n"
              "<progress 25><progress 100><progress 100>"
              "[OK]\n"
              "<phase 4294967295>"
              "\nResults:\n"
              "\n    Update completed successfully!\n");
}

TEST_F(StatusTest, ShowsOneLineForFilesOfTheFlashDrive)
{
    options.noProgress = false;
    SKIP_WITHOUT_MOUNT();
    hasFlashDrive = true;
    addFileElement(1, 1, "a.bin");
    addFileElement(1, 2, "b.bin");
    prepare();

    EXPECT_TRUE(update());

    EXPECT_EQ(withStars(journal->text()),
              "\nUpdating:\n"
              "        Board 1, SN 1, File 1                           \n"
              "        Board 1, SN 1, File 2                           \n"
              "100% *                                                  \r"
              "100%                                                    [OK]\n"
              "\nResults:\n"
              "\n    Update completed successfully!\n");
    EXPECT_EQ(calls("usleep").size(), 1u);
    EXPECT_THAT(calls("updateStatus2"), IsEmpty());
}

TEST_F(StatusTest, HasNothingToFollowInAnEmptyList)
{
    options.noProgress = false;
    prepare();
    PhaseList list;

    operation().updateStatus(list);

    EXPECT_EQ(journal->told(), "");
    EXPECT_THAT(trace(), IsEmpty());
}

TEST_F(StatusTest, HasNothingToFollowWithoutAStartedUpdate)
{
    options.noProgress = false;
    addElement(1, 1);
    addElement(1, 2);
    addElement(1, 3);
    prepare();

    follow({0, 1, 4});

    EXPECT_EQ(journal->told(), "");
    EXPECT_THAT(trace(), IsEmpty());
    EXPECT_THAT(states(), ElementsAre(0u, 1u, 4u));
}

TEST_F(StatusTest, LeavesElementsOutOfTheAverageThatWereNotStarted)
{
    for (unsigned id = 1; id <= 5; ++id) {
        addElement(1, id);
    }
    prepare();

    follow({0, 1, 4, 3, 5});

    EXPECT_EQ(journal->told(), "<progress 100>");
    ASSERT_THAT(callNames(), ElementsAre("usleep"));
    EXPECT_EQ(trace()[0].at("microseconds"), 200000);
}
