// Locks that the platform waits for, as those of the tests' platform are not: a library that is preloaded lets it wait.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "support/BuildTree.h"
#include "support/Process.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"
#include "tool/JsonDocument.h"

using nlohmann::ordered_json;
using testing::EndsWith;
using testing::HasSubstr;

namespace {

constexpr unsigned checksumOfFirmware = 0xD5ECD7C4;  // CRC-32 of "firmware"

class WaitedLocks : public testing::Test {
protected:
    WaitedLocks()
        : archive(description({fileEntry("one.bin", {{"version", "2.0"}, {"checksumCrc32", checksumOfFirmware}})})),
          device(target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}},
                               {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", "1.0"}})})}))
    {
        archive.addFile("one.bin", "firmware");
    }

    void SetUp() override
    {
#ifdef __SANITIZE_ADDRESS__
        GTEST_SKIP() << "the sanitizer wants to be the first that is loaded";
#endif
    }

    ProcessResult updated(const std::vector<std::string>& options, int signal = 0, const char* time = "0.2") const
    {
        std::vector<std::string> words = {"update", archive.path(), "--no-progress", "--stall-timeout", time};
        words.insert(words.end(), options.begin(), options.end());
        std::vector<std::string> environment = {"TRELLAN_TARGET=" + device.path().string(),
                                                "LD_PRELOAD=" TRELLAN_WAITING_LOCK};
        if (signal != 0) {
            environment.push_back("TRELLAN_SIGNAL_AT_LOCK=" + std::to_string(signal));
        }
        return runProcess(TRELLAN_TOOL, words, device.folder(), environment);
    }

    TestArchive archive;
    SimulatedTarget device;
};

}  // namespace

TEST_F(WaitedLocks, AreGivenUpAfterTheTimeWithoutProgress)
{
    const ordered_json before = device.document();
    const ProcessResult result = updated({});
    EXPECT_EQ(result.status, 8);
    EXPECT_EQ(result.errors, "trellan-update: the target could not be locked within 0.2 s; nothing was done\n");
    EXPECT_EQ(device.document(), before);
}

TEST_F(WaitedLocks, AreToldInTheDocumentAndTheEvents)
{
    const ordered_json document = conformingDocument(updated({"--json", "--events", "events"}).output);
    EXPECT_EQ(document["error"]["status"], 8);
    EXPECT_EQ(document["error"]["message"], "the target could not be locked within 0.2 s; nothing was done");
    EXPECT_EQ(document["elements"][0]["state"], "notStarted");
    const std::string events = readText(device.folder() / "events");
    const ordered_json last = ordered_json::parse(events.substr(events.rfind('\n', events.size() - 2) + 1));
    EXPECT_EQ(last["event"], "result");
    EXPECT_EQ(last["status"], 8);
    EXPECT_EQ(last["result"], "stalled");
    EXPECT_EQ(last["elements"][0]["state"], "notStarted");
}

// The time may be over before the update has begun.
TEST_F(WaitedLocks, AreToldInTheEventsHoweverShortTheTimeIs)
{
    EXPECT_EQ(updated({"--events", "events"}, 0, "0.000001").status, 8);
    const std::string events = readText(device.folder() / "events");
    EXPECT_EQ(ordered_json::parse(events.substr(0, events.find('\n')))["event"], "start") << events;
    EXPECT_THAT(events, HasSubstr(R"("event":"result","status":8,"result":"stalled")"));
}

TEST_F(WaitedLocks, AreGivenUpAlsoWhereNoEventCanBeWritten)
{
    const ProcessResult result = updated({"--events", "/dev/full"});
    EXPECT_EQ(result.status, 8);
    EXPECT_THAT(result.errors, HasSubstr("events cannot be written to /dev/full: No space left on device"));
    EXPECT_THAT(result.errors, EndsWith("could not be locked within 0.2 s; nothing was done\n"));
}

TEST_F(WaitedLocks, AreGivenUpWithAWordWhereTheDocumentCannotBeWritten)
{
    const ProcessResult result = runProcess(
        "/bin/sh", {"-c", "exec " TRELLAN_TOOL " update \"$0\" --json --stall-timeout 0.2 >/dev/full", archive.path()},
        device.folder(), {"TRELLAN_TARGET=" + device.path().string(), "LD_PRELOAD=" TRELLAN_WAITING_LOCK});
    EXPECT_EQ(result.status, 8);
    EXPECT_THAT(result.errors,
                EndsWith("trellan-update: the target could not be locked within 0.2 s; nothing was done\n"
                         "trellan-update: standard output cannot be written\n"));
}

TEST_F(WaitedLocks, AreWaitedForAlsoWhenASignalComes)
{
    const ProcessResult result = updated({"--events", "events"}, SIGINT);
    EXPECT_EQ(result.status, 8);
    EXPECT_EQ(result.errors,
              "trellan-update: SIGINT: nothing more is started, and a phase that is running is waited for\n"
              "trellan-update: the target could not be locked within 0.2 s; nothing was done\n");
    EXPECT_THAT(readText(device.folder() / "events"), HasSubstr(R"("event":"signal","signal":"SIGINT")"));
}
