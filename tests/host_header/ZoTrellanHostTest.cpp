// The header for hosts in C++: callbacks of each updater's own, lists, states and errors as values, cancellation.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "ZoTrellanHost.hpp"
#include "libZoErrorHandling/ZoCErrorManager.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "support/UpdaterOptions.h"

using nlohmann::ordered_json;
using namespace ZoTrellanHost;
using ZoNTrellanUpdater::COMPARE_VERSIONS;
using ZoNTrellanUpdater::READ_INVENTORY;
using ZoNTrellanUpdater::TOOL_VERSION;
using ZoNTrellanUpdater::UPDATE;

namespace {

// The checksums of what is written: "firmware" and "fpga".
constexpr unsigned written = 3589068740;
constexpr unsigned writtenFpga = 2079437629;

ordered_json installed(unsigned id, const char* name)
{
    return updateElement(id, {{"NAME", name}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", 5}});
}

// A board with a firmware and an FPGA, to be updated one after the other.
ordered_json device(const char* boardType = "KR5120")
{
    return target({board("HCN", {{"PRODUCT/BOARD_TYPE", boardType}, {"PRODUCT/NAME", "Board"}},
                         {installed(1, "UserFirmware"), installed(2, "UserFpga")})});
}

ordered_json fpgaThatFails()
{
    ordered_json document = device();
    document["script"]["elements"]["/ROOT/HCN#2"]["polls"] = {{{"status", 1}, {"done", 1}, {"total", 4}},
                                                              {{"errors", {{{"code", 18}, {"text", "no answer"}}}}},
                                                              {{"status", 2}}};
    return document;
}

ordered_json checksums(const SimulatedTarget& target)
{
    const ordered_json document = target.document();
    const ordered_json& elements = document["tree"]["items"][0]["items"][0]["items"];
    return {elements[0]["parameters"]["CHECKSUM_CRC32"], elements[1]["parameters"]["CHECKSUM_CRC32"]};
}

unsigned callsOf(const SimulatedTarget& target, const std::string& name)
{
    unsigned count = 0;
    for (const ordered_json& call : target.trace()) {
        count += call.at("call") == name ? 1 : 0;
    }
    return count;
}

class HostHeader : public testing::Test {
protected:
    HostHeader()
        : archive(description({fileEntry("firmware.bin", {{"checksumCrc32", written}}),
                               fileEntry("fpga.bin", {{"id", 2}, {"sequence", 2}, {"checksumCrc32", writtenFpga}})}))
    {
        clearErrors();
        archive.addFile("firmware.bin", "firmware");
        archive.addFile("fpga.bin", "fpga");
    }
    ~HostHeader() override { clearErrors(); }

    static void clearErrors() { ZoCErrorManager::getSingleton()->getMasterErrorList().clear(); }

    Options options(unsigned command) const { return optionsFor(command, archive.path()); }

    // One that prints nothing.
    Updater quiet(unsigned command) const
    {
        Updater updater(options(command));
        updater.onMessage([](const std::string&) {});
        return updater;
    }

    TestArchive archive;
};

}  // namespace

TEST_F(HostHeader, UpdatesAndTellsItsOwnCallbacks)
{
    const SimulatedTarget target(device());
    Updater updater = quiet(UPDATE);
    std::vector<std::string> told;
    updater.onPhase([&told](unsigned phase) { told.push_back("phase " + std::to_string(phase)); });
    updater.onProgress([&told](unsigned percent) { told.push_back(std::to_string(percent) + " %"); });
    updater.onFailure([&told](unsigned index) { told.push_back("failure " + std::to_string(index)); });
    updater.onEndOfPhases([&told] { told.push_back("end"); });
    ASSERT_EQ(updater.apply(), Applied::READY);
    EXPECT_EQ(updater.run(), Result::SUCCESSFUL);
    EXPECT_EQ(told, (std::vector<std::string>{"phase 0", "100 %", "100 %", "phase 1", "100 %", "100 %", "end"}));
    EXPECT_EQ(checksums(target), (ordered_json{written, writtenFpga}));
    EXPECT_EQ(updater.state(0), State::UPDATED);
    EXPECT_EQ(updater.state(1), State::UPDATED);
}

TEST_F(HostHeader, GivesTheErrorsOfAFailedElement)
{
    const SimulatedTarget target(fpgaThatFails());
    Updater updater = quiet(UPDATE);
    std::vector<unsigned> failures;
    updater.onFailure([&failures](unsigned index) { failures.push_back(index); });
    ASSERT_EQ(updater.apply(), Applied::READY);
    EXPECT_EQ(updater.run(), Result::FAILED);
    EXPECT_EQ(failures, std::vector<unsigned>{1});
    EXPECT_EQ(updater.state(1), State::FAILED);
    EXPECT_EQ(updater.errors(0).size(), 0u);
    const std::vector<Error> errors = updater.errors(1);
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_EQ(errors[0].code, 18u);
    EXPECT_EQ(errors[0].text, "no answer");
}

TEST_F(HostHeader, GivesListsAsVectors)
{
    const SimulatedTarget target(device());
    Updater updater = quiet(COMPARE_VERSIONS);
    EXPECT_EQ(updater.elements().size(), 0u);
    EXPECT_EQ(updater.files().size(), 0u);
    ASSERT_EQ(updater.apply(), Applied::READY);
    const std::vector<Element> elements = updater.elements();
    ASSERT_EQ(elements.size(), 2u);
    EXPECT_EQ(elements[1].displayName, "Board, FPGA");
    EXPECT_EQ(elements[1].installedVersion, "1.0");
    const std::vector<File> files = updater.files();
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[0].name, "firmware.bin");
    EXPECT_EQ(updater.archiveInfo().name, "Test archive");
    EXPECT_EQ(updater.archiveInfo().version, "2.3.4");
    EXPECT_EQ(updater.archiveInfo().productName, "Test product");
    EXPECT_EQ(updater.archiveInfo().formatVersion, "1.0");
    EXPECT_EQ(updater.archiveInfo().variant, "");
}

TEST_F(HostHeader, TellsWhatCouldNotBeRead)
{
    const SimulatedTarget target(device());
    Updater absent(optionsFor(UPDATE, archive.path() + "/absent"));
    std::string said;
    absent.onMessage([&said](const std::string& text) { said += text; });
    EXPECT_EQ(absent.apply(), Applied::NOT_READ);
    EXPECT_NE(said.find(archive.path() + "/absent/archive.json"), std::string::npos) << said;
}

TEST_F(HostHeader, RunFailsAtOnceWhereApplyWasNotReady)
{
    const SimulatedTarget target(device());
    EXPECT_EQ(quiet(UPDATE).run(), Result::FAILED);

    Updater absent(optionsFor(UPDATE, archive.path() + "/absent"));
    absent.onMessage([](const std::string&) {});
    EXPECT_EQ(absent.apply(), Applied::NOT_READ);
    EXPECT_EQ(absent.run(), Result::FAILED);

    const SimulatedTarget other(device("KR9999"));
    Updater refused = quiet(UPDATE);
    EXPECT_EQ(refused.apply(), Applied::NOT_SUPPORTED);
    EXPECT_EQ(refused.run(), Result::FAILED);
    EXPECT_EQ(callsOf(target, "lock") + callsOf(other, "lock"), 0u);
}

TEST_F(HostHeader, TellsWhatIsNotSupported)
{
    const SimulatedTarget target(device("KR9999"));
    Updater updater = quiet(UPDATE);
    EXPECT_EQ(updater.apply(), Applied::NOT_SUPPORTED);
    EXPECT_EQ(updater.state(0), State::NO_FILE);
}

TEST_F(HostHeader, LeavesExcludedElementsOut)
{
    const SimulatedTarget target(device());
    Updater updater = quiet(UPDATE);
    ASSERT_EQ(updater.apply(), Applied::READY);
    updater.exclude(0);
    EXPECT_THROW(updater.exclude(2), std::out_of_range);
    EXPECT_THROW(updater.state(2), std::out_of_range);
    EXPECT_THROW(updater.errors(2), std::out_of_range);
    EXPECT_EQ(updater.run(), Result::SUCCESSFUL);
    EXPECT_EQ(checksums(target), (ordered_json{5, writtenFpga}));
    EXPECT_EQ(updater.state(0), State::EXCLUDED);
}

TEST_F(HostHeader, PrintsToStandardOutputUnlessToldOtherwise)
{
    Updater updater(optionsFor(TOOL_VERSION));
    testing::internal::CaptureStdout();
    EXPECT_EQ(updater.apply(), Applied::READY);
    EXPECT_EQ(updater.run(), Result::SUCCESSFUL);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "1.0\n");

    Updater taken(optionsFor(TOOL_VERSION));
    std::string text;
    taken.onMessage([&text](const std::string& piece) { text += piece; });
    taken.apply();
    taken.run();
    EXPECT_EQ(text, "1.0\n");

    Updater again(optionsFor(TOOL_VERSION));
    again.onMessage([](const std::string&) {});
    again.onMessage(nullptr);
    testing::internal::CaptureStdout();
    again.apply();
    again.run();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "1.0\n");
}

TEST_F(HostHeader, TwoUpdatersAreToldApartAlsoWhereOneIsUsedInTheOthersCallback)
{
    const SimulatedTarget target(device());
    std::string outer, inner;
    Updater version(optionsFor(TOOL_VERSION));
    version.onMessage([&inner](const std::string& text) { inner += text; });
    std::vector<unsigned> phases;
    Updater updater(options(UPDATE));
    updater.onMessage([&outer](const std::string& text) { outer += text; });
    updater.onPhase([&](unsigned phase) {
        phases.push_back(phase);
        if (phase == 0) {
            EXPECT_EQ(version.apply(), Applied::READY);
            EXPECT_EQ(version.run(), Result::SUCCESSFUL);
        }
    });
    ASSERT_EQ(updater.apply(), Applied::READY);
    outer.clear();
    EXPECT_EQ(updater.run(), Result::SUCCESSFUL);
    EXPECT_EQ(inner, "1.0\n");
    EXPECT_EQ(outer.find("1.0\n"), std::string::npos) << outer;
    EXPECT_NE(outer.find("Results:"), std::string::npos) << outer;
    EXPECT_EQ(phases, (std::vector<unsigned>{0, 1}));
}

TEST_F(HostHeader, ACallThroughTheInterfaceItselfCallsWhoeverIsBeingCalled)
{
    const SimulatedTarget target(device());
    std::string outer, inner;
    Updater version(optionsFor(TOOL_VERSION));
    version.onMessage([&inner](const std::string& text) { inner += text; });
    version.updater().apply();
    testing::internal::CaptureStdout();
    version.updater().run();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");

    Updater updater(options(UPDATE));
    updater.onMessage([&outer](const std::string& text) { outer += text; });
    updater.onPhase([&](unsigned) { version.updater().run(); });
    ASSERT_EQ(updater.apply(), Applied::READY);
    outer.clear();
    EXPECT_EQ(updater.run(), Result::SUCCESSFUL);
    EXPECT_NE(outer.find("1.0\n"), std::string::npos) << outer;
    EXPECT_EQ(inner, "");
}

TEST_F(HostHeader, CallbacksStayWithAnUpdaterThatIsMoved)
{
    const SimulatedTarget target(device());
    unsigned phases = 0;
    Updater first = quiet(UPDATE);
    first.onPhase([&phases](unsigned) { ++phases; });
    ASSERT_EQ(first.apply(), Applied::READY);
    Updater second(std::move(first));
    EXPECT_EQ(second.run(), Result::SUCCESSFUL);
    EXPECT_EQ(phases, 2u);
}

TEST_F(HostHeader, ACallbackMayBeReplacedInItself)
{
    const SimulatedTarget target(device());
    std::vector<std::string> told;
    Updater updater = quiet(UPDATE);
    const std::string word = "a text that is too long to be kept in place";
    updater.onPhase([&updater, &told, word](unsigned) {
        updater.onPhase([&told](unsigned phase) { told.push_back(std::to_string(phase)); });
        told.push_back(word);
    });
    ASSERT_EQ(updater.apply(), Applied::READY);
    EXPECT_EQ(updater.run(), Result::SUCCESSFUL);
    EXPECT_EQ(told, (std::vector<std::string>{word, "1"}));
}

TEST_F(HostHeader, ApplyAndRunFailAtOnceInAnOwnCallback)
{
    const SimulatedTarget target(device());
    Updater updater = quiet(UPDATE);
    updater.onPhase([&updater](unsigned) {
        EXPECT_EQ(updater.apply(), Applied::NOT_READ);
        EXPECT_EQ(updater.run(), Result::FAILED);
    });
    ASSERT_EQ(updater.apply(), Applied::READY);
    EXPECT_EQ(updater.run(), Result::SUCCESSFUL);
    EXPECT_EQ(checksums(target), (ordered_json{written, writtenFpga}));
}

TEST_F(HostHeader, CancellingLetsThePhaseEndAndBeginsNoOther)
{
    const SimulatedTarget target(device());
    Updater updater = quiet(UPDATE);
    const CancellationToken token;
    updater.onProgress([token](unsigned) { token.cancel(); });
    ASSERT_EQ(updater.apply(), Applied::READY);
    EXPECT_EQ(updater.run(token), Result::CANCELLED);
    EXPECT_EQ(checksums(target), (ordered_json{written, 5}));
    EXPECT_EQ(updater.state(0), State::UPDATED);
    EXPECT_EQ(updater.state(1), State::NOT_STARTED);
    EXPECT_EQ(callsOf(target, "lock"), 1u);
    EXPECT_EQ(callsOf(target, "unlock"), 1u);
}

TEST_F(HostHeader, CancellingInTheLastPhaseEndsAsItWouldHaveEnded)
{
    const SimulatedTarget target(device());
    Updater updater = quiet(UPDATE);
    const CancellationToken token;
    updater.onPhase([token](unsigned phase) {
        if (phase == 1) {
            token.cancel();
        }
    });
    ASSERT_EQ(updater.apply(), Applied::READY);
    EXPECT_EQ(updater.run(token), Result::SUCCESSFUL);
    EXPECT_EQ(checksums(target), (ordered_json{written, writtenFpga}));
}

TEST_F(HostHeader, CancelledBeforehandNothingIsLocked)
{
    const SimulatedTarget target(device());
    Updater updater = quiet(UPDATE);
    ASSERT_EQ(updater.apply(), Applied::READY);
    const CancellationToken token;
    const CancellationToken copy = token;
    copy.cancel();
    EXPECT_TRUE(token.isCancelled());
    EXPECT_FALSE(CancellationToken().isCancelled());
    EXPECT_EQ(updater.run(token), Result::CANCELLED);
    EXPECT_EQ(callsOf(target, "lock"), 0u);
    EXPECT_EQ(updater.run(), Result::SUCCESSFUL);
}

TEST_F(HostHeader, ACancelledRunPrintsTheErrorsOfUnlocking)
{
    ordered_json document = device();
    document["script"]["unlock"] = {{{"errors", {{{"code", 19}, {"text", "the lock is stuck"}}}}}};
    const SimulatedTarget target(document);
    Updater updater = quiet(UPDATE);
    std::string text;
    updater.onMessage([&text](const std::string& piece) { text += piece; });
    const CancellationToken token;
    updater.onProgress([token](unsigned) { token.cancel(); });
    ASSERT_EQ(updater.apply(), Applied::READY);
    EXPECT_EQ(updater.run(token), Result::CANCELLED);
    const std::size_t reported = text.find("\nReported errors:\n");
    ASSERT_NE(reported, std::string::npos) << text;
    EXPECT_NE(text.find("the lock is stuck", reported), std::string::npos) << text;
}

TEST_F(HostHeader, ATokenThatWasMovedFromStopsTheSameUpdate)
{
    CancellationToken token;
    const CancellationToken moved = std::move(token);
    EXPECT_FALSE(token.isCancelled());
    token.cancel();
    EXPECT_TRUE(moved.isCancelled());
    CancellationToken other;
    other = std::move(token);
    EXPECT_TRUE(token.isCancelled());
    EXPECT_TRUE(other.isCancelled());
}

TEST_F(HostHeader, WhatACallbackThrowsPassesThroughAndTheTargetIsUnlocked)
{
    const SimulatedTarget target(device());
    Updater updater = quiet(UPDATE);
    updater.onProgress([](unsigned) { throw std::runtime_error("the window was closed"); });
    ASSERT_EQ(updater.apply(), Applied::READY);
    EXPECT_THROW(updater.run(), std::runtime_error);
    EXPECT_EQ(callsOf(target, "unlock"), 1u);

    // Nobody is being called any more: what was installed with the interface itself gets no callback of this one.
    Updater other = quiet(READ_INVENTORY);
    EXPECT_EQ(other.apply(), Applied::READY);
}

TEST_F(HostHeader, TellsWhetherTheDeviceCanBeRebooted)
{
    const SimulatedTarget target(device());
    Updater unread = quiet(READ_INVENTORY);
    EXPECT_EQ(unread.rebootSupport(), RebootSupport::NO_FIRMWARE);
}
