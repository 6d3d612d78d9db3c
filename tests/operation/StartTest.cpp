// Starting the updates of a phase.
#include "operation/OperationFixture.h"

using ::testing::_;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
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

class Start : public OperationFixture {
protected:
    // Makes a whole update without a fault, locks the target again and forgets what was said.
    void lockAfterUpdate()
    {
        ASSERT_TRUE(update());
        ASSERT_TRUE(operation().lockInventory(errors));
        journal->clear();
    }

    // Starts the elements of a phase, which have these states, outside of a whole update.
    void start(const std::vector<State>& newStates)
    {
        lockAfterUpdate();
        PhaseList list = become(newStates);
        operation().startUpdatesOfPhase(list);
    }

    // The line of a single started element with this name.
    std::string lineOf(const char* name)
    {
        addElement(1, 1);
        prepare();
        element(0).displayName = name;
        start({PENDING});
        return journal->text().substr(journal->fragments().at(0).size());
    }
};

TEST_F(Start, PrintsTheHeadingOnceBeforeTheFirstPendingElement)
{
    addElement(1, 1);
    addElement(1, 2);
    addElement(1, 3);
    prepare();
    start({NOTHING_TO_DO, PENDING, PENDING});

    EXPECT_EQ(journal->told(),
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 2                        \n"
              "        Board 1, SN 1, Element 3                        \n");
}

TEST_F(Start, StartsAndPrintsNothingWithoutAPendingElement)
{
    for (unsigned id = 1; id <= 5; ++id) {
        addElement(1, id);
    }
    prepare();
    start({NOTHING_TO_DO, RUNNING, FAILED, CANCELLED, FINISHED});

    EXPECT_THAT(journal->events(), IsEmpty());
    EXPECT_EQ(calls("update2").size(), 5u);  // of the whole update before
    EXPECT_THAT(states(), ElementsAre(NOTHING_TO_DO, RUNNING, FAILED, CANCELLED, FINISHED));
}

TEST_F(Start, FillsUpToColumn56InAPieceOfItsOwn)
{
    addElement(1, 1);
    prepare();
    start({PENDING});

    EXPECT_THAT(journal->fragments(),
                ElementsAre(_, "        Board 1, SN 1, Element 1", "                        ", "\n"));
}

TEST_F(Start, FillsALineOf55CharactersWithOneBlank)
{
    EXPECT_EQ(lineOf("12345678901234567890123456789012345678901234567"),
              "        12345678901234567890123456789012345678901234567 \n");
}

TEST_F(Start, FillsALineOf56CharactersNoFurther)
{
    EXPECT_EQ(lineOf("123456789012345678901234567890123456789012345678"),
              "        123456789012345678901234567890123456789012345678\n");
    EXPECT_EQ(journal->fragments().size(), 3u);
}

TEST_F(Start, PrintsALongNameInFull)
{
    EXPECT_EQ(lineOf("1234567890123456789012345678901234567890123456789012345678901234567890"),
              "        1234567890123456789012345678901234567890123456789012345678901234567890\n");
}

TEST_F(Start, PrintsAndLogsANameWithPercentSignsLiterally)
{
    EXPECT_THAT(lineOf("100%s of %n and %1"), HasSubstr("        100%s of %n and %1   "));
    ASSERT_EQ(calls("sendLog").size(), 2u);
    EXPECT_EQ(calls("sendLog")[1].at("text"), "Firmware update: 100%s of %n and %1...");
}

TEST_F(Start, LogsEachStart)
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

TEST_F(Start, NamesBoardElementAndFileToTheInventoryManager)
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

TEST_F(Start, WaitsHalfASecondAfterEachStartedUpdate)
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

TEST_F(Start, EndsTheLineBeforeItWaits)
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

TEST_F(Start, DoesNotWaitAfterAFailedStart)
{
    letStartFail(1, 1);
    addElement(1, 1);
    prepare();
    EXPECT_FALSE(update());

    ASSERT_EQ(calls("usleep").size(), 1u);
    EXPECT_EQ(calls("usleep")[0].at("microseconds"), 200000);
}

TEST_F(Start, GoesOnAfterAFailedStart)
{
    letStartFail(1, 1);
    addElement(1, 1);
    addElement(2, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->told(), HasSubstr("Element 1                        [ERROR]\n<failure 0>"));
    EXPECT_THAT(states(), ElementsAre(FAILED, FINISHED));
    ASSERT_EQ(calls("updateStatus2").size(), 1u);
    EXPECT_EQ(calls("updateStatus2")[0].at("board"), "/ROOT/IOMODULE[2]");
}

TEST_F(Start, KeepsTheErrorsOfAFailedStartWithTheElement)
{
    letStartFail(1, 1);
    addElement(1, 1);
    prepare();
    EXPECT_FALSE(update());

    EXPECT_THAT(listed(*element(0).statusErrorList), ElementsAre("4 no room"));
    EXPECT_THAT(listed(*element(0).resultErrorList), IsEmpty());
}

TEST_F(Start, DoesNotTakeEarlierErrorsOfTheElementForAFailedStart)
{
    addElement(1, 1);
    prepare();
    ZoSErrorRecord earlier;
    earlier.code = 9;
    element(0).statusErrorList->addError(earlier);

    EXPECT_FALSE(update());

    EXPECT_EQ(calls("updateStatus2").size(), 1u);
    EXPECT_THAT(states(), ElementsAre(FINISHED));
}
