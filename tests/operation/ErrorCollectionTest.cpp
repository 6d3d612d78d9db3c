// Collecting the errors of a phase's updates, and its verdict.
#include "operation/OperationFixture.h"
#include "support/Namespaces.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

const std::string good = "[OK]\n";
const std::string bad = "[ERROR]\n";

}  // namespace

class ErrorCollection : public OperationFixture {
protected:
    // An entry of a "finish" script: errors of the call itself, and errors that the update reports.
    static Json finish(const std::vector<std::string>& callErrors, const std::vector<std::string>& results)
    {
        Json entry = {{"errors", Json::array()}, {"results", Json::array()}};
        for (const std::string& text : callErrors) {
            entry["errors"].push_back({{"code", 4}, {"text", text}});
        }
        for (const std::string& text : results) {
            entry["results"].push_back({{"code", 5}, {"text", text}});
        }
        return entry;
    }

    // Makes a whole update, locks the target again, gives the elements these states and collects their errors once
    // more.
    void collect(const std::vector<State>& newStates)
    {
        update();
        ASSERT_TRUE(operation().lockInventory(errors));
        journal->clear();
        PhaseList list = become(newStates);
        operation().updateErrors(list);
    }

    // The verdicts of the phases: what was said last of each.
    std::vector<std::string> verdicts() const
    {
        std::vector<std::string> found;
        std::string last;
        for (const std::string& event : journal->events()) {
            if (event == "<phase 1>" || event == "<end of phases>") {
                found.push_back(last);
            }
            last = event;
        }
        return found;
    }
};

TEST_F(ErrorCollection, AsksOnceForTheErrorsOfEachFinishedUpdate)
{
    addElement(1, 1);
    addElement(2, 7);
    prepare();

    EXPECT_TRUE(update());

    ASSERT_EQ(calls("updateErrors2").size(), 2u);
    EXPECT_EQ(calls("updateErrors2")[0].at("board"), "/ROOT/IOMODULE");
    EXPECT_EQ(calls("updateErrors2")[0].at("id"), 1);
    EXPECT_EQ(calls("updateErrors2")[0].at("handle"), calls("lock").at(0).at("handle"));
    EXPECT_EQ(calls("updateErrors2")[1].at("board"), "/ROOT/IOMODULE[2]");
    EXPECT_EQ(calls("updateErrors2")[1].at("id"), 7);
}

TEST_F(ErrorCollection, KeepsWhatTheUpdateAndTheCallReportApart)
{
    scriptOf(1, 1)["finish"] = Json::array({finish({"no answer"}, {"verify", "checksum"})});
    addElement(1, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(listed(*element(0).statusErrorList), ElementsAre("4 no answer"));
    EXPECT_THAT(listed(*element(0).resultErrorList), ElementsAre("5 verify", "5 checksum"));
}

TEST_F(ErrorCollection, MarksThePhaseForAnUpdateThatReportsErrors)
{
    scriptOf(1, 1)["finish"] = Json::array({finish({}, {"verify"})});
    addElement(1, 1);
    addElement(2, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(verdicts(), ElementsAre(bad));
    EXPECT_THAT(journal->reports(),
                ElementsAre("phase 0", "progress 100", "progress 100", "failure 0", "end of phases"));
    EXPECT_THAT(states(), ElementsAre(FINISHED, FINISHED));
}

TEST_F(ErrorCollection, MarksThePhaseWhenTheErrorsCannotBeFetched)
{
    scriptOf(1, 1)["finish"] = Json::array({finish({"no answer"}, {})});
    addElement(1, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(verdicts(), ElementsAre(bad));
    EXPECT_THAT(states(), ElementsAre(FINISHED));
    EXPECT_THAT(journal->reports(),
                ElementsAre("phase 0", "progress 100", "progress 100", "failure 0", "end of phases"));
}

TEST_F(ErrorCollection, CountsErrorsOfAnEarlierPollThatDidNotFailTheUpdate)
{
    scriptOf(1, 1)["polls"] = Json::array({failing(4, "lost"), finished()});
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(verdicts(), ElementsAre(bad, "<phase 1>"));  // nothing is left of the second phase
    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "progress 0", "progress 100", "progress 100", "failure 0",
                                                "failure 1", "phase 1", "end of phases"));
    EXPECT_THAT(states(), ElementsAre(FINISHED, CANCELLED));
}

TEST_F(ErrorCollection, ReportsAnUpdateBeforeThoseThatItCancels)
{
    scriptOf(1, 2)["finish"] = Json::array({finish({}, {"verify"})});
    addElement(1, 1, 2);
    addElement(1, 2, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "progress 100", "progress 100", "failure 1", "failure 0",
                                                "phase 1", "end of phases"));
}

TEST_F(ErrorCollection, DoesNotReportAFailedUpdateAgain)
{
    letUpdateFail(1, 1);
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "failure 0", "progress 100", "progress 100", "failure 1",
                                                "phase 1", "end of phases"));
    EXPECT_THAT(calls("updateErrors2"), IsEmpty());
}

TEST_F(ErrorCollection, DoesNotFetchTheErrorsOfAnUpdateThatStillRuns)
{
    addElement(1, 1);
    prepare();

    collect({RUNNING});

    EXPECT_THAT(journal->events(), ElementsAre(bad));
    EXPECT_EQ(calls("updateErrors2").size(), 1u);  // of the whole update before
    EXPECT_THAT(states(), ElementsAre(RUNNING));
}

TEST_F(ErrorCollection, PrintsNothingWithoutAStartedUpdate)
{
    addElement(1, 1);
    addElement(1, 2);
    addElement(1, 3);
    prepare();

    collect({NOTHING_TO_DO, PENDING, CANCELLED});

    EXPECT_THAT(journal->events(), IsEmpty());
    EXPECT_EQ(calls("updateErrors2").size(), 3u);  // of the whole update before
}

TEST_F(ErrorCollection, PrintsNothingForAnEmptyList)
{
    prepare();

    collect({});

    EXPECT_THAT(journal->events(), IsEmpty());
}

TEST_F(ErrorCollection, IgnoresElementsThatWereNotStarted)
{
    addElement(1, 1);
    addElement(1, 2);
    prepare();

    collect({CANCELLED, FINISHED});

    EXPECT_THAT(journal->events(), ElementsAre(good));
}

TEST_F(ErrorCollection, CancelsFromTheNextPhaseOn)
{
    addElement(1, 1, 1);
    addElement(1, 2, 1);
    addElement(2, 1, 1);
    addElement(2, 2, 2);
    prepare();
    ASSERT_TRUE(update());
    journal->clear();
    become({FAILED, PENDING, FAILED, PENDING});
    PhaseList list = {&element(0), &element(2)};

    operation().updateErrors(list);

    EXPECT_THAT(states(), ElementsAre(FAILED, PENDING, FAILED, CANCELLED));
    EXPECT_THAT(journal->events(), ElementsAre("<failure 3>", bad));
}

TEST_F(ErrorCollection, CancelsNothingForAFileOfTheFlashDrive)
{
    SKIP_WITHOUT_MOUNT();
    hasFlashDrive = true;
    addFileElement(1, 1, "c.bin", 1);
    addElement(1, 2, 2);
    contents["b1f1.bin"] = "";
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(FAILED, FINISHED));
    EXPECT_THAT(verdicts(), ElementsAre(bad, good));
}

TEST_F(ErrorCollection, FetchesNoErrorsForAFileOfTheFlashDrive)
{
    SKIP_WITHOUT_MOUNT();
    hasFlashDrive = true;
    addFileElement(1, 1, "c.bin");
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(calls("updateErrors2"), IsEmpty());
}
