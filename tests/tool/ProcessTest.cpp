// The tool as a process: what stays in the process after a run, such as reported errors, cannot be tested in another
// way.
#include <gtest/gtest.h>

#include "support/BuildTree.h"
#include "support/JsonSchema.h"
#include "support/Process.h"
#include "support/PseudoTerminal.h"
#include "support/TargetBuilder.h"
#include "support/TempDir.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"

using nlohmann::json;
using nlohmann::ordered_json;

namespace {

constexpr const char* banner =
    "\nVelorant Device Update Tool, Vs 1.0\nCopyright (c) Velorant. All rights reserved.\n \n";

class Process : public testing::Test {
protected:
    ProcessResult tool(const std::vector<std::string>& arguments,
                       const std::vector<std::string>& environment = {}) const
    {
        return runProcess(TRELLAN_TOOL, arguments, folder.path(), environment);
    }

    // A target whose board name cannot be read.
    std::string faultyTarget() const
    {
        ordered_json document = target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/NAME", "Board"}},
                                              {updateElement(1, {{"NAME", "UserFpga"}})})});
        document["script"]["values"]["/ROOT/HCN:PRODUCT/NAME"] = {{{"code", 4097}, {"text", "cannot read"}}};
        return folder.write("target.json", document.dump(2)).string();
    }

    std::string faultlessTarget() const
    {
        return folder.write("good.json", target({item("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}})}).dump()).string();
    }

    TempDir folder;
};

}  // namespace

TEST_F(Process, AnUnreadableTargetEndsWith3)
{
    const ProcessResult result = tool({"installed", "--target", "absent.json"});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.output, std::string(banner) +
                                 "ERROR: Cannot read target device information.\n"
                                 "\tPower-cycle the system and retry.\n"
                                 "\tIf the problem persists, contact Velorant support.\n");
}

TEST_F(Process, RebootSupportOfAnUnreadableTargetEndsWith3)
{
    const ProcessResult result = tool({"reboot-support", "--target", "absent.json"});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.output, std::string(banner) +
                                 "ERROR: Cannot read target device information.\n"
                                 "\tPower-cycle the system and retry.\n"
                                 "\tIf the problem persists, contact Velorant support.\n");
}

TEST_F(Process, ReportedErrorsEndWith1)
{
    const ProcessResult result = tool({"scan", "--target", faultyTarget()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, std::string(banner) +
                                 "\nReported errors:\n"
                                 "       ERROR 0x1001 (reported by Host PC):\n"
                                 "         cannot read\n");
}

TEST_F(Process, ReportedErrorsEndWith1BesideTheDocument)
{
    const ProcessResult result = tool({"scan", "--json", "--target", faultyTarget()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, std::string(banner) +
                                 "\nReported errors:\n"
                                 "       ERROR 0x1001 (reported by Host PC):\n"
                                 "         cannot read\n");
    const JsonSchema schema(json::parse(readText(TRELLAN_SOURCE_DIR "/docs/trellan-update.schema.json")));
    EXPECT_TRUE(schema.violations(json::parse(result.output)).empty()) << result.output;
}

TEST_F(Process, WithoutSuccessTheDocumentTellsWhy)
{
    const JsonSchema schema(json::parse(readText(TRELLAN_SOURCE_DIR "/docs/trellan-update.schema.json")));
    for (const char* const command : {"installed", "scan", "reboot-support"}) {
        const ProcessResult result = tool({command, "--json", "--target", "absent.json"});
        EXPECT_EQ(result.status, 3);
        const json document = json::parse(result.output);
        EXPECT_TRUE(schema.violations(document).empty()) << result.output;
        EXPECT_EQ(document["command"], command);
        EXPECT_EQ(document["error"],
                  json({{"status", 3},
                        {"message", "ERROR 0x26300007: The target file " + (folder.path() / "absent.json").string() +
                                        " cannot be read: No such file or directory.\n"
                                        "ERROR: Cannot read target device information.\n"
                                        "\tPower-cycle the system and retry.\n"
                                        "\tIf the problem persists, contact Velorant support."}}));
    }
}

TEST_F(Process, TheTargetIsTakenFromTheEnvironmentUnlessItIsGiven)
{
    const std::string environment = "TRELLAN_TARGET=" + faultyTarget();
    EXPECT_EQ(tool({"scan"}, {environment}).status, 1);
    EXPECT_EQ(tool({"scan", "--target", "absent.json"}, {environment}).status, 3);
    EXPECT_EQ(tool({"scan"}).status, 3);
}

TEST_F(Process, ATargetIsFoundBesideTheWorkingFolder)
{
    folder.write("device/target.json", target({item("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}})}).dump());
    EXPECT_EQ(tool({"scan", "--target", "device/target.json", "--trace", "device/trace"}).status, 0);
    EXPECT_EQ(readText(folder.path() / "device/trace"),
              "{\"call\":\"scan\",\"argument\":true,\"result\":0}\n"
              "{\"call\":\"deleteInventoryTree\"}\n"
              "{\"call\":\"unregisterMessages\",\"code\":642777088}\n");
}

TEST_F(Process, WrongUsageTouchesNothing)
{
    const ProcessResult result = tool({"scan", "--bogus", "--trace", "trace"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "trellan-update: '--bogus' is no option\ntrellan-update: see trellan-update help scan\n");
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "trace"));
}

TEST_F(Process, AFullStandardOutputEndsWith1)
{
    const std::string target = faultlessTarget();
    for (const std::string command : {"version", "--help", "scan --help", "scan", "installed --json"}) {
        const std::string line = "exec \"$1\" " + command + " >/dev/full";
        const ProcessResult result =
            runProcess("/bin/sh", {"-c", line, "sh", TRELLAN_TOOL}, folder.path(), {"TRELLAN_TARGET=" + target});
        EXPECT_EQ(result.status, 1) << command;
        EXPECT_TRUE(result.errors.ends_with("trellan-update: standard output cannot be written\n")) << result.errors;
    }
}

TEST_F(Process, AFullStandardOutputEndsWith1AlsoWhereThereIsSomethingToUpdate)
{
    const ordered_json device = target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/NAME", "Board"}},
                                              {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", "1.0"}})})});
    folder.write("target.json", device.dump());
    const TestArchive archive(description({fileEntry("firmware.bin", {{"id", 1}, {"checksumCrc32", 9}})}));
    const std::string line = "exec \"$0\" compare \"$1\" --target target.json --detailed-exit-status";
    EXPECT_EQ(runProcess("/bin/sh", {"-c", line, TRELLAN_TOOL, archive.path()}, folder.path()).status, 10);
    const ProcessResult result =
        runProcess("/bin/sh", {"-c", line + " >/dev/full", TRELLAN_TOOL, archive.path()}, folder.path());
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "trellan-update: standard output cannot be written\n");
}

TEST_F(Process, AFullStandardOutputIsToldAlsoWhereTheCommandFails)
{
    for (const auto& [target, status] : {std::pair(faultyTarget(), 1), {"absent.json", 3}}) {
        const ProcessResult result = runProcess(
            "/bin/sh", {"-c", "exec \"$0\" scan --target \"$1\" >/dev/full", TRELLAN_TOOL, target}, folder.path());
        EXPECT_EQ(result.status, status);
        EXPECT_TRUE(result.errors.ends_with("trellan-update: standard output cannot be written\n")) << result.errors;
    }
}

// A pipe whose reader is gone: every attempt to write to it fails.
TEST_F(Process, AReaderThatGoesAwayDoesNotStopAnUpdate)
{
    const ordered_json device = target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/NAME", "Board"}},
                                              {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", "1.0"}})})});
    folder.write("target.json", device.dump(2));
    TestArchive archive(
        description({fileEntry("firmware.bin", {{"id", 1}, {"version", "2.0"}, {"checksumCrc32", 0xD5ECD7C4}})}));
    archive.addFile("firmware.bin", "firmware");
    const std::string line =
        "mkfifo pipe && exec 3<>pipe 4>pipe 3<&- && exec \"$0\" update \"$1\" --target target.json --trace trace >&4";
    const ProcessResult result = runProcess("/bin/sh", {"-c", line, TRELLAN_TOOL, archive.path()}, folder.path());
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "trellan-update: standard output cannot be written\n");
    const std::string trace = readText(folder.path() / "trace");
    for (const char* const call : {"updateFinish", "unlock"}) {
        EXPECT_NE(trace.find(std::string("{\"call\":\"") + call + "\""), std::string::npos) << trace;
    }
}

TEST_F(Process, ATerminalIsShownControlCharactersAndAllElseGetsTheBytes)
{
    const PseudoTerminal terminal;
    TestArchive archive(description({fileEntry("a\x1b[2Jb.bin", {{"checksumCrc32", 1}})}));
    const std::string list = "exec \"$0\" list \"$1\" ";
    const std::string wrong = "exec \"$0\" '\x1b[2J' ";
    runProcess("/bin/sh", {"-c", list + ">" + terminal.path(), TRELLAN_TOOL, archive.path()}, folder.path());
    const std::string listed = terminal.shown();
    EXPECT_NE(listed.find(" a\\x1b[2Jb.bin "), std::string::npos) << listed;
    runProcess("/bin/sh", {"-c", wrong + "2>" + terminal.path(), TRELLAN_TOOL}, folder.path());
    EXPECT_EQ(terminal.shown(), "trellan-update: '\\x1b[2J' is no command\ntrellan-update: see trellan-update help\n");

    const ProcessResult bytes = runProcess("/bin/sh", {"-c", list, TRELLAN_TOOL, archive.path()}, folder.path());
    EXPECT_NE(bytes.output.find(" a\x1b[2Jb.bin "), std::string::npos) << bytes.output;
    EXPECT_EQ(runProcess("/bin/sh", {"-c", wrong, TRELLAN_TOOL}, folder.path()).errors,
              "trellan-update: '\x1b[2J' is no command\ntrellan-update: see trellan-update help\n");
}

// The lock file and what the update writes must not take the place of an output that is closed.
TEST_F(Process, WhatIsPrintedToAClosedOutputReachesNoFile)
{
    const std::string target = faultlessTarget();
    const std::string before = readText(target);
    const std::string line = "exec \"$0\" scan --exclude 7 --target good.json --trace trace ";
    const ProcessResult silent = runProcess("/bin/sh", {"-c", line + "2>&-", TRELLAN_TOOL}, folder.path());
    EXPECT_EQ(silent.status, 0);
    EXPECT_EQ(silent.output, banner);
    EXPECT_EQ(readText(folder.path() / "trace"),
              "{\"call\":\"scan\",\"argument\":true,\"result\":0}\n"
              "{\"call\":\"deleteInventoryTree\"}\n"
              "{\"call\":\"unregisterMessages\",\"code\":642777088}\n");
    const ProcessResult deaf = runProcess("/bin/sh", {"-c", line + "<&- >&-", TRELLAN_TOOL}, folder.path());
    EXPECT_EQ(deaf.status, 1);
    EXPECT_TRUE(deaf.errors.ends_with("trellan-update: standard output cannot be written\n")) << deaf.errors;
    EXPECT_EQ(readText(target), before);
}

TEST_F(Process, ARelativePathInAFolderThatIsGoneIsNamed)
{
    const std::string line = "mkdir gone && cd gone && rmdir ../gone && exec \"$0\" ";
    for (const std::string command : {"list archive", "scan --target archive", "scan --trace archive"}) {
        const ProcessResult result = runProcess("/bin/sh", {"-c", line + command, TRELLAN_TOOL}, folder.path());
        EXPECT_EQ(result.status, 1) << command;
        EXPECT_EQ(result.output, "") << command;
        EXPECT_EQ(
            result.errors,
            "trellan-update: cannot tell which file the relative path 'archive' means: there is no working folder "
            "(No such file or directory)\n")
            << command;
    }
    EXPECT_EQ(runProcess("/bin/sh", {"-c", line + "version", TRELLAN_TOOL}, folder.path()).output, "1.0\n");
}
