// What an inspector says of each element while an update is at work, and after it.
#include <stdexcept>

#include "Inspecting.h"

using nlohmann::ordered_json;
using testing::ElementsAre;
using testing::IsEmpty;
using namespace ZoNTrellanInspector;

namespace {

// What a callback does; it has no argument of its own.
std::function<void(unsigned)> onPhase;

class StatesAfterUpdate : public Inspecting {
protected:
    ~StatesAfterUpdate() override { onPhase = nullptr; }

    // An I/O board with the elements 1 to `count` and a file for each, one in each phase.
    unsigned applyPhases(unsigned count)
    {
        std::vector<Json> elements;
        for (unsigned id = 1; id <= count; ++id) {
            elements.push_back(installed(id));
            entries.push_back(ioEntry("file" + std::to_string(id) + ".bin", id));
        }
        boards = {ioBoard(elements)};
        return apply();
    }

    Json& scriptOf(unsigned id) { return script["elements"]["/ROOT/IOMODULE#" + std::to_string(id)]; }

    void watchPhases(std::function<void(unsigned)> watcher)
    {
        onPhase = std::move(watcher);
        updater->setPhaseCallBack([](unsigned phase) { onPhase(phase); });
    }
};

}  // namespace

TEST_F(StatesAfterUpdate, WhatWasUpdatedIsUpdatedAndWhatWasLeftOutStaysWhatItWas)
{
    boards = {ioBoard({installed(1), installed(2), installed(3), installed(4), installed(5, {{"CUSTOM", 1}})})};
    entries = {ioEntry("one.bin", 1), ioEntry("two.bin", 2, {{"version", "1.0"}, {"checksumCrc32", 5}}),
               ioEntry("three.bin", 3), ioEntry("five.bin", 5)};
    options.disableCustomElements = true;
    ASSERT_EQ(apply(), 0u);
    updater->disableUpdateElement(2);
    EXPECT_EQ(updater->run(), 1);

    EXPECT_THAT(states(), ElementsAre("updated", "upToDate", "excluded", "noFile", "custom"));
    EXPECT_THAT(errorsOf(0), IsEmpty());
}

TEST_F(StatesAfterUpdate, AFailedUpdateCancelsTheLaterOnesOfItsBoard)
{
    scriptOf(2)["start"] = {{{"errors", {{{"code", 7}, {"text", "refused"}}}}}};
    ASSERT_EQ(applyPhases(4), 0u);
    EXPECT_EQ(updater->run(), 0);

    EXPECT_THAT(states(), ElementsAre("updated", "failed", "cancelled", "cancelled"));
    EXPECT_THAT(errorsOf(1), ElementsAre("refused"));
    EXPECT_THAT(errorsOf(2), IsEmpty());
}

TEST_F(StatesAfterUpdate, AnUpdateThatFinishesWithErrorsHasFailed)
{
    scriptOf(1)["finish"] = {{{"errors", {{{"code", 8}, {"text", "asking"}}}},
                              {"results",
                               {{{"code", 9},
                                 {"text", "verify"},
                                 {"originNode", 16777232},
                                 {"timeStamp", 1500},
                                 {"mainModule", 3},
                                 {"subModule", 4},
                                 {"function", "check"},
                                 {"line", 77}}}}}};
    ASSERT_EQ(applyPhases(1), 0u);
    EXPECT_EQ(updater->run(), 0);

    EXPECT_THAT(states(), ElementsAre("failed"));
    EXPECT_THAT(errorsOf(0), ElementsAre("asking", "verify"));
    const ZoTError& error = inspector->getElementError(0, 1);
    EXPECT_TRUE(error.hasCode);
    EXPECT_EQ(error.code, 9u);
    EXPECT_EQ(error.originNode, 16777232u);
    EXPECT_DOUBLE_EQ(error.time, 1.5);
    EXPECT_EQ(error.mainModule, 3u);
    EXPECT_EQ(error.subModule, 4u);
    EXPECT_EQ(error.function, "check");
    EXPECT_EQ(error.line, 77u);
    EXPECT_THROW(inspector->getElementError(0, 2), std::out_of_range);
}

TEST_F(StatesAfterUpdate, AnUpdateWithATolerableErrorOfAPollHasFailedAsTheResultsSay)
{
    scriptOf(1)["polls"] = {{{"errors", {{{"code", 4}, {"text", "lost"}}}}}, {{"status", 2}}};
    ASSERT_EQ(applyPhases(1), 0u);
    EXPECT_EQ(updater->run(), 0);

    EXPECT_THAT(states(), ElementsAre("failed"));
    EXPECT_THAT(errorsOf(0), ElementsAre("lost"));
}

TEST_F(StatesAfterUpdate, AFileThatCannotBeWrittenTellsTheWritersErrorAlone)
{
    boards = {hcnBoard({installed(1)})};
    entries = {fileEntry("hcn.bin"), fileEntry("site.cfg", {{"targetPath", "a b"}, {"sequence", 2}})};
    options.verbose = true;
    ASSERT_EQ(apply(), 0u);
    EXPECT_EQ(updater->run(), 0);

    EXPECT_THAT(states(), ElementsAre("updated", "failed"));
    EXPECT_THAT(errorsOf(1), ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/a b.tmp. Error code: 22"));
    const ZoTError& error = inspector->getElementError(1, 0);
    EXPECT_FALSE(error.hasCode);
    EXPECT_EQ(error.code, 0u);
    EXPECT_EQ(error.function, "");
}

TEST_F(StatesAfterUpdate, TheWritersErrorIsForgottenWhenTheNextUpdateBegins)
{
    boards = {hcnBoard({installed(1)})};
    entries = {fileEntry("hcn.bin"), fileEntry("site.cfg", {{"targetPath", "a b"}, {"sequence", 2}})};
    ASSERT_EQ(apply(), 0u);
    EXPECT_EQ(updater->run(), 0);
    ASSERT_THAT(errorsOf(1), ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/a b.tmp. Error code: 22"));
    watchPhases([](unsigned) { throw std::runtime_error("stop"); });
    EXPECT_THROW(updater->run(), std::runtime_error);

    EXPECT_THAT(states(), ElementsAre("notStarted", "notStarted"));
    EXPECT_THAT(errorsOf(1), IsEmpty());
}

TEST_F(StatesAfterUpdate, AnElementWhoseFileIsMissingTellsSo)
{
    missingFiles = {"file2.bin"};
    ASSERT_EQ(applyPhases(3), 0u);
    EXPECT_EQ(updater->run(), 0);

    EXPECT_THAT(states(), ElementsAre("updated", "missingFile", "updated"));

    archive->addFile("file2.bin", "content");
    updater->run();
    EXPECT_THAT(states(), ElementsAre("updated", "updated", "updated"));
}

TEST_F(StatesAfterUpdate, NothingIsStartedWhenTheTargetCannotBeLocked)
{
    script["lock"] = {{{"errors", {{{"code", 3}, {"text", "busy"}}}}}};
    ASSERT_EQ(applyPhases(2), 0u);
    EXPECT_EQ(updater->run(), 0);

    EXPECT_THAT(states(), ElementsAre("notStarted", "notStarted"));
}

TEST_F(StatesAfterUpdate, WhatIsStillToComeWillBeUpdatedWhileTheUpdateIsAtWork)
{
    ASSERT_EQ(applyPhases(3), 0u);
    std::vector<Names> seen;
    watchPhases([&](unsigned) { seen.push_back(states()); });
    EXPECT_EQ(updater->run(), 1);

    EXPECT_THAT(seen,
                ElementsAre(ElementsAre("update", "update", "update"), ElementsAre("updated", "update", "update"),
                            ElementsAre("updated", "updated", "update"), ElementsAre("updated", "updated", "updated")));
}

TEST_F(StatesAfterUpdate, AnElementThatIsDisabledTooLateIsUpdatedAllTheSame)
{
    ASSERT_EQ(applyPhases(2), 0u);
    watchPhases([&](unsigned phase) {
        if (phase == 0) {
            updater->disableUpdateElement(1);
        }
    });
    EXPECT_EQ(updater->run(), 1);

    EXPECT_THAT(states(), ElementsAre("updated", "updated"));
}

TEST_F(StatesAfterUpdate, AnExceptionOfThePhaseCallbackLeavesTheRestNotStarted)
{
    ASSERT_EQ(applyPhases(3), 0u);
    watchPhases([](unsigned phase) {
        if (phase == 1) {
            throw std::runtime_error("stop");
        }
    });
    EXPECT_THROW(updater->run(), std::runtime_error);

    EXPECT_THAT(states(), ElementsAre("updated", "notStarted", "notStarted"));
}

TEST_F(StatesAfterUpdate, AnExceptionOfTheProgressCallbackLeavesWhatWasBegunRunning)
{
    scriptOf(1)["polls"] = {{{"status", 1}, {"done", 1}, {"total", 4}}};
    ASSERT_EQ(applyPhases(2), 0u);
    updater->setProgressCallBack([](unsigned) { throw std::runtime_error("stop"); });
    EXPECT_THROW(updater->run(), std::runtime_error);

    EXPECT_THAT(states(), ElementsAre("running", "notStarted"));
}
