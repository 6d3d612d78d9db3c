// What a host may call from its callbacks, and what it may not.
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "Updating.h"

using nlohmann::ordered_json;
using namespace ZoNTrellanUpdater;

namespace {

// A callback has no argument of its own: what it calls, and what came of it.
ZoITrellanUpdater* called = nullptr;
std::vector<std::string> told;
std::vector<unsigned> applyResults;
std::vector<int> runResults;
std::vector<std::string> seen;
bool isWithinACall = false;

void applyAndRunAgain()
{
    if (!isWithinACall) {  // an updater that starts over calls back again, without end
        isWithinACall = true;
        applyResults.push_back(called->apply());
        runResults.push_back(called->run());
        isWithinACall = false;
    }
}

void applyAndRunAgainOn(unsigned)
{
    applyAndRunAgain();
}

void takeTextAndApplyAndRunAgain(const std::string& text)
{
    told.push_back(text);
    EXPECT_FALSE(isWithinACall) << "said within a call: " << text;
    applyAndRunAgain();
}

// A callback that runs the other updater, which is `called`.
void applyAndRunTheOther(unsigned)
{
    applyResults.push_back(called->apply());
    runResults.push_back(called->run());
}

void lookAtTheLists(const std::string&)
{
    for (const ZoTUpdateElement& element : elementsOf(*called)) {
        seen.push_back(element.displayName);
    }
    for (const ZoTUpdateFile& file : filesOf(*called)) {
        seen.push_back(file.name);
    }
}

void disableTheFirstElement(unsigned)
{
    called->disableUpdateElement(0);
}

void fail(unsigned)
{
    throw std::runtime_error("the host's own");
}

void failOnText(const std::string&)
{
    throw std::runtime_error("the host's own");
}

class Reentry : public Updating {
protected:
    Reentry()
    {
        told.clear();
        applyResults.clear();
        runResults.clear();
        seen.clear();
        isWithinACall = false;
        archive.addFile("firmware.bin", "firmware");
    }
    ~Reentry() override { called = nullptr; }

    // An updater that `called` names.
    std::unique_ptr<ZoITrellanUpdater> create(unsigned command = UPDATE)
    {
        std::unique_ptr<ZoITrellanUpdater> updater(
            ZoITrellanUpdater::createInstance(optionsFor(command, archive.path())));
        called = updater.get();
        return updater;
    }

    // The same, after apply().
    std::unique_ptr<ZoITrellanUpdater> createApplied(unsigned command = UPDATE)
    {
        auto updater = create(command);
        const MessageCapture quiet(*updater);
        EXPECT_EQ(updater->apply(), 0u);
        return updater;
    }

    // Two elements, updated one after the other; the first update fails where it is asked for.
    static ordered_json twoPhases(bool failing)
    {
        ordered_json document = target({processorBoard({installedFirmware(1), installedFirmware(2)})});
        if (failing) {
            document["script"]["elements"]["/ROOT/HCN#1"]["polls"] = {{{"status", 1}, {"done", 1}, {"total", 4}},
                                                                      {{"status", 3}}};
        }
        return document;
    }

    TestArchive archive{description({firmwareEntry(), firmwareEntry({{"id", 2}, {"sequence", 2}})})};
};

}  // namespace

TEST_F(Reentry, ApplyingAndRunningWithinARunFailAtOnceAndTouchNothing)
{
    const SimulatedTarget device(twoPhases(true));
    const auto updater = createApplied();
    updater->setPhaseCallBack(applyAndRunAgainOn);
    updater->setFailureCallBack(applyAndRunAgainOn);
    updater->setProgressCallBack(applyAndRunAgainOn);
    updater->setMessageCallBack(takeTextAndApplyAndRunAgain);

    EXPECT_EQ(updater->run(), 0);

    EXPECT_EQ(applyResults.size(), told.size() + 8);  // three phases, two failures, three times progress, and the texts
    EXPECT_EQ(applyResults, std::vector<unsigned>(applyResults.size(), 1u));
    EXPECT_EQ(runResults, std::vector<int>(applyResults.size(), 0));
    EXPECT_EQ(callsOf("scan", device.trace()).size(), 1u);
    EXPECT_EQ(callsOf("lock", device.trace()).size(), 1u);
    EXPECT_EQ(callsOf("update2", device.trace()).size(), 1u);
    EXPECT_EQ(callsOf("unlock", device.trace()).size(), 1u);
}

TEST_F(Reentry, ApplyingAndRunningWithinApplyFailAtOnceAndTouchNothing)
{
    const SimulatedTarget device(twoPhases(false));
    const auto updater = create();
    updater->setMessageCallBack(takeTextAndApplyAndRunAgain);

    EXPECT_EQ(updater->apply(), 0u);

    EXPECT_EQ(told.size(), 1u);  // the banner
    EXPECT_EQ(applyResults, std::vector<unsigned>{1});
    EXPECT_EQ(runResults, std::vector<int>{0});
    EXPECT_EQ(callsOf("scan", device.trace()).size(), 1u);
    EXPECT_EQ(callsOf("lock", device.trace()).size(), 0u);
    EXPECT_EQ(elementsOf(*updater).size(), 2u);
}

TEST_F(Reentry, AnotherUpdaterMayBeUsedWithinARun)
{
    const SimulatedTarget device(twoPhases(false));
    const auto updater = createApplied();
    const auto other = create(TOOL_VERSION);
    const MessageCapture quiet(*updater);
    updater->setPhaseCallBack(applyAndRunTheOther);
    testing::internal::CaptureStdout();
    EXPECT_EQ(updater->run(), 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "1.0\n1.0\n1.0\n");
    EXPECT_EQ(applyResults, (std::vector<unsigned>{0, 0, 0}));
    EXPECT_EQ(runResults, (std::vector<int>{1, 1, 1}));
}

TEST_F(Reentry, TheListsMayBeReadWithinApplyAndRun)
{
    const SimulatedTarget device(twoPhases(false));
    const auto updater = create(COMPARE_VERSIONS);
    updater->setMessageCallBack(lookAtTheLists);
    ASSERT_EQ(updater->apply(), 0u);
    EXPECT_EQ(seen, std::vector<std::string>());  // the banner comes before anything was read
    EXPECT_EQ(updater->run(), 1);
    ASSERT_GE(seen.size(), 4u);
    EXPECT_EQ(std::vector<std::string>(seen.begin(), seen.begin() + 4),
              (std::vector<std::string>{"Processor board, Firmware", "Processor board, Firmware", "firmware.bin",
                                        "firmware.bin"}));
}

TEST_F(Reentry, DisablingAnElementDoesNotReachTheUpdateThatIsRunning)
{
    const SimulatedTarget device(twoPhases(false));
    const auto updater = createApplied();
    const MessageCapture quiet(*updater);
    updater->setPhaseCallBack(disableTheFirstElement);
    EXPECT_EQ(updater->run(), 1);
    EXPECT_EQ(callsOf("update2", device.trace()).size(), 2u);
    EXPECT_TRUE(elementsOf(*updater).at(0).disabled);
}

TEST_F(Reentry, WhatACallbackOfRunThrowsPassesThroughAndTheTargetIsUnlocked)
{
    const SimulatedTarget device(twoPhases(false));
    const auto updater = createApplied();
    const MessageCapture quiet(*updater);
    updater->setPhaseCallBack(fail);
    EXPECT_THROW(updater->run(), std::runtime_error);
    EXPECT_EQ(callsOf("unlock", device.trace()).size(), 1u);

    updater->setPhaseCallBack(nullptr);
    EXPECT_EQ(updater->run(), 1);
    EXPECT_EQ(callsOf("update2", device.trace()).size(), 2u);
}

TEST_F(Reentry, WhatACallbackThrowsPassesThroughAlsoWhereTheErrorsOfUnlockingCannotBePrinted)
{
    ordered_json document = twoPhases(false);
    document["script"]["unlock"] = {{{"errors", {{{"code", 19}, {"text", "the lock is stuck"}}}}}};
    const SimulatedTarget device(document);
    const auto updater = createApplied();
    updater->setMessageCallBack(failOnText);
    updater->setPhaseCallBack([](unsigned) { throw std::out_of_range("no such phase"); });
    EXPECT_THROW(updater->run(), std::out_of_range);
    EXPECT_EQ(callsOf("unlock", device.trace()).size(), 1u);
}

TEST_F(Reentry, WhatACallbackOfApplyThrowsPassesThrough)
{
    const SimulatedTarget device(twoPhases(false));
    const auto updater = create();
    updater->setMessageCallBack(failOnText);
    EXPECT_THROW(updater->apply(), std::runtime_error);

    const MessageCapture quiet(*updater);
    EXPECT_EQ(updater->apply(), 0u);
}
