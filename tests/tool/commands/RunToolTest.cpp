// What running a command gives: the library's text, the exit status, and the elements that are left out.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>

#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "tool/CommandLine.h"

using nlohmann::ordered_json;

namespace {

ordered_json twoElements(const std::string& version = "1.0")
{
    return target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/NAME", "Processor board"}},
                         {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", version}}),
                          updateElement(2, {{"NAME", "UserFpga"}, {"CHECKSUM_CRC32", 1}})})});
}

ordered_json firmwareAndFpga()
{
    return description({fileEntry("firmware.bin", {{"id", 1}, {"version", "2.0"}, {"checksumCrc32", 0xD5ECD7C4}}),
                        fileEntry("fpga.bin", {{"id", 2}, {"version", nullptr}, {"checksumCrc32", 0x4D645E89}})});
}

// The archive with both of its files.
struct CompleteArchive : TestArchive {
    CompleteArchive() : TestArchive(firmwareAndFpga())
    {
        addFile("firmware.bin", "firmware");
        addFile("fpga.bin", "FPGA");
    }
};

// Takes down what a stream holds each time that it is flushed.
class FlushRecorder : public std::stringbuf {
public:
    std::vector<std::string> flushed;

protected:
    int sync() override
    {
        flushed.push_back(str());
        str("");
        return 0;
    }
};

unsigned startedUpdates(const SimulatedTarget& device)
{
    unsigned started = 0;
    for (const ordered_json& call : device.trace()) {
        started += call["call"] == "update2" ? 1 : 0;
    }
    return started;
}

}  // namespace

TEST(RunTool, VersionPrintsTheVersionAlone)
{
    const RunResult result = ran({"version"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "1.0\n");
    EXPECT_EQ(result.err, "");
}

TEST(RunTool, ArchiveVersionIsReadFromTheNamedDescription)
{
    const TestArchive archive(description({}));
    const RunResult result = ran({"archive-version", archive.path(), "--description", "archive.json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "2.3.4\n");
}

TEST(RunTool, AnUnreadableArchiveEndsWith3)
{
    const TestArchive archive(std::string("not JSON"));
    const RunResult result = ran({"archive-version", archive.path()});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.out, "ERROR: The archive description file " + archive.path() +
                              "/archive.json is corrupt. Invalid JSON data.\n"
                              "ERROR: Failed to read firmware archive.\n");
}

TEST(RunTool, AFolderForADescriptionIsCalledOne)
{
    const TestArchive archive(description({}));
    const RunResult result = ran({"archive-version", archive.path(), "--description", "."});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.err, "trellan-update: the description " + archive.path() +
                              "/. is a folder; --description takes the name of a file\n");
    EXPECT_EQ(ran({"archive-version", archive.path(), "--description", "nothing.json"}).err, "");
}

TEST(RunTool, AnUnsupportedTargetEndsWith4AndIsNotUpdated)
{
    const SimulatedTarget device(twoElements());
    TestArchive archive(description({fileEntry("firmware.bin", {{"id", 1}, {"version", "2.0"}})}));
    archive.addFile("firmware.bin", "content");
    const RunResult result = ran({"update", archive.path()});
    EXPECT_EQ(result.status, 4);
    EXPECT_TRUE(result.out.ends_with("ERROR: The target system is not supported by this firmware archive.\n"));
    EXPECT_EQ(startedUpdates(device), 0u);
}

TEST(RunTool, ASuccessfulUpdateEndsWith0)
{
    const SimulatedTarget device(twoElements());
    const CompleteArchive archive;
    const RunResult result = ran({"update", archive.path(), "--no-progress"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.out.ends_with("\nResults:\n\n    Update completed successfully!\n"));
    EXPECT_EQ(startedUpdates(device), 2u);
}

TEST(RunTool, AFailedUpdateEndsWith1)
{
    const SimulatedTarget device(twoElements());
    const TestArchive archive(firmwareAndFpga());
    const RunResult result = ran({"update", archive.path(), "--no-check"});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.out.ends_with("\n    Update incomplete due to missing files in the source folder!\n"));
}

TEST(RunTool, ExcludedElementsAreNotUpdated)
{
    const SimulatedTarget device(twoElements());
    const CompleteArchive archive;
    const RunResult result = ran({"update", archive.path(), "--exclude", "0", "--exclude", "1"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(startedUpdates(device), 0u);
}

TEST(RunTool, AnIndexBeyondTheElementsGivesAWarningAndTheRunGoesOn)
{
    const SimulatedTarget device(twoElements());
    const CompleteArchive archive;
    const RunResult result = ran({"update", archive.path(), "--exclude", "2", "--exclude=1", "--exclude=4294967295"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err,
              "trellan-update: warning: there is no element 2 to exclude\n"
              "trellan-update: warning: there is no element 4294967295 to exclude\n");
    EXPECT_EQ(startedUpdates(device), 1u);
}

TEST(RunTool, EveryCommandThatIsAboutElementsNamesAnIndexThatNoneHas)
{
    const SimulatedTarget device(twoElements());
    const CompleteArchive archive;
    const std::string warning = "trellan-update: warning: there is no element 9 to exclude\n";
    EXPECT_EQ(ran({"installed", "--exclude", "1", "--exclude", "9"}).err, warning);
    EXPECT_EQ(ran({"scan", "--exclude", "1", "--exclude", "9"}).err, warning);
    EXPECT_EQ(ran({"compare", archive.path(), "--exclude", "1", "--exclude", "9"}).err, warning);
}

TEST(RunTool, AnOptionWithoutAMeaningForTheCommandIsNotedAndTheCommandIsCarriedOut)
{
    const RunResult result = ran({"version", "--exclude", "1", "-v", "--target", "none", "--exclude", "x"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "1.0\n");
    EXPECT_EQ(result.err,
              "trellan-update: note: --exclude has no meaning for version\n"
              "trellan-update: note: --verbose has no meaning for version\n"
              "trellan-update: note: --target has no meaning for version\n");
}

TEST(RunTool, AnUpdatesTextIsFlushedAfterEachLineEndAndCarriageReturn)
{
    ordered_json document = twoElements();
    document["bytesPerSecond"] = 1;
    const SimulatedTarget device(document);
    const CompleteArchive archive;
    FlushRecorder recorder;
    std::ostream out(&recorder);
    std::ostringstream err;
    const std::string path = archive.path();
    const char* const words[] = {"trellan-update", "update", path.c_str()};
    EXPECT_EQ(TrellanTool::run(3, words, out, err), 0);
    const std::vector<std::string>& pieces = recorder.flushed;
    EXPECT_EQ(pieces.front(),
              "\nVelorant Device Update Tool, Vs 1.0\nCopyright (c) Velorant. All rights reserved.\n \n");
    EXPECT_EQ(std::count(pieces.begin(), pieces.end(), "\nUpdating:\n"), 1);
    EXPECT_GT(std::count_if(pieces.begin(), pieces.end(), [](const auto& piece) { return piece.ends_with('\r'); }), 10);
    for (const std::string& piece : pieces) {
        EXPECT_EQ(piece.find_first_of("\n\r", 0) == std::string::npos, piece.empty()) << piece;
    }
}

TEST(RunTool, OtherTextIsFlushedAtTheEnd)
{
    const SimulatedTarget device(twoElements());
    FlushRecorder recorder;
    std::ostream out(&recorder);
    std::ostringstream err;
    const char* const words[] = {"trellan-update", "installed"};
    EXPECT_EQ(TrellanTool::run(2, words, out, err), 0);
    ASSERT_EQ(recorder.flushed.size(), 1u);
    EXPECT_TRUE(recorder.flushed.front().ends_with("Processor board, FPGA     | ---    \n"))
        << recorder.flushed.front();
}

TEST(RunTool, RebootSupportEndsWith0WhereTheFirmwareIsNewEnough)
{
    const SimulatedTarget device(twoElements("23.2"));
    const RunResult result = ran({"reboot-support"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.out.ends_with("\n \n"));
}

TEST(RunTool, RebootSupportSaysWhyNotAndEndsWith1)
{
    const SimulatedTarget device(twoElements("23.1"));
    const RunResult result = ran({"reboot-support"});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(
        result.out.ends_with("\n \nWARNING: Device cannot be rebooted automatically (not supported by the "
                             "firmware version installed on this device).\n"));
}

TEST(RunTool, TargetAndTraceReachThePlatformThroughTheEnvironment)
{
    const SimulatedTarget device(twoElements());
    const std::string target = device.path().string();
    const std::string trace = (device.folder() / "other-trace").string();
    ::unsetenv("TRELLAN_TARGET");
    ::unsetenv("TRELLAN_TRACE");
    EXPECT_EQ(ran({"scan", "--target", target, "--trace", trace}).status, 0);
    ASSERT_NE(::getenv("TRELLAN_TARGET"), nullptr);
    ASSERT_NE(::getenv("TRELLAN_TRACE"), nullptr);
    EXPECT_EQ(::getenv("TRELLAN_TARGET"), target);
    EXPECT_EQ(::getenv("TRELLAN_TRACE"), trace);
    EXPECT_TRUE(std::filesystem::exists(trace));
}

TEST(RunTool, WithoutTheOptionsTheEnvironmentStaysAsItIs)
{
    const SimulatedTarget device(twoElements());
    EXPECT_EQ(ran({"scan"}).status, 0);
    EXPECT_EQ(::getenv("TRELLAN_TARGET"), device.path().string());
}
