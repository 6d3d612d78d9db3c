// run: each command's output and result, and the report of errors.
#include <gtest/gtest.h>

#include <string>

#include "Updating.h"
#include "support/MessageCapture.h"

using nlohmann::ordered_json;
using namespace ZoNTrellanUpdater;

namespace {

const std::string installedTable =
    "Update element            | Version\n"
    "-----------------------------------\n"
    "Processor board, Firmware | 23.2   \n";

const std::string archiveTable =
    "BoardType | File         | Version | Checksum | Id/TargetPath\n"
    "-------------------------------------------------------------\n"
    "KR5120    | firmware.bin | 23.3    | 1        | 1            \n";

const std::string comparisonTable =
    "No. | Update element            | Installed | Available | Checksums | Up-to-date | Phase\n"
    "----------------------------------------------------------------------------------------\n"
    "0   | Processor board, Firmware | 23.2      | 23.3      | 5 != 1    | N          | 0    \n";

const std::string archiveJson = R"({
    "files": [
        {
            "boardType": "KR5120",
            "checksumCrc32": 1,
            "id": 1,
            "name": "firmware.bin",
            "sequence": 1,
            "version": "23.3"
        }
    ],
    "info": {
        "archiveName": "Test archive",
        "archiveVersion": "2.3.4",
        "formatVersion": "1.0",
        "productName": "Test product"
    }
}
)";

const std::string updating =
    "\nUpdating:\n"
    "        Processor board, Firmware                       \n";

const std::string updated = updating +
                            "[OK]\n"
                            "\nResults:\n"
                            "\n    Update completed successfully!\n";

const std::string additionalElements =
    "The firmware archive contains additional elements, which are not supported by the previous firmware version. "
    "Reboot the device to activate the new firmware. Then repeat the update to check if additional elements need to be "
    "updated.";

const std::string busyReport =
    "\nReported errors:\n"
    "       ERROR 0x5 (reported by Host PC):\n"
    "         busy\n";

// What a message callback, which has no argument of its own, has found in the trace when errors began to be reported.
const SimulatedTarget* watched = nullptr;
std::size_t warningsBeforeTheReport = 0;

void countWarningsBeforeTheReport(const std::string& text)
{
    if (text == "\nReported errors:\n") {
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
    EXPECT_EQ(ran(PRINT_ARCHIVE), archiveTable);
    EXPECT_EQ(result, 1);
}

TEST_F(Run, OutputsTheDescription)
{
    EXPECT_EQ(ran(OUTPUT_DESCRIPTION), archiveJson);
    EXPECT_EQ(result, 1);
}

TEST_F(Run, PrintsTheInstalledVersions)
{
    const SimulatedTarget device(processorTarget());
    EXPECT_EQ(ran(INSTALLED_VERSIONS), installedTable);
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
    EXPECT_EQ(ran(COMPARE_VERSIONS), comparisonTable);
    EXPECT_EQ(result, 1);
}

TEST_F(Run, UpdatesTheTarget)
{
    const SimulatedTarget device(processorTarget());
    EXPECT_EQ(ran(UPDATE), updated);
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
    EXPECT_EQ(ran(TOOL_VERSION), "1.0\n" + busyReport);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(ran(PRINT_ARCHIVE), archiveTable + busyReport);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(ran(READ_INVENTORY), busyReport);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(ran(8), busyReport);
    EXPECT_EQ(result, 0);
}

TEST_F(Run, ReportsTheErrorsThatApplyingLeft)
{
    ordered_json document = processorTarget();
    document["script"]["scan"] = ordered_json::array({busy});
    const SimulatedTarget device(document);
    EXPECT_EQ(ran(INSTALLED_VERSIONS), installedTable + busyReport);
    EXPECT_EQ(result, 0);
}

TEST_F(Run, ReportsWhyTheTargetCouldNotBeLocked)
{
    ordered_json document = processorTarget();
    document["script"]["lock"] = ordered_json::array({busy});
    const SimulatedTarget device(document);
    EXPECT_EQ(ran(UPDATE), busyReport);
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(callsOf("update2", device.trace()).empty());
    EXPECT_TRUE(callsOf("unlock", device.trace()).empty());
}

TEST_F(Run, FailsSilentlyWhenAnUpdateFailedWithoutErrors)
{
    const SimulatedTarget device(processorTarget());
    const TestArchive incomplete(description({firmwareEntry()}));
    EXPECT_EQ(ran(UPDATE, incomplete.path()),
              "\nProcessor board, Firmware cannot be updated. Update file firmware.bin not found!\n"
              "\nResults:\n"
              "\n    Update incomplete due to missing files in the source folder!\n");
    EXPECT_EQ(result, 0);
}

TEST_F(Run, TakesNoFileWhoseNameIsTheBeginningOfTheOneThatIsMeant)
{
    const SimulatedTarget device(processorTarget());
    TestArchive other(description({firmwareEntry({{"name", std::string("firmware.bin\0x", 14)}})}));
    other.addFile("firmware.bin", "firmware");
    EXPECT_EQ(ran(UPDATE, other.path()),
              "\nProcessor board, Firmware cannot be updated. Update file firmware.bin not found!\n"
              "\nResults:\n"
              "\n    Update incomplete due to missing files in the source folder!\n");
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
    EXPECT_EQ(ran(UPDATE, other.path()),
              "\nUpdating:\n"
              "        Processor board, Firmware                       \n"
              "        Processor board, Updatable file                 [ERROR]\n"
              "            ERROR: Cannot write /mnt/cn/cfdrive/app.bin. Error code: 22\n"
              "[ERROR]\n"
              "\nResults:\n"
              "    ERROR: Processor board, Updatable file:\n"
              "\n    Update failed!\n");
    EXPECT_EQ(result, 0);
}

TEST_F(Run, ReportsTheErrorsOfAFailedElementAgain)
{
    ordered_json document = processorTarget();
    document["script"]["elements"]["/ROOT/HCN#1"]["start"] = ordered_json::array({busy});
    const SimulatedTarget device(document);
    EXPECT_EQ(ran(UPDATE),
              "\nUpdating:\n"
              "        Processor board, Firmware                       [ERROR]\n"
              "[ERROR]\n"
              "\nResults:\n"
              "    ERROR: Processor board, Firmware:\n"
              "       ERROR 0x5 (reported by Host PC):\n"
              "         busy\n"
              "\n    Update failed!\n" +
                  busyReport);
    EXPECT_EQ(result, 0);
}

TEST_F(Run, FailsForErrorsThatDidNotHurtTheUpdate)
{
    ordered_json document = processorTarget();
    document["script"]["unlock"] = ordered_json::array({busy});
    const SimulatedTarget device(document);
    EXPECT_EQ(ran(UPDATE), updated + busyReport);
    EXPECT_EQ(result, 0);
}

TEST_F(Run, UpdatesNothingAfterTheTargetWasFoundUnsupported)
{
    const SimulatedTarget device(target({processorBoard({installedFirmware(), installedFirmware(9)})}));
    EXPECT_EQ(ran(UPDATE, archive.path(), 2), "\nResults:\n\n    Update completed successfully!\n");
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
    EXPECT_EQ(ran(UPDATE, partlySupported.path()), updated);
    EXPECT_EQ(result, 1);
    EXPECT_EQ(standardError, "WARNING 0x26500001: " + additionalElements + "\n");
    const auto warnings = callsOf("sendWarning", device.trace());
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0].at("code"), 0x26500001);
    EXPECT_EQ(warnings[0].at("line"), 268);
    EXPECT_EQ(warnings[0].at("function"), "run");
    EXPECT_EQ(warnings[0].at("text"), additionalElements);
    EXPECT_EQ(device.trace().back().at("call"), "sendWarning");
}

TEST_F(RunWithUnsupportedEntries, WarnsAlsoWhenErrorsAreReportedAfterTheUpdate)
{
    ordered_json document = processorTarget();
    document["script"]["unlock"] = ordered_json::array({busy});
    const SimulatedTarget device(document);
    EXPECT_EQ(ran(UPDATE, partlySupported.path()), updated + busyReport);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(callsOf("sendWarning", device.trace()).size(), 1u);
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
}

TEST_F(RunWithUnsupportedEntries, DoesNotWarnAfterAFailedUpdate)
{
    ordered_json document = processorTarget();
    document["script"]["lock"] = ordered_json::array({busy});
    const SimulatedTarget device(document);
    EXPECT_EQ(ran(UPDATE, partlySupported.path()), busyReport);
    EXPECT_TRUE(callsOf("sendWarning", device.trace()).empty());
    EXPECT_EQ(standardError, "");
}

TEST_F(RunWithUnsupportedEntries, DoesNotWarnForOtherCommands)
{
    const SimulatedTarget device(processorTarget());
    EXPECT_EQ(ran(COMPARE_VERSIONS, partlySupported.path()), comparisonTable);
    EXPECT_TRUE(callsOf("sendWarning", device.trace()).empty());
}
