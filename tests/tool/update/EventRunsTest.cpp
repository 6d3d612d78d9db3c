// Updates whose events cannot be written go on without them.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <vector>

#include "support/BuildTree.h"
#include "support/Namespaces.h"
#include "support/Process.h"
#include "support/TargetBuilder.h"
#include "support/TempDir.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"
#include "tool/update/SlowUpdate.h"

namespace fs = std::filesystem;

using nlohmann::ordered_json;
using testing::EndsWith;
using testing::HasSubstr;

namespace {

class EventRuns : public testing::Test {
protected:
    EventRuns() : archive(description({fileEntry("a.bin", {{"version", "2.0"}, {"checksumCrc32", 0xFEC530A9}})}))
    {
        archive.addFile("a.bin", "content");
        folder.write("target.json", target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}},
                                                  {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", "1.0"}})})})
                                        .dump());
    }

    // What an update with its events in `file` complains of; it must succeed.
    std::string complaints(const std::string& file) const
    {
        const ProcessResult result = runProcess(
            TRELLAN_TOOL, {"update", archive.path(), "--target", "target.json", "--events", file}, folder.path());
        EXPECT_EQ(result.status, 0);
        EXPECT_THAT(result.output, EndsWith("\n    Update completed successfully!\n"));
        return result.errors;
    }

    std::string pathOf(const std::string& name) const { return (folder.path() / name).string(); }

    TestArchive archive;
    TempDir folder;
};

}  // namespace

TEST_F(EventRuns, EndWithTheStatusOfARunWhoseOutputIsLost)
{
    const ProcessResult result =
        runProcess("/bin/sh",
                   {"-c", R"(exec "$0" update "$1" --target target.json --events events >/dev/full)", TRELLAN_TOOL,
                    archive.path()},
                   folder.path());
    EXPECT_EQ(result.status, 1);
    std::istringstream lines(readText(pathOf("events")));
    ordered_json last;
    for (std::string line; std::getline(lines, line);) {
        last = ordered_json::parse(line);
    }
    EXPECT_EQ(last["event"], "result");
    EXPECT_EQ(last["status"], 1);
    EXPECT_EQ(last["elements"][0]["state"], "updated");
}

TEST_F(EventRuns, NameTheTargetThatTheEnvironmentNames)
{
    const ProcessResult result = runProcess(TRELLAN_TOOL, {"update", archive.path(), "--events", pathOf("events")},
                                            folder.path(), {"TRELLAN_TARGET=" + pathOf("target.json")});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(readText(pathOf("events")), HasSubstr(R"("event":"start",)"));
    EXPECT_THAT(readText(pathOf("events")), HasSubstr(R"("target":")" + pathOf("target.json") + '"'));
}

TEST_F(EventRuns, TellWhyAnUpdateWasRefused)
{
    fs::remove(fs::path(archive.path()) / "a.bin");
    const ProcessResult result = runProcess(
        TRELLAN_TOOL, {"update", archive.path(), "--target", "target.json", "--events", "events"}, folder.path());
    EXPECT_EQ(result.status, 6);
    std::vector<ordered_json> events;
    std::istringstream lines(readText(pathOf("events")));
    for (std::string line; std::getline(lines, line);) {
        events.push_back(ordered_json::parse(line));
    }
    ASSERT_EQ(events.size(), 3u) << readText(pathOf("events"));
    EXPECT_EQ(events[0]["event"], "start");
    EXPECT_EQ(events[0]["archive"]["path"], archive.path());
    EXPECT_EQ(events[1]["event"], "message");
    EXPECT_EQ(events[2]["event"], "result");
    EXPECT_EQ(events[2]["result"], "refused");
}

TEST_F(EventRuns, AreRefusedWhereEventsWouldSpoilWhatTheyRead)
{
    const std::string device = readText(pathOf("target.json"));
    const std::string entries = readText(archive.path() + "/archive.json");
    folder.write("plan.json", "{}");
    std::filesystem::create_symlink("target.json", folder.path() / "link");
    for (const auto& [events, what] : {std::pair(pathOf("target.json"), "target file"),
                                       {pathOf("link"), "target file"},
                                       {archive.path() + "/archive.json", "archive's description"},
                                       {pathOf("plan.json"), "plan"}}) {
        const ProcessResult result =
            runProcess(TRELLAN_TOOL, {"update", archive.path(), "--events", events, "--plan", "plan.json"},
                       folder.path(), {"TRELLAN_TARGET=" + pathOf("target.json")});
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "trellan-update: --events: " + events + " is the " + what +
                                     "\ntrellan-update: see trellan-update help update\n");
    }
    EXPECT_EQ(readText(pathOf("target.json")), device);
    EXPECT_EQ(readText(archive.path() + "/archive.json"), entries);
    EXPECT_EQ(readText(pathOf("plan.json")), "{}");
}

TEST_F(EventRuns, AreRefusedWhereEventsWouldBecomePartOfAnUpdateFile)
{
    const std::string device = readText(pathOf("target.json"));
    std::filesystem::create_symlink(archive.path() + "/a.bin", folder.path() / "link");
    for (const std::string& file : {archive.path() + "/a.bin", pathOf("link")}) {
        const ProcessResult result = runProcess(
            TRELLAN_TOOL, {"update", archive.path(), "--target", "target.json", "--events", file}, folder.path());
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.errors, HasSubstr("trellan-update: --events: " + file + " is a file of the archive\n"));
    }
    EXPECT_EQ(readText(archive.path() + "/a.bin"), "content");
    EXPECT_EQ(readText(pathOf("target.json")), device);
}

TEST_F(EventRuns, GoOnWhereTheMediumIsFull)
{
    EXPECT_EQ(complaints("/dev/full"),
              "trellan-update: events cannot be written to /dev/full: No space left on device; the update goes on "
              "without them\n");
}

TEST_F(EventRuns, GoOnWhereThePipeHasNoReader)
{
    ASSERT_EQ(::mkfifo(pathOf("pipe").c_str(), 0600), 0);
    EXPECT_EQ(complaints(pathOf("pipe")), "trellan-update: events cannot be written to " + pathOf("pipe") +
                                              ": nobody reads it; the update goes on without them\n");
}

TEST_F(EventRuns, GoOnWhereThePipesReaderGoesAway)
{
    SKIP_WITHOUT_MOUNT();
    const SlowUpdate update;
    const std::string pipe = (update.folder() / "events").string();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    update.hold("site.cfg");
    RunningProcess tool = update.start();
    update.waitForCopy("site.cfg");
    char first[10];
    ASSERT_EQ(::read(reader, first, sizeof first), 10);
    EXPECT_EQ(std::string(first, sizeof first), "{\"time\":\"2");
    ::close(reader);
    update.release("site.cfg");
    const ProcessResult result = tool.wait();
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(update.hostsAreNew());
    EXPECT_EQ(result.errors, "trellan-update: events cannot be written to " + pipe +
                                 ": Broken pipe; the update goes on without them\n");
}

TEST_F(EventRuns, GoOnWhereAFolderOrNothingIsInTheFilesPlace)
{
    EXPECT_THAT(complaints(folder.path().string()), EndsWith(": Is a directory; the update goes on without them\n"));
    EXPECT_THAT(complaints("absent/events"),
                EndsWith(": No such file or directory; the update goes on without them\n"));
}

TEST_F(EventRuns, AreAppendedToWhatAnEarlierRunHasLeftTorn)
{
    folder.write("events", "{\"time\":\"2024");
    EXPECT_EQ(complaints(pathOf("events")), "");
    const ProcessResult history = runProcess(TRELLAN_TOOL, {"history", "events"}, folder.path());
    EXPECT_THAT(history.output, EndsWith(" (2.3.4): updated UserFirmware 1.0 -> 2.0: success\n"));
    EXPECT_THAT(history.errors, HasSubstr("torn"));
}
