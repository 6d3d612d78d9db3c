// The results at the end of an update.
#include <numeric>

#include "operation/OperationFixture.h"

using ::testing::_;
using ::testing::ElementsAre;

namespace {

void addError(ZoCErrorListPool& list, unsigned code, const std::string& text)
{
    ZoSErrorRecord error;
    error.code = code;
    error.text = text;
    list.addError(error);
}

}  // namespace

class Results : public OperationFixture {
protected:
    // Makes a whole update of as many elements without a fault and gives them these states.
    void prepareElements(const std::vector<State>& newStates)
    {
        for (unsigned id = 1; id <= newStates.size(); ++id) {
            addElement(1, id);
        }
        prepare();
        ASSERT_TRUE(update());
        become(newStates);
    }

    // Prints the results.
    bool print(bool filesMissing = false)
    {
        journal->clear();
        return operation().printUpdateResults(errors, filesMissing);
    }

    // What was printed between the heading and the outcome.
    std::string printedOfElements() const
    {
        const std::vector<std::string> fragments = journal->fragments();
        return std::accumulate(fragments.begin() + 1, fragments.end() - 1, std::string());
    }
};

TEST_F(Results, SucceedsWithoutAnyUpdate)
{
    prepareElements({});

    EXPECT_TRUE(print());

    EXPECT_THAT(journal->events(), ElementsAre("\nResults:\n", "\n    Update completed successfully!\n"));
}

TEST_F(Results, IsIncompleteWithMissingFiles)
{
    prepareElements({FINISHED});

    EXPECT_FALSE(print(true));

    EXPECT_THAT(journal->events(),
                ElementsAre(_, "\n    Update incomplete due to missing files in the source folder!\n"));
}

TEST_F(Results, SpeaksOfFailureRatherThanOfMissingFiles)
{
    prepareElements({FAILED});

    EXPECT_FALSE(print(true));

    EXPECT_THAT(journal->events(), ElementsAre(_, "    ERROR: Board 1, SN 1, Element 1:\n", "\n    Update failed!\n"));
}

TEST_F(Results, ListsUnfinishedElementsWithoutErrorsByTheirNameAlone)
{
    prepareElements({NOTHING_TO_DO, PENDING, RUNNING, FAILED, FINISHED});

    EXPECT_FALSE(print());

    EXPECT_EQ(printedOfElements(),
              "    ERROR: Board 1, SN 1, Element 2:\n"
              "    ERROR: Board 1, SN 1, Element 3:\n"
              "    ERROR: Board 1, SN 1, Element 4:\n");
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(Results, SaysOfACancelledElementThatItWasCancelledAfterItsErrors)
{
    prepareElements({CANCELLED, CANCELLED});
    addError(*element(1).resultErrorList, 5, "verify");

    EXPECT_FALSE(print());

    EXPECT_EQ(printedOfElements(),
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "       Update cancelled due to previous update errors on the same board.\n"
              "    ERROR: Board 1, SN 1, Element 2:\n"
              "       ERROR 0x5 (reported by Host PC):\n"
              "         verify\n"
              "       Update cancelled due to previous update errors on the same board.\n");
}

TEST_F(Results, AppendsBothErrorListsOfEachElementInOrder)
{
    prepareElements({FAILED, FINISHED});
    addError(errors, 1, "from before");
    addError(*element(0).statusErrorList, 4, "status 1");
    addError(*element(0).resultErrorList, 5, "result 1");
    addError(*element(0).statusErrorList, 4, "status 2");
    addError(*element(1).resultErrorList, 5, "result 2");

    EXPECT_FALSE(print());

    EXPECT_THAT(listed(errors), ElementsAre("1 from before", "4 status 1", "4 status 2", "5 result 1", "5 result 2"));
    EXPECT_EQ(printedOfElements(),
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "       ERROR 0x4 (reported by Host PC):\n"
              "         status 1\n"
              "       ERROR 0x4 (reported by Host PC):\n"
              "         status 2\n"
              "       ERROR 0x5 (reported by Host PC):\n"
              "         result 1\n"
              "    ERROR: Board 1, SN 1, Element 2:\n"
              "       ERROR 0x5 (reported by Host PC):\n"
              "         result 2\n");
}

TEST_F(Results, LeavesOutElementsWithNothingToDoAndTheirErrors)
{
    prepareElements({NOTHING_TO_DO});
    addError(*element(0).statusErrorList, 4, "status");

    EXPECT_TRUE(print());

    EXPECT_EQ(printedOfElements(), "");
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(Results, KeepsTheElementsOwnErrorLists)
{
    prepareElements({FAILED});
    addError(*element(0).statusErrorList, 4, "status");

    EXPECT_FALSE(print());

    EXPECT_THAT(listed(*element(0).statusErrorList), ElementsAre("4 status"));
}

TEST_F(Results, TellsWhereAnErrorCameFromInVerboseMode)
{
    options.verbose = true;
    prepareElements({FAILED});
    ZoSErrorRecord error;
    error.originNode = 16;
    error.code = 0x4711;
    error.timeStamp = 1500;
    error.text = "The element cannot be written.";
    element(0).statusErrorList->addError(error);

    EXPECT_FALSE(print());

    EXPECT_EQ(printedOfElements(),
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "       ERROR 0x4711 (reported by S/N 16), time  1.500 sec.:\n"
              "         The element cannot be written.\n");
}

TEST_F(Results, ReportsTheErrorsAgainAtTheEndOfTheRun)
{
    Json finish = failing(4, "no answer");
    finish["results"] = Json::array({{{"code", 5}, {"text", "verify"}}});
    scriptOf(1, 1)["finish"] = Json::array({finish});
    letStartFail(2, 1);
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    addElement(2, 1, 1);
    prepare();

    EXPECT_EQ(updater->run(), 0);

    std::vector<std::string> told;
    for (const std::string& fragment : journal->fragments()) {
        if (fragment.starts_with("         ") && fragment.ends_with("\n")) {
            told.push_back(fragment.substr(9));
        }
    }
    EXPECT_THAT(told, ElementsAre("no answer\n", "verify\n", "no room\n", "no answer\n", "verify\n", "no room\n"));
}
