// Records that the tool's process makes: of a target with a flash drive, and onto its own standard output.
#include <gtest/gtest.h>

#include "support/BuildTree.h"
#include "support/Namespaces.h"
#include "support/Process.h"
#include "support/TargetBuilder.h"
#include "support/TempDir.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"

using nlohmann::ordered_json;

namespace {

class RecordedDrive : public testing::Test {
protected:
    ProcessResult tool(const std::vector<std::string>& arguments) const
    {
        return runProcess(TRELLAN_TOOL, arguments, folder.path());
    }

    void writeTarget(const ordered_json& more) const
    {
        ordered_json document =
            target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}},
                          {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", "23.2"}, {"CHECKSUM_CRC32", 1}}),
                           fileElement(2, {{"NAME", "Settings"}, {"LOCATION", "etc/settings"}, {"VALID", 0}})})});
        document.update(more);
        folder.write("target.json", document.dump());
    }

    TempDir folder;
};

}  // namespace

TEST_F(RecordedDrive, HasTheChecksumsOfTheFilesOnIt)
{
    SKIP_WITHOUT_MOUNT();
    writeTarget({{"flashDrive", "drive"}});
    folder.write("drive/etc/settings", "content");
    const TestArchive archive(
        description({fileEntry("firmware.bin", {{"version", "23.2"}, {"checksumCrc32", 7}}),
                     fileEntry("settings", {{"targetPath", "etc/settings"}, {"version", nullptr}}),
                     fileEntry("new", {{"targetPath", "new"}, {"version", nullptr}})}));
    ASSERT_EQ(tool({"record", "--target", "target.json", "--output", "record.json"}).status, 0);
    const ordered_json record = ordered_json::parse(readText(folder.path() / "record.json"));
    const ordered_json& settings = record["tree"]["items"][0]["items"][0]["items"][1]["parameters"];
    EXPECT_EQ(settings["VALID"], 1);
    EXPECT_EQ(settings["CHECKSUM_CRC32"], 4274335913U);
    EXPECT_FALSE(record.contains("flashDrive"));
    for (const char* const command : {"installed", "compare", "update"}) {
        std::vector<std::string> words{command, "--target", "target.json"};
        if (command != std::string("installed")) {
            words.push_back(archive.path());
        }
        if (command == std::string("update")) {
            words.push_back("--dry-run");
        }
        const ProcessResult ofTarget = tool(words);
        words[2] = "record.json";
        const ProcessResult ofRecord = tool(words);
        EXPECT_EQ(ofRecord.output, ofTarget.output);
        EXPECT_EQ(ofRecord.errors, ofTarget.errors);
        EXPECT_EQ(ofRecord.status, ofTarget.status);
    }
}

TEST_F(RecordedDrive, IsWrittenBehindWhatStandardOutputHoldsWhereThatIsTheFile)
{
    writeTarget(ordered_json::object());
    const std::string whole = tool({"record", "--target", "target.json"}).output;
    folder.write("log", "before\n");
    const std::string command = std::string(TRELLAN_TOOL) + " record --target target.json --output /dev/stdout >>log";
    EXPECT_EQ(runProcess("/bin/sh", {"-c", command}, folder.path()).status, 0);
    EXPECT_EQ(readText(folder.path() / "log"), "before\n" + whole);
}
