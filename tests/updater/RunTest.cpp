// run: each command's output and result, and the report of errors.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "Updating.h"
#include "support/Table.h"

using nlohmann::ordered_json;
using namespace ZoNTrellanUpdater;

namespace {

// How often the error "busy" is told in `text`.
unsigned timesBusy(const std::string& text)
{
    unsigned times = 0;
    for (std::size_t at = text.find("busy"); at != std::string::npos; at = text.find("busy", at + 1)) {
        ++times;
    }
    return times;
}

// What a message callback, which has no argument of its own, has found in the trace when "busy" was told.
const SimulatedTarget* watched = nullptr;
std::size_t warningsBeforeTheReport = 0;

void countWarningsBeforeTheReport(const std::string& text)
{
    if (timesBusy(text) != 0) {
        warningsBeforeTheReport = callsOf("sendWarning", watched->trace()).size();
    }
}

const ordered_json busy = {{"errors", {{{"code", 5}, {"text", "busy"}}}}};

class Run : public Updating {
protected:
    Run() { archive.addFile("firmware.bin", "firmware"); }

    // What `command` prints after apply(), which must give `applied`; `result` is what run() returns.
    std::string ran(unsigned command, const std::string& archivePath, unsigned applied = 0)
    {
        ZoCTrellanUpdater updater(optionsFor(command, archivePath));
        MessageCapture capture(updater);
        EXPECT_EQ(updater.apply(), applied);
        capture.clear();
        testing::internal::CaptureStderr();
        result = updater.run();
        standardError = testing::internal::GetCapturedStderr();
        return capture.text();
    }

    std::string ran(unsigned command) { return ran(command, archive.path()); }

    static void addMasterError()
    {
        ZoSErrorRecord record;
        record.code = 5;
        record.text = "busy";
        masterErrors().addError(record);
    }

    TestArchive archive{description({firmwareEntry()})};
    int result = 99;
    std::string standardError;
};

}  // namespace

TEST_F(Run, PrintsTheToolVersion)
{
    EXPECT_EQ(ran(TOOL_VERSION), "1.0\n");
    EXPECT_EQ(result, 1);
}

TEST_F(Run, PrintsTheArchiveVersion)
{
    EXPECT_EQ(ran(ARCHIVE_VERSION), "2.3.4\n");
    EXPECT_EQ(result, 1);
}

TEST_F(Run, PrintsTheArchiveAsATable)
{
    EXPECT_EQ(tableRows(ran(PRINT_ARCHIVE)), (TableRows{{"KR5120", "firmware.bin", "23.3", "1", "1"}}));
    EXPECT_EQ(result, 1);
}

TEST_F(Run, OutputsTheDescription)
{
    EXPECT_EQ(nlohmann::json::parse(ran(OUTPUT_DESCRIPTION)), nlohmann::json(description({firmwareEntry()})));
    EXPECT_EQ(result, 1);
}

TEST_F(Run, PrintsTheInstalledVersions)
{
    const SimulatedTarget device(processorTarget());
    EXPECT_EQ(tableRows(ran(INSTALLED_VERSIONS)), (TableRows{{"Processor board, Firmware", "23.2"}}));
    EXPECT_EQ(result, 1);
}

TEST_F(Run, DoesNothingAfterReadingTheInventory)
{
    const SimulatedTarget device(processorTarget());
    EXPECT_EQ(ran(READ_INVENTORY), "");
    EXPECT_EQ(result, 1);
}

TEST_F(Run, ComparesVersions)
{
    const SimulatedTarget device(processorTarget());
    EXPECT_EQ(tableRows(ran(COMPARE_VERSIONS)),
              (TableRows{{"0", "Processor board, Firmware", "23.2", "23.3", "5 != 1", "N", "0"}}));
    EXPECT_EQ(result, 1);
}

TEST_F(Run, UpdatesTheTarget)
{
    const SimulatedTarget device(processorTarget());
    ran(UPDATE);
    EXPECT_EQ(result, 1);
    EXPECT_EQ(standardError, "");
    EXPECT_TRUE(callsOf("sendWarning", device.trace()).empty());
    const auto started = callsOf("update2", device.trace());
    ASSERT_EQ(started.size(), 1u);
    EXPECT_EQ(started[0].at("path"), archive.path() + "/firmware.bin");
}

TEST_F(Run, DoesNothingForAnUnknownCommand)
{
    EXPECT_EQ(ran(8), "");
    EXPECT_EQ(result, 1);
    EXPECT_EQ(ran(0xFFFFFFFF), "");
    EXPECT_EQ(result, 1);
}

TEST_F(Run, ReportsErrorsAfterTheOutputOfAnyCommand)
{
    const SimulatedTarget device(processorTarget());
    addMasterError();
    const std::string report =
        "\nReported errors:\n"
        "       ERROR 0x5 (reported by Host PC):\n"
        "         busy\n";
    EXPECT_EQ(ran(TOOL_VERSION), "1.0\n" + report);
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(ran(PRINT_ARCHIVE).ends_with(report));
    EXPECT_EQ(result, 0);
    EXPECT_EQ(ran(READ_INVENTORY), report);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(ran(8), report);
    EXPECT_EQ(result, 0);
}

TEST_F(Run, ReportsTheErrorsThatApplyingLeft)
{
    ordered_json document = processorTarget();
    document["script"]["scan"] = ordered_json::array({busy});
    const SimulatedTarget device(document);
    EXPECT_EQ(timesBusy(ran(INSTALLED_VERSIONS)), 1u);
    EXPECT_EQ(result, 0);
}

TEST_F(Run, ReportsWhyTheTargetCouldNotBeLocked)
{
    ordered_json document = processorTarget();
    document["script"]["lock"] = ordered_json::array({busy});
    const SimulatedTarget device(document);
    EXPECT_EQ(timesBusy(ran(UPDATE)), 1u);
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(callsOf("update2", device.trace()).empty());
    EXPECT_TRUE(callsOf("unlock", device.trace()).empty());
}

TEST_F(Run, FailsSilentlyWhenAnUpdateFailedWithoutErrors)
{
    const SimulatedTarget device(processorTarget());
    const TestArchive incomplete(description({firmwareEntry()}));
    EXPECT_THAT(ran(UPDATE, incomplete.path()), testing::Not(testing::HasSubstr("error")));
    EXPECT_EQ(result, 0);
    EXPECT_EQ(masterErrors().getErrorCount(), 0u);
}

TEST_F(Run, TakesNoFileWhoseNameIsTheBeginningOfTheOneThatIsMeant)
{
    const SimulatedTarget device(processorTarget());
    TestArchive other(description({firmwareEntry({{"name", std::string("firmware.bin\0x", 14)}})}));
    other.addFile("firmware.bin", "firmware");
    ran(UPDATE, other.path());
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(callsOf("update2", device.trace()).empty());
}

TEST_F(Run, WritesNoFileWhoseTargetPathGoesOnAfterANul)
{
    const SimulatedTarget device(processorTarget());
    TestArchive other(
        description({firmwareEntry(), fileEntry("app.bin", {{"targetPath", std::string("app.bin\0x", 9)}})}));
    other.addFile("firmware.bin", "firmware");
    other.addFile("app.bin", "application");
    EXPECT_THAT(ran(UPDATE, other.path()),
                testing::HasSubstr("            ERROR: Cannot write /mnt/cn/cfdrive/app.bin. Error code: 22\n"));
    EXPECT_EQ(result, 0);
    EXPECT_EQ(callsOf("update2", device.trace()).size(), 1u);
}

TEST_F(Run, ReportsTheErrorsOfAFailedElementAgain)
{
    ordered_json document = processorTarget();
    document["script"]["elements"]["/ROOT/HCN#1"]["start"] = ordered_json::array({busy});
    const SimulatedTarget device(document);
    EXPECT_EQ(timesBusy(ran(UPDATE)), 2u);
    EXPECT_EQ(result, 0);
}

TEST_F(Run, FailsForErrorsThatDidNotHurtTheUpdate)
{
    ordered_json document = processorTarget();
    document["script"]["unlock"] = ordered_json::array({busy});
    const SimulatedTarget device(document);
    EXPECT_EQ(timesBusy(ran(UPDATE)), 1u);
    EXPECT_EQ(result, 0);
}

TEST_F(Run, UpdatesNothingAfterTheTargetWasFoundUnsupported)
{
    const SimulatedTarget device(target({processorBoard({installedFirmware(), installedFirmware(9)})}));
    ran(UPDATE, archive.path(), 2);
    EXPECT_EQ(result, 1);
    EXPECT_EQ(callsOf("lock", device.trace()).size(), 1u);
    EXPECT_TRUE(callsOf("update2", device.trace()).empty());
    EXPECT_EQ(callsOf("unlock", device.trace()).size(), 1u);
}

TEST_F(Run, GivesTheTextOfEveryCommandToTheCallbackAndNothingToStandardOutput)
{
    archive.addFile("archive.json", description({firmwareEntry(), firmwareEntry({{"id", 2}, {"sequence", 2}}),
                                                 fileEntry("new.bin", {{"featureLevel", 3}})})
                                        .dump());
    for (unsigned command = TOOL_VERSION; command <= UPDATE; ++command) {
        ordered_json document = target({processorBoard({installedFirmware(1), installedFirmware(2)})});
        document["script"]["elements"]["/ROOT/HCN#1"]["polls"] = {busy, busy};
        document["script"]["unlock"] = ordered_json::array({busy});
        const SimulatedTarget device(document);
        ZoTOptions options = optionsFor(command, archive.path());
        options.verbose = true;
        options.noProgress = false;
        ZoCTrellanUpdater updater(options);
        const MessageCapture capture(updater);
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        EXPECT_EQ(updater.apply(), 0u) << command;
        EXPECT_EQ(updater.run(), command == UPDATE ? 0 : 1) << command;
        unsigned state = 0;
        updater.checkRebootSupport(state);
        updater.reboot();
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "") << command;
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << command;
        EXPECT_NE(capture.text(), "") << command;
    }
}

class RunWithUnsupportedEntries : public Run {
protected:
    RunWithUnsupportedEntries() { partlySupported.addFile("firmware.bin", "firmware"); }

    TestArchive partlySupported{
        description({firmwareEntry(), fileEntry("new.bin", {{"featureLevel", 3}}), firmwareEntry()})};
};

TEST_F(RunWithUnsupportedEntries, WarnsAfterTheUpdateAndSucceeds)
{
    const SimulatedTarget device(processorTarget());
    ran(UPDATE, partlySupported.path());
    EXPECT_EQ(result, 1);
    EXPECT_THAT(standardError, testing::StartsWith("WARNING 0x26500001: "));
    const auto warnings = callsOf("sendWarning", device.trace());
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0].at("code"), 0x26500001);
    EXPECT_EQ(warnings[0].at("line"), 268);
    EXPECT_EQ(warnings[0].at("function"), "run");
    EXPECT_EQ(device.trace().back().at("call"), "sendWarning");
}

TEST_F(RunWithUnsupportedEntries, WarnsBeforeErrorsAreReported)
{
    ordered_json document = processorTarget();
    document["script"]["unlock"] = ordered_json::array({busy});
    const SimulatedTarget device(document);
    ZoCTrellanUpdater updater(optionsFor(UPDATE, partlySupported.path()));
    watched = &device;
    warningsBeforeTheReport = 99;
    updater.setMessageCallBack(countWarningsBeforeTheReport);
    ASSERT_EQ(updater.apply(), 0u);
    testing::internal::CaptureStderr();
    EXPECT_EQ(updater.run(), 0);
    testing::internal::GetCapturedStderr();
    watched = nullptr;
    EXPECT_EQ(warningsBeforeTheReport, 1u);
    EXPECT_EQ(callsOf("sendWarning", device.trace()).size(), 1u);
}

TEST_F(RunWithUnsupportedEntries, DoesNotWarnAfterAFailedUpdate)
{
    ordered_json document = processorTarget();
    document["script"]["lock"] = ordered_json::array({busy});
    const SimulatedTarget device(document);
    EXPECT_EQ(timesBusy(ran(UPDATE, partlySupported.path())), 1u);
    EXPECT_TRUE(callsOf("sendWarning", device.trace()).empty());
    EXPECT_EQ(standardError, "");
}

TEST_F(RunWithUnsupportedEntries, DoesNotWarnForOtherCommands)
{
    const SimulatedTarget device(processorTarget());
    ran(COMPARE_VERSIONS, partlySupported.path());
    EXPECT_EQ(result, 1);
    EXPECT_TRUE(callsOf("sendWarning", device.trace()).empty());
}
