// Updates that make no progress.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <sstream>
#include <thread>

#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"
#include "tool/CommandLine.h"
#include "tool/JsonDocument.h"
#include "tool/Run.h"

using nlohmann::ordered_json;
using testing::EndsWith;
using testing::HasSubstr;

namespace {

constexpr unsigned fileChecksum = 0xD5ECD7C4;  // CRC-32 of "firmware"

// A target with two elements in two phases. The first one is found half done `polls` times; then it is finished.
ordered_json stallingDevice(unsigned polls, const char* clock = "virtual")
{
    ordered_json answers = ordered_json::array();
    for (unsigned i = 0; i < polls; ++i) {
        answers.push_back({{"status", 1}, {"done", 5}, {"total", 10}});
    }
    ordered_json device = target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/NAME", "Board"}},
                                        {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", "1.0"}}),
                                         updateElement(2, {{"NAME", "UserFpga"}, {"VERSION", "1.0"}})})});
    device["clock"] = clock;
    device["script"]["elements"]["/ROOT/HCN#1"]["polls"] = answers;
    return device;
}

ordered_json entryOf(const std::string& name, unsigned id)
{
    return fileEntry(name, {{"id", id}, {"sequence", id}, {"version", "2.0"}, {"checksumCrc32", fileChecksum}});
}

class StalledRuns : public testing::Test {
protected:
    StalledRuns() : archive(description({entryOf("one.bin", 1), entryOf("two.bin", 2)}))
    {
        archive.addFile("one.bin", "firmware");
        archive.addFile("two.bin", "firmware");
    }

    RunResult updated(const std::vector<std::string>& options) const
    {
        std::vector<std::string> words = {"update", archive.path(), "--no-progress"};
        words.insert(words.end(), options.begin(), options.end());
        return ran(words);
    }

    std::string events() const { return archive.path() + "/events"; }

    TestArchive archive;
};

std::ptrdiff_t calls(const SimulatedTarget& device, const std::string& name)
{
    const std::vector<ordered_json> all = device.trace();
    return std::count_if(all.begin(), all.end(), [&](const ordered_json& call) { return call["call"] == name; });
}

}  // namespace

TEST_F(StalledRuns, AreGivenUpWithTheTargetUnlocked)
{
    const SimulatedTarget device(stallingDevice(1000));
    const RunResult result = updated({"--stall-timeout", "2"});
    EXPECT_EQ(result.status, 8);
    EXPECT_EQ(result.err,
              "trellan-update: no progress for 2 s: phase 0 stays at 50%; the update is given up\n"
              "trellan-update: not updated: Board, Firmware, 1.0 -> 2.0 (still running)\n"
              "trellan-update: not updated: Board, FPGA, 1.0 -> 2.0 (not started)\n");
    EXPECT_EQ(calls(device, "updateStatus2"), 11);
    EXPECT_EQ(calls(device, "update2"), 1);
    EXPECT_EQ(calls(device, "unlock"), 1);
}

// The first board fails in its first phase, the second one lacks a file, the third one stalls.
TEST_F(StalledRuns, SayOfEachElementWhyItWasNotUpdated)
{
    const auto boardOfType = [](const std::string& type, std::vector<ordered_json> elements) {
        return board(type, {{"PRODUCT/BOARD_TYPE", type}, {"PRODUCT/NAME", type}}, std::move(elements));
    };
    const auto firmware = [](unsigned id) {
        return updateElement(id, {{"NAME", "E" + std::to_string(id)}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", 1}});
    };
    const auto entry = [](const std::string& type, const std::string& name, unsigned id) {
        ordered_json result = entryOf(name, id);
        result["boardType"] = type;
        return result;
    };
    ordered_json failing = target({boardOfType("HCN", {firmware(1), firmware(2)}),
                                   boardOfType("IOMODULE", {firmware(2)}), boardOfType("CN", {firmware(2)})});
    failing["script"]["elements"]["/ROOT/HCN#1"]["polls"] = {{{"status", 3}}};
    failing["script"]["elements"]["/ROOT/CN#2"]["polls"] =
        std::vector<ordered_json>(1000, {{"done", 5}, {"total", 10}});
    const SimulatedTarget device(failing);
    TestArchive mixed(description({entry("HCN", "one.bin", 1), entry("HCN", "two.bin", 2),
                                   entry("IOMODULE", "lost.bin", 2), entry("CN", "two.bin", 2)}));
    mixed.addFile("one.bin", "firmware");
    mixed.addFile("two.bin", "firmware");
    const RunResult result = ran({"update", mixed.path(), "--no-progress", "--no-check", "--stall-timeout", "2"});
    EXPECT_EQ(result.status, 8);
    EXPECT_EQ(result.err,
              "trellan-update: no progress for 2 s: phase 1 stays at 50%; the update is given up\n"
              "trellan-update: not updated: HCN, E1, 1.0 -> 2.0 (failed)\n"
              "trellan-update: not updated: HCN, E2, 1.0 -> 2.0 (cancelled, since an earlier update of its board "
              "failed)\n"
              "trellan-update: not updated: IOMODULE, E2, 1.0 -> 2.0 (its update file is missing)\n"
              "trellan-update: not updated: CN, E2, 1.0 -> 2.0 (still running)\n");
}

TEST_F(StalledRuns, AreToldInTheDocumentTheEventsAndTheHistory)
{
    const SimulatedTarget device(stallingDevice(1000));
    const ordered_json document =
        conformingDocument(updated({"--stall-timeout", "2", "--json", "--events", events()}).out);
    EXPECT_EQ(document["error"]["status"], 8);
    EXPECT_EQ(document["elements"][0]["state"], "running");
    EXPECT_EQ(document["elements"][1]["state"], "notStarted");
    EXPECT_THAT(readText(events()), HasSubstr(R"("event":"result","status":8,"result":"stalled")"));
    EXPECT_THAT(ran({"history", events()}).out, EndsWith(" (2.3.4): nothing updated: stalled\n"));
    EXPECT_EQ(conformingDocument(ran({"history", events(), "--json"}).out)["runs"][0]["result"], "stalled");
}

TEST_F(StalledRuns, AreAt100PercentWhereMoreIsDoneThanThereIs)
{
    ordered_json document = stallingDevice(1000);
    for (ordered_json& answer : document["script"]["elements"]["/ROOT/HCN#1"]["polls"]) {
        answer["done"] = 20;
    }
    const SimulatedTarget device(document);
    const RunResult result = updated({"--stall-timeout", "2", "--events", events()});
    EXPECT_EQ(result.status, 8);
    EXPECT_THAT(result.err, HasSubstr("phase 0 stays at 100%;"));
    EXPECT_THAT(readText(events()), HasSubstr(R"("event":"progress","phase":0,"percent":100,"overall":50)"));
}

// Longer than the time without progress, and when the target is locked already.
TEST_F(StalledRuns, AreNoneWhereTheFirstTextAfterTheLockIsHeldUp)
{
    class HoldingUp : public std::stringbuf {
        std::streamsize xsputn(const char* text, std::streamsize length) override
        {
            if (std::string(text, static_cast<std::size_t>(length)).find("No update is required") !=
                std::string::npos) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1500));
            }
            return std::stringbuf::xsputn(text, length);
        }
    };
    const SimulatedTarget device(target(
        {board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}},
               {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", "1.0"}}),
                updateElement(2, {{"NAME", "UserFpga"}, {"VERSION", "2.0"}, {"CHECKSUM_CRC32", fileChecksum}})})}));
    HoldingUp holdingUp;
    std::ostream out(&holdingUp);
    std::ostringstream err;
    const std::string archivePath = archive.path();
    const char* const words[] = {"trellan-update", "update", archivePath.c_str(), "--stall-timeout", "1"};
    EXPECT_EQ(TrellanTool::run(5, words, out, err), 0) << err.str();  // given up, it would end the process
    EXPECT_THAT(holdingUp.str(), EndsWith("Update completed successfully!\n"));
}

TEST_F(StalledRuns, AreThoseAloneThatStayForTheWholeTime)
{
    const SimulatedTarget device(stallingDevice(10));
    const RunResult result = updated({"--stall-timeout", "2.2"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
}

TEST_F(StalledRuns, AreWaitedForWithoutTheOption)
{
    const SimulatedTarget device(stallingDevice(1000));
    EXPECT_EQ(updated({}).status, 0);
    EXPECT_EQ(calls(device, "updateStatus2"), 1002);
}

// The last report of a phase repeats the one before, when nothing runs any more.
TEST_F(StalledRuns, AreNoneWhereEveryElementHasFinished)
{
    ordered_json finished = stallingDevice(0);
    const ordered_json whole = {{"status", 1}, {"done", 10}, {"total", 10}};
    finished["script"]["elements"]["/ROOT/HCN#1"]["polls"] = ordered_json::array({whole});
    const SimulatedTarget device(finished);
    const RunResult result = updated({"--stall-timeout", "0.1"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(calls(device, "update2"), 2);
}

TEST_F(StalledRuns, AreGivenUpByTheRealClockToo)
{
    const SimulatedTarget device(stallingDevice(1000, "real"));
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(updated({"--stall-timeout", "0.5"}).status, 8);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(500));
    EXPECT_EQ(calls(device, "unlock"), 1);
    EXPECT_LE(calls(device, "updateStatus2"), 4);
}

TEST_F(StalledRuns, AreVerifiedInNothing)
{
    const SimulatedTarget device(stallingDevice(1000));
    const ordered_json document = conformingDocument(updated({"--stall-timeout", "2", "--json", "--verify"}).out);
    EXPECT_TRUE(document["elements"][0].at("verified").is_null());
    EXPECT_TRUE(document["elements"][1].at("verified").is_null());
}
