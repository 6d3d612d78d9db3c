// Updates that are stopped, and what stays unmoved.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <memory>
#include <thread>

#include "support/BuildTree.h"
#include "support/ComesTrue.h"
#include "support/Namespaces.h"
#include "support/PseudoTerminal.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"
#include "tool/JsonDocument.h"
#include "tool/update/SlowUpdate.h"

using nlohmann::json;
using nlohmann::ordered_json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

class StoppedRuns : public testing::Test {
protected:
    void SetUp() override { SKIP_WITHOUT_MOUNT(); }

    // An update that SIGINT stops behind its first phase.
    ProcessResult interrupted(const std::vector<std::string>& options = {}) const
    {
        update.hold("site.cfg");
        RunningProcess tool = update.start(options);
        update.waitForCopy("site.cfg");
        tool.send(SIGINT);
        waitForSignalEvent();
        update.release("site.cfg");
        return tool.wait();
    }

    void waitForSignalEvent() const
    {
        EXPECT_TRUE(comesTrue([&] {
            const std::vector<json> events = update.events();
            return std::any_of(events.begin(), events.end(),
                               [](const json& event) { return event["event"] == "signal"; });
        }));
    }

    ProcessResult history(const std::vector<std::string>& options = {}) const
    {
        std::vector<std::string> words = {"history", "events"};
        words.insert(words.end(), options.begin(), options.end());
        return runProcess(TRELLAN_TOOL, words, update.folder());
    }

    SlowUpdate update;
};

std::vector<std::string> statesIn(const ordered_json& elements)
{
    std::vector<std::string> states;
    for (const ordered_json& element : elements) {
        states.push_back(element["state"]);
    }
    return states;
}

}  // namespace

TEST_F(StoppedRuns, SayAtAFurtherSignalThatTheyWait)
{
    update.hold("site.cfg");
    RunningProcess tool = update.start();
    update.waitForCopy("site.cfg");
    tool.send(SIGTERM);
    update.waitForAnswer(tool);
    tool.send(SIGINT);
    const std::string answer =
        "trellan-update: SIGINT: the running phase is still waited for; an update that waits for the target's "
        "lock, or for a phase that never ends, is ended by --stall-timeout or SIGKILL\n";
    EXPECT_TRUE(comesTrue([&] { return tool.errorsSoFar().ends_with(answer); }));
    update.release("site.cfg");
    EXPECT_EQ(tool.wait().status, 143);
    EXPECT_TRUE(update.siteIsNew());
}

TEST_F(StoppedRuns, AreShownInTheDocumentAndTheEvents)
{
    const ordered_json document = conformingDocument(interrupted({"--json"}).output);
    EXPECT_EQ(document["error"]["status"], 130);
    EXPECT_EQ(document["error"]["message"],
              "stopped by SIGINT before phase 1\n"
              "updated: Board, site.cfg\n"
              "not updated: Board, hosts.cfg (not started)\n"
              "not updated: Board, Firmware, 1.0 -> 2.0 (not started)");
    EXPECT_THAT(statesIn(document["elements"]), ElementsAre("updated", "notStarted", "notStarted"));
    EXPECT_THAT(update.resultingStates(), ElementsAre("updated", "notStarted", "notStarted"));
    EXPECT_EQ(update.events().back()["status"], 130);
}

TEST_F(StoppedRuns, AreInterruptedInHistory)
{
    EXPECT_EQ(interrupted().status, 130);
    EXPECT_THAT(history().output, HasSubstr("/archive (2.3.4): updated site.cfg: interrupted\n"));
    const ordered_json runs = conformingDocument(history({"--json"}).output)["runs"];
    EXPECT_EQ(runs[0]["result"], "interrupted");
    EXPECT_EQ(runs[0]["phase"], 0);
    EXPECT_THAT(statesIn(runs[0]["elements"]), ElementsAre("updated", "notStarted", "notStarted"));
}

TEST_F(StoppedRuns, AreInterruptedInHistoryAlsoWhenTheyWereKilled)
{
    update.hold("hosts.cfg");
    RunningProcess tool = update.start();
    update.waitForCopy("hosts.cfg");
    tool.sendToGroup(SIGKILL);
    EXPECT_EQ(tool.wait().status, -SIGKILL);
    writeText(update.folder() / "events", readText(update.folder() / "events") + "{\"time\":\"2024");
    const ProcessResult shown = history();
    EXPECT_EQ(shown.status, 0);
    EXPECT_THAT(
        shown.output,
        HasSubstr(
            "/archive (2.3.4): was to update site.cfg, hosts.cfg, UserFirmware 1.0 -> 2.0: interrupted in phase 2\n"));
    EXPECT_THAT(shown.errors, HasSubstr("torn"));
    const ordered_json document = conformingDocument(history({"--json"}).output);
    EXPECT_EQ(document["runs"][0]["result"], "interrupted");
    EXPECT_EQ(document["runs"][0]["phase"], 2);
}

TEST_F(StoppedRuns, AreNotThoseForWhichTheSignalWasIgnored)
{
    update.hold("site.cfg");
    RunningProcess tool = update.startIn("trap '' HUP; exec \"$0\" \"$@\"");
    update.waitForCopy("site.cfg");
    tool.sendToGroup(SIGHUP);
    update.release("site.cfg");
    const ProcessResult result = tool.wait();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_TRUE(update.hostsAreNew());
}

// The kernel sends SIGHUP to the programs of a terminal that is closed, and lets them write nothing to it any more.
TEST_F(StoppedRuns, EndTheSameWithoutTheirTerminal)
{
    update.hold("site.cfg");
    auto terminal = std::make_unique<PseudoTerminal>();
    const std::string path = terminal->path();
    RunningProcess tool = update.startIn("exec setsid --wait --ctty \"$0\" \"$@\" <" + path + " >" + path + " 2>&1");
    update.waitForCopy("site.cfg");
    terminal.reset();
    waitForSignalEvent();
    update.release("site.cfg");
    EXPECT_EQ(tool.wait().status, 129);
    EXPECT_TRUE(update.siteIsNew());
    EXPECT_FALSE(update.firmwareIsNew());
    EXPECT_TRUE(update.isUnlocked());
    EXPECT_THAT(readText(update.folder() / "trace"), HasSubstr("{\"call\":\"unlock\""));
    EXPECT_THAT(update.resultingStates(), ElementsAre("updated", "notStarted", "notStarted"));
}

TEST_F(StoppedRuns, AreNotThoseThatCopyForLongerThanAPhaseMayStall)
{
    update.hold("site.cfg");
    RunningProcess tool = update.start({"--stall-timeout", "1"});
    update.waitForCopy("site.cfg");
    std::this_thread::sleep_for(std::chrono::milliseconds(1200));
    update.release("site.cfg");
    const ProcessResult result = tool.wait();
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_TRUE(update.hostsAreNew());
}

namespace {

// An update by a plan that comes from a pipe to which nobody writes: the tool waits before it locks the target.
class UpdateWithoutItsPlan : public testing::Test {
protected:
    UpdateWithoutItsPlan() : archive(description({fileEntry("a.bin")}))
    {
        archive.addFile("a.bin", "content");
        folder.write(
            "target.json",
            target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}}, {updateElement(1, {{"NAME", "UserFirmware"}})})})
                .dump());
        EXPECT_EQ(::mkfifo(pipe().c_str(), 0600), 0);
    }

    // Interrupts the tool when it reads the plan.
    ProcessResult interrupted(const std::vector<std::string>& options) const
    {
        std::vector<std::string> arguments = {"update",  archive.path(), "--target",   "target.json", "--plan", pipe(),
                                              "--trace", "trace",        "--no-check", "--events",    "events"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        RunningProcess tool(TRELLAN_TOOL, arguments, folder.path());
        int writer = -1;
        EXPECT_TRUE(
            comesTrue([&] { return (writer = ::open(pipe().c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC)) >= 0; }));
        tool.send(SIGINT);
        ProcessResult result = tool.wait();
        ::close(writer);
        return result;
    }

    std::string pipe() const { return (folder.path() / "plan").string(); }

    TestArchive archive;
    TempDir folder;
};

}  // namespace

TEST_F(UpdateWithoutItsPlan, IsEndedAtOnceByASignalWithNothingDone)
{
    const ProcessResult result = interrupted({});
    EXPECT_EQ(result.status, 130);
    EXPECT_EQ(result.errors, "trellan-update: ended by SIGINT before the target was locked; nothing was done\n");
    EXPECT_THAT(readText(folder.path() / "trace"), Not(HasSubstr("{\"call\":\"lock\"")));
    EXPECT_EQ(readText(folder.path() / "events"), "");
}

TEST_F(UpdateWithoutItsPlan, GivesADocumentWhenItIsEnded)
{
    const ProcessResult result = interrupted({"--json"});
    EXPECT_EQ(result.status, 130);
    const ordered_json document = conformingDocument(result.output);
    EXPECT_EQ(document["command"], "update");
    EXPECT_EQ(document["error"]["status"], 130);
    EXPECT_EQ(document["error"]["message"], "ended by SIGINT before the target was locked; nothing was done");
}

// Its document is longer than what a pipe holds: the tool writes, and nobody reads.
TEST(DryRunThatIsNotRead, IsEndedAtOnceByASignal)
{
    const TempDir folder;
    std::vector<ordered_json> elements;
    for (unsigned i = 1; i <= 400; ++i) {
        elements.push_back(updateElement(i, {{"NAME", "UserFirmware"}}));
    }
    folder.write("target.json", target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}}, elements)}).dump());
    const TestArchive archive(description({fileEntry("a.bin")}));
    const std::string pipe = (folder.path() / "pipe").string();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    RunningProcess tool(
        "/bin/sh",
        {"-c", "exec \"$0\" update \"$1\" --target target.json -n --json >pipe 2>text", TRELLAN_TOOL, archive.path()},
        folder.path());
    EXPECT_TRUE(comesTrue([&] {
        int waiting = 0;
        return ::ioctl(reader, FIONREAD, &waiting) == 0 && waiting >= 65536;
    }));
    tool.send(SIGINT);
    EXPECT_EQ(tool.wait().status, 130);
    EXPECT_TRUE(readText(folder.path() / "text")
                    .ends_with("trellan-update: ended by SIGINT before the target was locked; nothing was done\n"));
    ::close(reader);
}
