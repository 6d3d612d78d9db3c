// What happens before an update, and a dry run of it.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "tool/CommandLine.h"
#include "tool/JsonDocument.h"

using nlohmann::ordered_json;

namespace {

ordered_json device()
{
    return target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/SERIAL_NUMBER", 815}},
                         {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", "3.0"}, {"CHECKSUM_CRC32", 1}}),
                          updateElement(2, {{"NAME", "UserFpga"}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", 2}})})});
}

// CRC-32 of "content".
constexpr unsigned contentChecksum = 0xFEC530A9;

ordered_json contents(unsigned checksum)
{
    return description({fileEntry("a.bin", {{"version", "2.0"}, {"checksumCrc32", checksum}}),
                        fileEntry("b.bin", {{"id", 2}, {"version", "1.0"}, {"checksumCrc32", 2}})});
}

bool wasLocked(const SimulatedTarget& target)
{
    const std::vector<ordered_json> calls = target.trace();
    return std::any_of(calls.begin(), calls.end(), [](const ordered_json& call) { return call["call"] == "lock"; });
}

}  // namespace

TEST(BeforeUpdate, ACorruptedFileIsFoundBeforeTheTargetIsLocked)
{
    const SimulatedTarget target(device());
    TestArchive archive(contents(5));
    archive.addFile("a.bin", "content");
    for (const bool dryRun : {false, true}) {
        std::vector<std::string> words = {"update", archive.path(), "--json"};
        if (dryRun) {
            words.emplace_back("--dry-run");
        }
        const RunResult result = ran(words);
        EXPECT_EQ(result.status, 6);
        EXPECT_NE(result.err.find("trellan-update: archive.json:14:7: error: files[0] \"a.bin\": "), std::string::npos)
            << result.err;
        const ordered_json document = conformingDocument(result.out);
        EXPECT_EQ(document["error"]["status"], 6);
        EXPECT_EQ(document["findings"].size(), 1);
        EXPECT_EQ(document["findings"][0]["rule"], "checksum");
        EXPECT_EQ(document["findings"][0]["file"], 0);
        EXPECT_EQ(document["elements"][0]["state"], "update");
    }
    EXPECT_FALSE(wasLocked(target));
}

TEST(BeforeUpdate, NothingIsCheckedWhereThatIsAskedFor)
{
    const SimulatedTarget target(device());
    TestArchive archive(contents(5));
    archive.addFile("a.bin", "content");
    const RunResult result = ran({"update", archive.path(), "--no-check"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
}

// The library has read it, the tool has not yet.
TEST(BeforeUpdate, ADescriptionThatIsGoneBeforeItsDigestIsMadeIsNoReadableArchive)
{
    class Removing : public std::stringbuf {
    public:
        explicit Removing(std::string path) : path(std::move(path)) {}

    private:
        std::streamsize xsputn(const char* text, std::streamsize length) override
        {
            const std::streamsize taken = std::stringbuf::xsputn(text, length);
            if (str().find("99") != std::string::npos) {
                std::filesystem::remove(path);
            }
            return taken;
        }

        const std::string path;
    };
    const SimulatedTarget target(device());
    TestArchive archive(contents(contentChecksum));
    archive.addFile("a.bin", "content");
    const std::string path = archive.path();
    Removing removing(path + "/archive.json");  // when it is told that no element has the index 99
    std::ostringstream out;
    std::ostream err(&removing);
    const char* const words[] = {"trellan-update", "update", path.c_str(), "--exclude", "99", "--json"};
    EXPECT_EQ(TrellanTool::run(6, words, out, err), 3);
    const std::string reason =
        "cannot open the archive description " + path + "/archive.json: No such file or directory";
    EXPECT_TRUE(removing.str().ends_with("trellan-update: " + reason + "\n")) << removing.str();
    EXPECT_EQ(conformingDocument(out.str())["error"], ordered_json({{"status", 3}, {"message", reason}}));
    EXPECT_FALSE(wasLocked(target));
}

TEST(BeforeUpdate, AFileThatIsNotUsedIsNotChecked)
{
    const SimulatedTarget target(device());
    TestArchive archive(contents(contentChecksum));
    archive.addFile("a.bin", "content");  // b.bin is not there, nor needed
    EXPECT_EQ(ran({"update", archive.path()}).status, 0);
    EXPECT_TRUE(wasLocked(target));
}

TEST(BeforeUpdate, AWarningIsSaidAndTheUpdateGoesOn)
{
    const SimulatedTarget target(device());
    ordered_json names = contents(contentChecksum);
    names["files"][0]["name"] = "a\tb.bin";
    TestArchive archive(names);
    archive.addFile("a\tb.bin", "content");
    const RunResult result = ran({"update", archive.path()});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.err.find(": warning: files[0] "), std::string::npos) << result.err;
    EXPECT_NE(result.err.find("[control-character]\n"), std::string::npos) << result.err;
}

TEST(BeforeUpdate, WhatTheCheckFindsStandsInTheOrderOfTheDescription)
{
    const SimulatedTarget target(device());
    ordered_json names = contents(5);
    names["files"][0].erase("name");
    names["files"][0]["name"] = "a\tb.bin";  // behind the checksum now
    TestArchive archive(names);
    archive.addFile("a\tb.bin", "content");
    const RunResult result = ran({"update", archive.path(), "--json"});
    EXPECT_EQ(result.status, 6);
    const ordered_json document = conformingDocument(result.out);
    ASSERT_EQ(document["findings"].size(), 2);
    EXPECT_EQ(document["findings"][0]["rule"], "checksum");
    EXPECT_EQ(document["findings"][1]["rule"], "control-character");
    EXPECT_LT(result.err.find("[checksum]"), result.err.find("[control-character]")) << result.err;
}

TEST(DryRun, TellsEachPhaseWithVersionsAndDowngrades)
{
    const SimulatedTarget target(device());
    const TestArchive archive(contents(9));
    const RunResult result = ran({"update", archive.path(), "--dry-run", "--no-check"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(
        result.out.ends_with("Phase 0 would update:\n"
                             "    KR5120, SN 815, Firmware: 3.0 -> 2.0 (downgrade)\n"
                             "Up to date:\n"
                             "    KR5120, SN 815, FPGA\n"
                             "2 elements: 1 to update, 1 up to date, 0 excluded, 0 custom, 0 blocked, "
                             "0 without a file\n"))
        << result.out;
    EXPECT_FALSE(wasLocked(target));
}

TEST(DryRun, GivesADocumentWithCountsPhasesAndOptions)
{
    const SimulatedTarget target(device());
    const TestArchive archive(contents(9));
    const ordered_json document = conformingDocument(
        ran({"update", archive.path(), "-n", "--json", "--no-check", "--force", "--exclude", "1", "--exclude", "0"})
            .out);
    EXPECT_EQ(document["supported"], true);
    EXPECT_EQ(
        document["counts"],
        ordered_json({{"noFile", 0}, {"custom", 0}, {"upToDate", 0}, {"excluded", 2}, {"blocked", 0}, {"update", 0}}));
    EXPECT_EQ(document["phases"], ordered_json::parse("[[]]"));
    EXPECT_EQ(document["archive"]["path"], archive.path());
    EXPECT_EQ(document["archive"]["version"], "2.3.4");
    EXPECT_EQ(document["options"]["exclude"], ordered_json({0, 1}));
    EXPECT_EQ(document["options"]["force"], true);
}

TEST(DryRun, RefusesWhatAnUpdateRefuses)
{
    const SimulatedTarget target(device());
    const TestArchive partial(description({fileEntry("a.bin", {{"checksumCrc32", 9}})}));
    for (const bool dryRun : {false, true}) {
        const auto statusOf = [&](std::vector<std::string> words) {
            words.insert(words.begin(), "update");
            words.emplace_back("--json");
            if (dryRun) {
                words.emplace_back("-n");
            }
            const RunResult result = ran(words);
            EXPECT_EQ(conformingDocument(result.out)["error"]["status"], result.status);
            return result.status;
        };
        EXPECT_EQ(statusOf({"/nowhere"}), 3);
        EXPECT_EQ(statusOf({partial.path()}), 4);
        EXPECT_EQ(statusOf({partial.path(), "--serial-numbers", "1"}), 5);
        EXPECT_EQ(statusOf({partial.path(), "--element-names", "UserFirmware"}), 6);
    }
    EXPECT_FALSE(wasLocked(target));
}

TEST(DryRun, NamesWhatHasNoFileWhereTheTargetIsRefused)
{
    const SimulatedTarget target(device());
    const TestArchive partial(description({fileEntry("a.bin", {{"checksumCrc32", 9}})}));
    const RunResult result = ran({"update", partial.path(), "-n"});
    EXPECT_NE(result.out.find("The target is not supported:\n"
                              "the archive has no file for KR5120, SN 815, FPGA (board KR5120, element UserFpga)\n"),
              std::string::npos)
        << result.out;
    EXPECT_NE(
        result.out.find("2 elements: 0 to update, 0 up to date, 0 excluded, 0 custom, 1 blocked, 1 without a file\n"),
        std::string::npos)
        << result.out;
}

TEST(DryRun, EndsWith10WhereAskedForAndSomethingWouldBeUpdated)
{
    const SimulatedTarget target(device());
    const TestArchive archive(contents(9));
    EXPECT_EQ(ran({"update", archive.path(), "-n", "--no-check", "--detailed-exit-status"}).status, 10);
    EXPECT_EQ(ran({"update", archive.path(), "-n", "--no-check", "--detailed-exit-status", "--exclude", "0"}).status,
              0);
}
