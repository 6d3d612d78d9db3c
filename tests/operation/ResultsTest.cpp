// The results at the end of an update.
#include "operation/OperationTest.h"

using ::testing::ElementsAre;

class ResultsTest : public OperationTest {
protected:
    // Makes a whole update without a fault, gives the elements these states and forgets what was said.
    void become(const std::vector<std::uint32_t>& newStates)
    {
        ASSERT_TRUE(update());
        journal->clear();
        for (unsigned i = 0; i < newStates.size(); ++i) {
            element(i).updateState = newStates[i];
        }
    }

    static void addError(ZoCErrorListPool& list, unsigned code, const std::string& text)
    {
        ZoSErrorRecord error;
        error.code = code;
        error.text = text;
        list.addError(error);
    }
};

TEST_F(ResultsTest, SucceedsWithoutAnyUpdate)
{
    prepare();
    become({});

    EXPECT_TRUE(operation().printUpdateResults(errors, false));

    EXPECT_EQ(journal->told(), "\nResults:\n\n    Update completed successfully!\n");
}

TEST_F(ResultsTest, IsIncompleteWithMissingFiles)
{
    addElement(1, 1);
    prepare();
    become({5});

    EXPECT_FALSE(operation().printUpdateResults(errors, true));

    EXPECT_EQ(journal->told(), "\nResults:\n\n    Update incomplete due to missing files in the source folder!\n");
}

TEST_F(ResultsTest, SpeaksOfFailureRatherThanOfMissingFiles)
{
    addElement(1, 1);
    prepare();
    become({3});

    EXPECT_FALSE(operation().printUpdateResults(errors, true));

    EXPECT_EQ(journal->told(),
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "\n    Update failed!\n");
}

TEST_F(ResultsTest, ListsUnfinishedElementsWithoutErrorsByTheirNameAlone)
{
    addElement(1, 1);
    addElement(1, 2);
    addElement(1, 3);
    addElement(1, 4);
    addElement(1, 5);
    prepare();
    become({0, 1, 2, 3, 5});

    EXPECT_FALSE(operation().printUpdateResults(errors, false));

    EXPECT_EQ(journal->told(),
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, Element 2:\n"
              "    ERROR: Board 1, SN 1, Element 3:\n"
              "    ERROR: Board 1, SN 1, Element 4:\n"
              "\n    Update failed!\n");
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(ResultsTest, SaysOfCancelledElementsThatTheyWereCancelled)
{
    addElement(1, 1);
    prepare();
    become({4});

    EXPECT_FALSE(operation().printUpdateResults(errors, false));

    EXPECT_EQ(journal->told(),
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "       Update cancelled due to previous update errors on the same board.\n"
              "\n    Update failed!\n");
}

TEST_F(ResultsTest, PrintsTheErrorsOfACancelledElementFirst)
{
    addElement(1, 1);
    prepare();
    become({4});
    addError(*element(0).resultErrorList, 5, "verify");

    EXPECT_FALSE(operation().printUpdateResults(errors, false));

    EXPECT_EQ(journal->told(),
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "       ERROR 0x5 (reported by Host PC):\n"
              "         verify\n"
              "       Update cancelled due to previous update errors on the same board.\n"
              "\n    Update failed!\n");
}

TEST_F(ResultsTest, AppendsBothErrorListsOfEachElementInOrder)
{
    addElement(1, 1);
    addElement(1, 2);
    prepare();
    become({3, 5});
    addError(errors, 1, "from before");
    addError(*element(0).statusErrorList, 4, "status 1");
    addError(*element(0).resultErrorList, 5, "result 1");
    addError(*element(0).statusErrorList, 4, "status 2");
    addError(*element(1).resultErrorList, 5, "result 2");

    EXPECT_FALSE(operation().printUpdateResults(errors, false));

    EXPECT_THAT(listed(errors), ElementsAre("1 from before", "4 status 1", "4 status 2", "5 result 1", "5 result 2"));
    EXPECT_EQ(journal->told(),
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "       ERROR 0x4 (reported by Host PC):\n"
              "         status 1\n"
              "       ERROR 0x4 (reported by Host PC):\n"
              "         status 2\n"
              "       ERROR 0x5 (reported by Host PC):\n"
              "         result 1\n"
              "    ERROR: Board 1, SN 1, Element 2:\n"
              "       ERROR 0x5 (reported by Host PC):\n"
              "         result 2\n"
              "\n    Update failed!\n");
}

TEST_F(ResultsTest, LeavesOutElementsWithNothingToDoAndTheirErrors)
{
    addElement(1, 1);
    prepare();
    become({0});
    addError(*element(0).statusErrorList, 4, "status");

    EXPECT_TRUE(operation().printUpdateResults(errors, false));

    EXPECT_EQ(journal->told(), "\nResults:\n\n    Update completed successfully!\n");
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(ResultsTest, KeepsTheElementsOwnErrorLists)
{
    addElement(1, 1);
    prepare();
    become({3});
    addError(*element(0).statusErrorList, 4, "status");

    operation().printUpdateResults(errors, false);

    EXPECT_THAT(listed(*element(0).statusErrorList), ElementsAre("4 status"));
}

TEST_F(ResultsTest, TellsWhereAnErrorCameFromInVerboseMode)
{
    options.verbose = true;
    addElement(1, 1);
    prepare();
    become({3});
    ZoSErrorRecord error;
    error.originNode = 16;
    error.code = 0x4711;
    error.timeStamp = 1500;
    error.mainModule = 3;
    error.subModule = 7;
    error.function = "write";
    error.line = 12;
    error.text = "The element cannot be written.";
    element(0).statusErrorList->addError(error);

    operation().printUpdateResults(errors, false);

    EXPECT_EQ(journal->told(),
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "       ERROR 0x4711 (reported by S/N 16), time  1.500 sec., module 3/7, in write():12:\n"
              "         The element cannot be written.\n"
              "\n    Update failed!\n");
}

TEST_F(ResultsTest, ReportsTheErrorsAgainAtTheEndOfTheRun)
{
    Json finish = failing(4, "no answer");
    finish["results"] = Json::array({{{"code", 5}, {"text", "verify"}}});
    scriptOf(1, 1)["finish"] = Json::array({finish});
    scriptOf(2, 1)["start"] = Json::array({failing(6, "no room")});
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    addElement(2, 1, 1);
    prepare();

    EXPECT_EQ(updater->run(), 0);

    EXPECT_EQ(journal->text(),
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 1                        \n"
              "        Board 2, SN 2, Element 1                        [ERROR]\n"
              "[ERROR]\n"
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "       ERROR 0x4 (reported by Host PC):\n"
              "         no answer\n"
              "       ERROR 0x5 (reported by Host PC):\n"
              "         verify\n"
              "    ERROR: Board 1, SN 1, Element 2:\n"
              "       Update cancelled due to previous update errors on the same board.\n"
              "    ERROR: Board 2, SN 2, Element 1:\n"
              "       ERROR 0x6 (reported by Host PC):\n"
              "         no room\n"
              "\n    Update failed!\n"
              "\nReported errors:\n"
              "       ERROR 0x4 (reported by Host PC):\n"
              "         no answer\n"
              "       ERROR 0x5 (reported by Host PC):\n"
              "         verify\n"
              "       ERROR 0x6 (reported by Host PC):\n"
              "         no room\n");
}
