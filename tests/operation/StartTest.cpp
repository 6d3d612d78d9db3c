// Starting the updates of a phase.
#include "operation/OperationTest.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

// The callbacks carry no context: the target, and the last of its calls before each end of a line.
const SimulatedTarget* watchedByStart = nullptr;
std::vector<std::string> callsBeforeLineEnds;

void noteCallBeforeLineEnd(const std::string& text)
{
    if (text == "\n") {
        callsBeforeLineEnds.push_back(watchedByStart->trace().back().at("call"));
    }
}

}  // namespace

class StartTest : public OperationTest {
protected:
    // Makes a whole update without a fault, locks the target again and forgets what was said.
    void lockAfterUpdate()
    {
        ASSERT_TRUE(update());
        ASSERT_TRUE(operation().lockInventory(errors));
        journal->clear();
    }

    // Starts the given elements as pending ones of a phase, outside of a whole update.
    void start(PhaseList list)
    {
        lockAfterUpdate();
        for (Element* each : list) {
            each->updateState = 1;
        }
        operation().startUpdatesOfPhase(list);
    }
};

TEST_F(StartTest, PrintsTheHeadingOnceBeforeTheFirstElement)
{
    addElement(1, 1);
    addElement(1, 2);
    prepare();
    start({&element(0), &element(1)});

    EXPECT_EQ(journal->told(),
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 1                        \n"
              "        Board 1, SN 1, Element 2                        \n");
}

TEST_F(StartTest, PrintsNoHeadingWithoutAPendingElement)
{
    for (unsigned id = 1; id <= 5; ++id) {
        addElement(1, id);
    }
    prepare();
    ASSERT_TRUE(update());
    journal->clear();
    const std::size_t started = calls("update2").size();
    const std::uint32_t otherStates[] = {0, 2, 3, 4, 5};
    PhaseList list;
    for (unsigned i = 0; i < 5; ++i) {
        element(i).updateState = otherStates[i];
        list.push_back(&element(i));
    }

    operation().startUpdatesOfPhase(list);

    EXPECT_EQ(journal->told(), "");
    EXPECT_EQ(calls("update2").size(), started);
    EXPECT_THAT(states(), ElementsAre(0u, 2u, 3u, 4u, 5u));
}

TEST_F(StartTest, PrintsTheHeadingBeforeTheFirstPendingElementOnly)
{
    addElement(1, 1);
    addElement(1, 2);
    prepare();
    lockAfterUpdate();
    element(0).updateState = 0;
    element(1).updateState = 1;
    PhaseList list = {&element(0), &element(1)};

    operation().startUpdatesOfPhase(list);

    EXPECT_EQ(journal->told(),
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 2                        \n");
}

TEST_F(StartTest, FillsUpToColumn56InAPieceOfItsOwn)
{
    addElement(1, 1);
    prepare();
    start({&element(0)});

    EXPECT_THAT(journal->fragments(),
                ElementsAre("\nUpdating:\n", "        Board 1, SN 1, Element 1", "                        ", "\n"));
}

TEST_F(StartTest, FillsALineOf55CharactersWithOneBlank)
{
    addElement(1, 1);
    prepare();
    element(0).displayName = "12345678901234567890123456789012345678901234567";
    start({&element(0)});

    EXPECT_EQ(journal->told(), "\nUpdating:\n        12345678901234567890123456789012345678901234567 \n");
}

TEST_F(StartTest, FillsALineOf56CharactersNoFurther)
{
    addElement(1, 1);
    prepare();
    element(0).displayName = "123456789012345678901234567890123456789012345678";
    start({&element(0)});

    EXPECT_EQ(journal->told(), "\nUpdating:\n        123456789012345678901234567890123456789012345678\n");
    EXPECT_EQ(journal->fragments().size(), 3u);
}

TEST_F(StartTest, PrintsALongNameInFull)
{
    addElement(1, 1);
    prepare();
    element(0).displayName = "1234567890123456789012345678901234567890123456789012345678901234567890";
    start({&element(0)});

    EXPECT_EQ(journal->told(),
              "\nUpdating:\n"
              "        1234567890123456789012345678901234567890123456789012345678901234567890\n");
}

TEST_F(StartTest, PrintsAndLogsANameWithPercentSignsLiterally)
{
    addElement(1, 1);
    prepare();
    element(0).displayName = "100%s of %n and %1";
    start({&element(0)});

    EXPECT_EQ(journal->told(), "\nUpdating:\n        100%s of %n and %1                              \n");
    ASSERT_EQ(calls("sendLog").size(), 2u);
    EXPECT_EQ(calls("sendLog")[1].at("text"), "Firmware update: 100%s of %n and %1...");
}

TEST_F(StartTest, LogsEachStart)
{
    addElement(1, 1);
    addElement(2, 7);
    prepare();
    EXPECT_TRUE(update());

    ASSERT_EQ(calls("sendLog").size(), 2u);
    EXPECT_EQ(calls("sendLog")[0].at("code"), 0x26500000);
    EXPECT_EQ(calls("sendLog")[0].at("line"), 504);
    EXPECT_EQ(calls("sendLog")[0].at("function"), "startUpdatesOfPhase");
    EXPECT_EQ(calls("sendLog")[0].at("text"), "Firmware update: Board 1, SN 1, Element 1...");
    EXPECT_EQ(calls("sendLog")[1].at("line"), 504);
    EXPECT_EQ(calls("sendLog")[1].at("text"), "Firmware update: Board 2, SN 2, Element 7...");
}

TEST_F(StartTest, NamesBoardElementAndFileToTheInventoryManager)
{
    addElement(1, 1);
    addElement(2, 7);
    prepare();
    EXPECT_TRUE(update());

    ASSERT_EQ(calls("update2").size(), 2u);
    EXPECT_EQ(calls("update2")[0].at("board"), "/ROOT/IOMODULE");
    EXPECT_EQ(calls("update2")[0].at("id"), 1);
    EXPECT_EQ(calls("update2")[0].at("path"), archive->path() + "/b1e1.bin");
    EXPECT_EQ(calls("update2")[1].at("board"), "/ROOT/IOMODULE[2]");
    EXPECT_EQ(calls("update2")[1].at("id"), 7);
    EXPECT_EQ(calls("update2")[1].at("path"), archive->path() + "/b2e7.bin");
}

TEST_F(StartTest, WaitsHalfASecondAfterEachStartedUpdate)
{
    addElement(1, 1);
    addElement(1, 2);
    prepare();
    EXPECT_TRUE(update());

    const std::vector<Json> all = trace();
    ASSERT_GE(all.size(), 7u);
    EXPECT_EQ(all[1].at("call"), "sendLog");
    EXPECT_EQ(all[2].at("call"), "update2");
    EXPECT_EQ(all[3].at("call"), "usleep");
    EXPECT_EQ(all[3].at("microseconds"), 500000);
    EXPECT_EQ(all[4].at("call"), "sendLog");
    EXPECT_EQ(all[5].at("call"), "update2");
    EXPECT_EQ(all[6].at("call"), "usleep");
    EXPECT_EQ(all[6].at("microseconds"), 500000);
}

TEST_F(StartTest, EndsTheLineBeforeItWaits)
{
    addElement(1, 1);
    addElement(1, 2);
    prepare();
    watchedByStart = simulated.get();
    callsBeforeLineEnds.clear();
    updater->setMessageCallBack(noteCallBeforeLineEnd);

    EXPECT_TRUE(update());

    EXPECT_THAT(callsBeforeLineEnds, ElementsAre("update2", "update2"));
}

TEST_F(StartTest, DoesNotWaitAfterAFailedStart)
{
    scriptOf(1, 1)["start"] = Json::array({failing(4, "no room")});
    addElement(1, 1);
    prepare();
    EXPECT_FALSE(update());

    ASSERT_EQ(calls("usleep").size(), 1u);
    EXPECT_EQ(calls("usleep")[0].at("microseconds"), 200000);
}

TEST_F(StartTest, GoesOnAfterAFailedStart)
{
    scriptOf(1, 1)["start"] = Json::array({failing(4, "no room")});
    addElement(1, 1);
    addElement(2, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_EQ(journal->told(),
              "<phase 0>"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 1                        [ERROR]\n"
              "<failure 0>"
              "        Board 2, SN 2, Element 1                        \n"
              "<progress 100><progress 100>"
              "[ERROR]\n"
              "<phase 4294967295>"
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, Element 1:\n"
              "       ERROR 0x4 (reported by Host PC):\n"
              "         no room\n"
              "\n    Update failed!\n");
    EXPECT_THAT(states(), ElementsAre(3u, 5u));
    ASSERT_EQ(calls("updateStatus2").size(), 1u);
    EXPECT_EQ(calls("updateStatus2")[0].at("board"), "/ROOT/IOMODULE[2]");
}

TEST_F(StartTest, KeepsTheErrorsOfAFailedStartWithTheElement)
{
    scriptOf(1, 1)["start"] = Json::array({failing(4, "no room")});
    addElement(1, 1);
    prepare();
    EXPECT_FALSE(update());

    EXPECT_THAT(listed(*element(0).statusErrorList), ElementsAre("4 no room"));
    EXPECT_THAT(listed(*element(0).resultErrorList), IsEmpty());
}

TEST_F(StartTest, DoesNotTakeEarlierErrorsOfTheElementForAFailedStart)
{
    addElement(1, 1);
    prepare();
    ZoSErrorRecord earlier;
    earlier.code = 9;
    element(0).statusErrorList->addError(earlier);

    EXPECT_FALSE(update());

    EXPECT_EQ(calls("updateStatus2").size(), 1u);
    EXPECT_THAT(states(), ElementsAre(5u));
}
