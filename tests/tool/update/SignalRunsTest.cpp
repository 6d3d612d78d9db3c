// Updates that a signal reaches at any moment.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "support/Namespaces.h"
#include "tool/update/SlowUpdate.h"
#include "tool/update/UtcTime.h"

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

// Each an update of its own, all at the same time: they sleep for the most part.
#ifdef __SANITIZE_ADDRESS__
constexpr unsigned moments = 20;
#else
constexpr unsigned moments = 100;
#endif
constexpr std::chrono::milliseconds lastMoment(1700);  // of an update that takes a little less

// A signal is not heard in the moment in which it is sent.
constexpr std::chrono::milliseconds longestHearing(400);

std::string nameOf(int signal)
{
    return signal == SIGHUP ? "SIGHUP" : signal == SIGINT ? "SIGINT" : "SIGTERM";
}

// When the update has begun its last phase; empty when it has not.
std::string beginningOfLastPhase(const SlowUpdate& update)
{
    for (const json& event : update.events()) {
        if (event["event"] == "phase" && event["phase"] == 2) {
            return event["time"];
        }
    }
    return "";
}

// The result that the last event tells; empty when that is not of the end.
std::string toldResult(const SlowUpdate& update)
{
    const std::vector<json> events = update.events();
    return events.empty() || events.back()["event"] != "result" ? "" : std::string(events.back()["result"]);
}

void expectAccount(const std::string& errors, const std::string& label, bool isNew)
{
    EXPECT_THAT(errors, HasSubstr("trellan-update: " + std::string(isNew ? "updated: " : "not updated: ") + label +
                                  (isNew ? "\n" : " (not started)\n")));
}

void expectNothingDone(const SlowUpdate& update)
{
    EXPECT_FALSE(update.siteIsNew());
    EXPECT_FALSE(update.firmwareIsNew());
    EXPECT_FALSE(update.hostsAreNew());
}

// What the tool has said about an update that it did not finish is true.
void expectTrueMessage(const SlowUpdate& update, const std::string& errors, const std::string& signal)
{
    if (errors.find("ended by " + signal + " before the target was locked; nothing was done\n") != std::string::npos) {
        expectNothingDone(update);
        return;
    }
    unsigned phase = 3;
    const std::string words = "stopped by " + signal + " before phase ";
    if (const std::size_t place = errors.find(words); place != std::string::npos) {
        phase = static_cast<unsigned>(errors[place + words.size()] - '0');
    }
    ASSERT_LT(phase, 3U) << errors;
    EXPECT_EQ(update.siteIsNew(), phase > 0);
    EXPECT_EQ(update.firmwareIsNew(), phase > 1);
    EXPECT_FALSE(update.hostsAreNew());
    expectAccount(errors, "Board, site.cfg", phase > 0);
    expectAccount(errors, "Board, Firmware, 1.0 -> 2.0", phase > 1);
    expectAccount(errors, "Board, hosts.cfg", false);
    EXPECT_EQ(toldResult(update), "interrupted");
}

void expectDone(const SlowUpdate& update, const ProcessResult& result, std::chrono::system_clock::time_point sent)
{
    EXPECT_TRUE(update.siteIsNew());
    EXPECT_TRUE(update.firmwareIsNew());
    EXPECT_TRUE(update.hostsAreNew());
    EXPECT_TRUE(result.output.ends_with("\n    Update completed successfully!\n"));
    EXPECT_THAT(result.errors, Not(HasSubstr("updated: ")));
    EXPECT_EQ(toldResult(update), "success");
    EXPECT_GE(TrellanTool::utcText(sent + longestHearing), beginningOfLastPhase(update)) << "the signal was lost";
}

void runAndInterrupt(int signal, std::chrono::milliseconds moment, bool wholeGroup)
{
    SCOPED_TRACE(nameOf(signal) + (wholeGroup ? " to the group after " : " after ") + std::to_string(moment.count()));
    const SlowUpdate update;
    RunningProcess tool = update.start();
    std::this_thread::sleep_for(moment);
    const auto sent = std::chrono::system_clock::now();
    if (wholeGroup) {
        tool.sendToGroup(signal);
    } else {
        tool.send(signal);
    }
    const ProcessResult result = tool.wait();
    EXPECT_TRUE(update.isUnlocked());
    EXPECT_FALSE(std::filesystem::exists(update.folder() / "flash/config/site.cfg.tmp"));
    EXPECT_FALSE(std::filesystem::exists(update.folder() / "flash/config/hosts.cfg.tmp"));
    if (result.status == 0) {
        expectDone(update, result, sent);
    } else if (result.status == -signal) {  // the program had hardly begun
        EXPECT_EQ(result.output + result.errors, "");
        EXPECT_TRUE(update.events().empty());
        expectNothingDone(update);
    } else {
        EXPECT_EQ(result.status, 128 + signal);
        expectTrueMessage(update, result.errors, nameOf(signal));
    }
}

class SignalRuns : public testing::TestWithParam<int> {
protected:
    void SetUp() override { SKIP_WITHOUT_MOUNT(); }
};

}  // namespace

TEST_P(SignalRuns, LeaveTheTargetUnlockedWithWholeFilesAndAreToldTruly)
{
    std::vector<std::thread> threads;
    for (unsigned run = 0; run < moments; ++run) {
        threads.emplace_back([run] { runAndInterrupt(GetParam(), lastMoment * run / moments, run % 2 == 0); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

INSTANTIATE_TEST_SUITE_P(Each, SignalRuns, testing::Values(SIGHUP, SIGINT, SIGTERM),
                         [](const auto& signal) { return nameOf(signal.param); });

TEST_P(SignalRuns, DisturbNoCopyWhenTheyComeToTheWholeGroup)
{
    const SlowUpdate update;
    update.hold("site.cfg");
    RunningProcess tool = update.start();
    update.waitForCopy("site.cfg");
    tool.sendToGroup(GetParam());
    update.waitForAnswer(tool);
    EXPECT_FALSE(update.isUnlocked());
    update.release("site.cfg");
    const ProcessResult result = tool.wait();
    EXPECT_EQ(result.status, 128 + GetParam());
    EXPECT_TRUE(update.siteIsNew());
    EXPECT_FALSE(update.firmwareIsNew());
    EXPECT_FALSE(update.hostsAreNew());
    EXPECT_TRUE(update.isUnlocked());
    EXPECT_EQ(result.errors, "trellan-update: " + nameOf(GetParam()) +
                                 ": nothing more is started, and a phase that is running is waited for\n"
                                 "trellan-update: stopped by " +
                                 nameOf(GetParam()) +
                                 " before phase 1\n"
                                 "trellan-update: updated: Board, site.cfg\n"
                                 "trellan-update: not updated: Board, hosts.cfg (not started)\n"
                                 "trellan-update: not updated: Board, Firmware, 1.0 -> 2.0 (not started)\n");
}

TEST_P(SignalRuns, EndAsTheUpdateDoesWhenTheyComeInTheLastPhase)
{
    const SlowUpdate update;
    update.hold("hosts.cfg");
    RunningProcess tool = update.start();
    update.waitForCopy("hosts.cfg");
    tool.sendToGroup(GetParam());
    update.waitForAnswer(tool);
    update.release("hosts.cfg");
    const ProcessResult result = tool.wait();
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(update.hostsAreNew());
    EXPECT_THAT(update.resultingStates(), ElementsAre("updated", "updated", "updated"));
    EXPECT_THAT(result.errors, HasSubstr("trellan-update: " + nameOf(GetParam()) +
                                         " came in the last phase; nothing was left to stop\n"));
}
