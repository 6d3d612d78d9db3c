// Collecting the errors of a phase's updates, and its verdict.
#include "operation/OperationTest.h"
#include "support/Namespaces.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ErrorCollectionTest : public OperationTest {
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
    void collect(const std::vector<std::uint32_t>& newStates)
    {
        update();
        ASSERT_TRUE(operation().lockInventory(errors));
        journal->clear();
        PhaseList list;
        for (unsigned i = 0; i < newStates.size(); ++i) {
            element(i).updateState = newStates[i];
            list.push_back(&element(i));
        }
        operation().updateErrors(list);
    }
};

TEST_F(ErrorCollectionTest, AsksOnceForTheErrorsOfEachFinishedUpdate)
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

TEST_F(ErrorCollectionTest, KeepsWhatTheUpdateAndTheCallReportApart)
{
    scriptOf(1, 1)["finish"] = Json::array({finish({"no answer"}, {"verify", "checksum"})});
    addElement(1, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(listed(*element(0).statusErrorList), ElementsAre("4 no answer"));
    EXPECT_THAT(listed(*element(0).resultErrorList), ElementsAre("5 verify", "5 checksum"));
}

TEST_F(ErrorCollectionTest, MarksThePhaseForAnUpdateThatReportsErrors)
{
    scriptOf(1, 1)["finish"] = Json::array({finish({}, {"verify"})});
    addElement(1, 1);
    addElement(2, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_EQ(journal->told(),
              "<phase 0>"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 1                        \n"
              "        Board 2, SN 2, Element 1                        \n"
              "<progress 100><progress 100>"
              "<failure 0>"
              "[ERROR]\n"
              "<phase 4294967295>"
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "       ERROR 0x5 (reported by Host PC):\n"
              "         verify\n"
              "\n    Update failed!\n");
    EXPECT_THAT(states(), ElementsAre(5u, 5u));
}

TEST_F(ErrorCollectionTest, MarksThePhaseWhenTheErrorsCannotBeFetched)
{
    scriptOf(1, 1)["finish"] = Json::array({finish({"no answer"}, {})});
    addElement(1, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_EQ(journal->text(),
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 1                        \n"
              "[ERROR]\n"
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "       ERROR 0x4 (reported by Host PC):\n"
              "         no answer\n"
              "\n    Update failed!\n");
    EXPECT_THAT(states(), ElementsAre(5u));
    EXPECT_THAT(journal->reports(),
                ElementsAre("phase 0", "progress 100", "progress 100", "failure 0", "phase 4294967295"));
}

TEST_F(ErrorCollectionTest, CountsErrorsOfAnEarlierPollThatDidNotFailTheUpdate)
{
    scriptOf(1, 1)["polls"] = Json::array({failing(4, "lost"), {{"status", 2}}});
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_EQ(journal->told(),
              "<phase 0>"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 1                        \n"
              "<progress 0><progress 100><progress 100>"
              "<failure 0><failure 1>"
              "[ERROR]\n"
              "<phase 1>"
              "<phase 4294967295>"
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "       ERROR 0x4 (reported by Host PC):\n"
              "         lost\n"
              "    ERROR: Board 1, SN 1, Element 2:\n"
              "       Update cancelled due to previous update errors on the same board.\n"
              "\n    Update failed!\n");
    EXPECT_THAT(states(), ElementsAre(5u, 4u));
}

TEST_F(ErrorCollectionTest, ReportsAnUpdateBeforeThoseThatItCancels)
{
    scriptOf(1, 2)["finish"] = Json::array({finish({}, {"verify"})});
    addElement(1, 1, 2);
    addElement(1, 2, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "progress 100", "progress 100", "failure 1", "failure 0",
                                                "phase 1", "phase 4294967295"));
}

TEST_F(ErrorCollectionTest, DoesNotReportAFailedUpdateAgain)
{
    scriptOf(1, 1)["polls"] = Json::array({{{"status", 3}}});
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "failure 0", "progress 100", "progress 100", "failure 1",
                                                "phase 1", "phase 4294967295"));
    EXPECT_THAT(calls("updateErrors2"), IsEmpty());
}

TEST_F(ErrorCollectionTest, DoesNotFetchTheErrorsOfAnUpdateThatStillRuns)
{
    addElement(1, 1);
    prepare();

    collect({2});

    EXPECT_EQ(journal->told(), "[ERROR]\n");
    EXPECT_EQ(calls("updateErrors2").size(), 1u);  // of the whole update before
    EXPECT_THAT(states(), ElementsAre(2u));
}

TEST_F(ErrorCollectionTest, PrintsNothingWithoutAStartedUpdate)
{
    addElement(1, 1);
    addElement(1, 2);
    addElement(1, 3);
    prepare();

    collect({0, 1, 4});

    EXPECT_EQ(journal->told(), "");
    EXPECT_EQ(calls("updateErrors2").size(), 3u);  // of the whole update before
}

TEST_F(ErrorCollectionTest, PrintsNothingForAnEmptyList)
{
    prepare();

    collect({});

    EXPECT_EQ(journal->told(), "");
}

TEST_F(ErrorCollectionTest, IgnoresElementsThatWereNotStarted)
{
    addElement(1, 1);
    addElement(1, 2);
    prepare();

    collect({4, 5});

    EXPECT_EQ(journal->told(), "[OK]\n");
}

TEST_F(ErrorCollectionTest, CancelsFromTheNextPhaseOn)
{
    addElement(1, 1, 1);
    addElement(1, 2, 1);
    addElement(2, 1, 1);
    addElement(2, 2, 2);
    prepare();
    ASSERT_TRUE(update());
    journal->clear();
    element(0).updateState = 3;
    element(1).updateState = 1;
    element(2).updateState = 3;
    element(3).updateState = 1;
    PhaseList list = {&element(0), &element(2)};

    operation().updateErrors(list);

    EXPECT_THAT(states(), ElementsAre(3u, 1u, 3u, 4u));
    EXPECT_EQ(journal->told(), "<failure 3>[ERROR]\n");
}

TEST_F(ErrorCollectionTest, CancelsNothingForAFileOfTheFlashDrive)
{
    SKIP_WITHOUT_MOUNT();
    hasFlashDrive = true;
    addFileElement(1, 1, "c.bin", 1);
    addElement(1, 2, 2);
    contents["b1f1.bin"] = "";
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(3u, 5u));
    EXPECT_EQ(journal->told(),
              "<phase 0>"
              "\nUpdating:\n"
              "        Board 1, SN 1, File 1                           [ERROR]\n"
              "<failure 0>"
              "            ERROR: Writing /mnt/cn/cfdrive/c.bin.tmp failed.\n"
              "<progress 100>"
              "[ERROR]\n"
              "<phase 1>"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 2                        \n"
              "<progress 100><progress 100>"
              "[OK]\n"
              "<phase 4294967295>"
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, File 1:\n"
              "\n    Update failed!\n");
}

TEST_F(ErrorCollectionTest, FetchesNoErrorsForAFileOfTheFlashDrive)
{
    SKIP_WITHOUT_MOUNT();
    hasFlashDrive = true;
    addFileElement(1, 1, "c.bin");
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(calls("updateErrors2"), IsEmpty());
}
