// What running a command gives: the library's text, the exit status, and the elements that are left out.
#include <gtest/gtest.h>
#include <stdlib.h>

#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "tool/CommandLine.h"

using nlohmann::ordered_json;

namespace {

// Standard output meanwhile, where the library prints.
class PrintedText {
public:
    PrintedText() { testing::internal::CaptureStdout(); }
    std::string take() { return testing::internal::GetCapturedStdout(); }
};

ordered_json twoElements(const std::string& version = "1.0")
{
    return target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/NAME", "Processor board"}},
                         {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", version}}),
                          updateElement(2, {{"NAME", "UserFpga"}, {"CHECKSUM_CRC32", 1}})})});
}

ordered_json firmwareAndFpga()
{
    return description({fileEntry("firmware.bin", {{"id", 1}, {"version", "2.0"}}),
                        fileEntry("fpga.bin", {{"id", 2}, {"version", nullptr}, {"checksumCrc32", 2}})});
}

// The archive with both of its files.
struct CompleteArchive : TestArchive {
    CompleteArchive() : TestArchive(firmwareAndFpga())
    {
        addFile("firmware.bin", "firmware");
        addFile("fpga.bin", "FPGA");
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

TEST(RunTest, VersionPrintsTheVersionAlone)
{
    PrintedText printed;
    const RunResult result = ran({"version"});
    EXPECT_EQ(printed.take(), "1.0\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
}

TEST(RunTest, ArchiveVersionIsReadFromTheNamedDescription)
{
    const TestArchive archive(description({}));
    PrintedText printed;
    EXPECT_EQ(ran({"archive-version", archive.path(), "--description", "archive.json"}).status, 0);
    EXPECT_EQ(printed.take(), "2.3.4\n");
}

TEST(RunTest, AnUnreadableArchiveEndsWith3)
{
    const TestArchive archive(std::string("not JSON"));
    PrintedText printed;
    EXPECT_EQ(ran({"archive-version", archive.path()}).status, 3);
    EXPECT_EQ(printed.take(), "ERROR: The archive description file " + archive.path() +
                                  "/archive.json is corrupt. Invalid JSON data.\n"
                                  "ERROR: Failed to read firmware archive.\n");
}

TEST(RunTest, AnUnsupportedTargetEndsWith4AndIsNotUpdated)
{
    const SimulatedTarget device(twoElements());
    TestArchive archive(description({fileEntry("firmware.bin", {{"id", 1}, {"version", "2.0"}})}));
    archive.addFile("firmware.bin", "content");
    PrintedText printed;
    EXPECT_EQ(ran({"update", archive.path()}).status, 4);
    EXPECT_TRUE(printed.take().ends_with("ERROR: The target system is not supported by this firmware archive.\n"));
    EXPECT_EQ(startedUpdates(device), 0u);
}

TEST(RunTest, ASuccessfulUpdateEndsWith0)
{
    const SimulatedTarget device(twoElements());
    const CompleteArchive archive;
    PrintedText printed;
    EXPECT_EQ(ran({"update", archive.path(), "--no-progress"}).status, 0);
    EXPECT_TRUE(printed.take().ends_with("\nResults:\n\n    Update completed successfully!\n"));
    EXPECT_EQ(startedUpdates(device), 2u);
}

TEST(RunTest, AFailedUpdateEndsWith1)
{
    const SimulatedTarget device(twoElements());
    const TestArchive archive(firmwareAndFpga());
    PrintedText printed;
    EXPECT_EQ(ran({"update", archive.path()}).status, 1);
    EXPECT_TRUE(printed.take().ends_with("\n    Update incomplete due to missing files in the source folder!\n"));
}

TEST(RunTest, ExcludedElementsAreNotUpdated)
{
    const SimulatedTarget device(twoElements());
    const CompleteArchive archive;
    PrintedText printed;
    const RunResult result = ran({"update", archive.path(), "--exclude", "0", "--exclude", "1"});
    printed.take();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(startedUpdates(device), 0u);
}

TEST(RunTest, AnIndexBeyondTheElementsGivesAWarningAndTheRunGoesOn)
{
    const SimulatedTarget device(twoElements());
    const CompleteArchive archive;
    PrintedText printed;
    const RunResult result = ran({"update", archive.path(), "--exclude", "2", "--exclude=1", "--exclude=4294967295"});
    printed.take();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err,
              "trellan-update: warning: there is no element 2 to exclude\n"
              "trellan-update: warning: there is no element 4294967295 to exclude\n");
    EXPECT_EQ(startedUpdates(device), 1u);
}

TEST(RunTest, ACommandWithoutElementsSaysSoInsteadOfNamingTheExcludedOnes)
{
    const SimulatedTarget device(twoElements());
    const CompleteArchive archive;
    PrintedText printed;
    const RunResult version = ran({"version", "--exclude", "1"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.err, "trellan-update: warning: version has no elements to exclude\n");
    for (const std::string command : {"archive-version", "list", "describe"}) {
        const RunResult result = ran({command, archive.path(), "--exclude", "1", "--exclude", "9"});
        EXPECT_EQ(result.status, 0) << command;
        EXPECT_EQ(result.err, "trellan-update: warning: " + command + " has no elements to exclude\n");
    }
    for (const std::string command : {"installed", "scan"}) {
        const RunResult result = ran({command, "--exclude", "1", "--exclude", "9"});
        EXPECT_EQ(result.err, "trellan-update: warning: there is no element 9 to exclude\n") << command;
    }
    const RunResult compared = ran({"compare", archive.path(), "--exclude", "1", "--exclude", "9"});
    EXPECT_EQ(compared.err, "trellan-update: warning: there is no element 9 to exclude\n");
    printed.take();
}

TEST(RunTest, RebootSupportEndsWith0WhereTheFirmwareIsNewEnough)
{
    const SimulatedTarget device(twoElements("23.2"));
    PrintedText printed;
    EXPECT_EQ(ran({"reboot-support"}).status, 0);
    EXPECT_TRUE(printed.take().ends_with("\n \n"));
}

TEST(RunTest, RebootSupportSaysWhyNotAndEndsWith1)
{
    const SimulatedTarget device(twoElements("23.1"));
    PrintedText printed;
    EXPECT_EQ(ran({"reboot-support"}).status, 1);
    EXPECT_TRUE(
        printed.take().ends_with("\n \nWARNING: Device cannot be rebooted automatically (not supported by the "
                                 "firmware version installed on this device).\n"));
}

TEST(RunTest, TargetAndTraceReachThePlatformThroughTheEnvironment)
{
    const SimulatedTarget device(twoElements());
    const std::string target = device.path().string();
    const std::string trace = (device.folder() / "other-trace").string();
    ::unsetenv("TRELLAN_TARGET");
    ::unsetenv("TRELLAN_TRACE");
    PrintedText printed;
    EXPECT_EQ(ran({"scan", "--target", target, "--trace", trace}).status, 0);
    printed.take();
    ASSERT_NE(::getenv("TRELLAN_TARGET"), nullptr);
    ASSERT_NE(::getenv("TRELLAN_TRACE"), nullptr);
    EXPECT_EQ(::getenv("TRELLAN_TARGET"), target);
    EXPECT_EQ(::getenv("TRELLAN_TRACE"), trace);
    EXPECT_TRUE(std::filesystem::exists(trace));
}

TEST(RunTest, WithoutTheOptionsTheEnvironmentStaysAsItIs)
{
    const SimulatedTarget device(twoElements());
    PrintedText printed;
    EXPECT_EQ(ran({"scan"}).status, 0);
    printed.take();
    EXPECT_EQ(::getenv("TRELLAN_TARGET"), device.path().string());
}
