// The command that begins an archive for a target.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "support/BuildTree.h"
#include "support/FileSizeLimit.h"
#include "support/Process.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TextFile.h"
#include "support/UpdateFiles.h"
#include "tool/CommandLine.h"
#include "tool/JsonDocument.h"

using nlohmann::ordered_json;
using testing::ElementsAre;

namespace {

// One element on each board; that of the module is a customer's own.
ordered_json threeBoards()
{
    return target({board(
        "HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/NAME", "Processor board"}},
        {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", "1.0"}})},
        {board("CN", {{"PRODUCT/BOARD_TYPE", "CN7210"}},
               {updateElement(2, {{"NAME", "CnFirmware"}, {"CHECKSUM_CRC32", 5}})}),
         board(
             "IOMODULE", {{"PRODUCT/BOARD_TYPE", "AI8100"}, {"PRODUCT/VARIANT", "24 V"}},
             {updateElement(
                 3, {{"NAME", "Calibration"}, {"CUSTOM", 1}, {"CHECKSUM_CRC32", 6}, {"HW_COMPATIBILITY_ID", 4}})})})});
}

class NewCommand : public testing::Test {
protected:
    std::string archive() const { return (folder.path() / "new" / "archive").string(); }

    RunResult run(std::vector<std::string> words = {}) const
    {
        words.insert(words.begin(), {"new", archive()});
        return ran(words);
    }

    std::vector<std::string> describedNames(const std::string& description = "archive.json") const
    {
        std::vector<std::string> names;
        const ordered_json written = ordered_json::parse(readText(archive() + "/" + description));
        for (const ordered_json& entry : written["files"]) {
            names.push_back(entry["name"]);
        }
        return names;
    }

    const SimulatedTarget device{threeBoards()};
    TempDir folder;
};

}  // namespace

TEST_F(NewCommand, NamesTheArchiveAfterItsFolderHoweverThatIsSpelled)
{
    for (const std::string spelling : {"/", "//", "/.", "/./", "/x/.."}) {
        std::filesystem::remove_all(archive());
        EXPECT_EQ(ran({"new", archive() + spelling}).status, 0) << spelling;
        const ordered_json written = ordered_json::parse(readText(archive() + "/archive.json"));
        EXPECT_EQ(written["info"]["archiveName"], "archive") << spelling;
    }
}

TEST_F(NewCommand, WritesADescriptionWithAnEntryForEachElement)
{
    const RunResult result = run();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(
        result.out,
        "archive.json: 3 entries for 3 elements. Put the update files into the archive's folder under the names that\n"
        "it gives, state their versions and checksums (trellan-update inspect tells them), and check the archive.\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(readText(archive() + "/archive.json"), R"({
  "info": {
    "formatVersion": "1.0",
    "archiveVersion": "1.0",
    "productName": "Processor board",
    "archiveName": "archive"
  },
  "files": [
    {
      "name": "AI8100-Calibration.bin",
      "sequence": 10,
      "version": null,
      "checksumCrc32": 0,
      "boardType": "AI8100",
      "boardVariant": "24 V",
      "boardId": 0,
      "hwCompatibilityId": 4,
      "swCompatibilityId": 0,
      "id": 3
    },
    {
      "name": "CN7210-CnFirmware.bin",
      "sequence": 20,
      "version": null,
      "checksumCrc32": 0,
      "boardType": "CN7210",
      "boardVariant": null,
      "boardId": 0,
      "hwCompatibilityId": 0,
      "swCompatibilityId": 0,
      "id": 2
    },
    {
      "name": "KR5120-UserFirmware.bin",
      "sequence": 30,
      "version": "1.0",
      "checksumCrc32": 0,
      "boardType": "KR5120",
      "boardVariant": null,
      "boardId": 0,
      "hwCompatibilityId": 0,
      "swCompatibilityId": 0,
      "id": 1
    }
  ]
}
)");
}

TEST_F(NewCommand, WritesWhatTheLibraryReads)
{
    ASSERT_EQ(run().status, 0);
    EXPECT_EQ(ran({"archive-version", archive()}).out, "1.0.0\n");
    EXPECT_EQ(ran({"list", archive()}).status, 0);
    EXPECT_EQ(ran({"compare", archive()}).status, 0);
}

TEST_F(NewCommand, WritesWhatTheCheckFindsNothingWrongWithButMissingFiles)
{
    ASSERT_EQ(run().status, 0);
    const ordered_json document = conformingDocument(ran({"check", "--json", archive()}).out);
    EXPECT_EQ(document["findings"].size(), 3u);
    for (const ordered_json& finding : document["findings"]) {
        EXPECT_EQ(finding["rule"], "missing-file");
    }
}

TEST_F(NewCommand, BeginsAnArchiveThatUpdatesTheTargetOnceItHasItsFiles)
{
    ASSERT_EQ(run().status, 0);
    UpdateFiles::BinaryHeader header;
    header.checksum = 77;
    header.version = {2, 0, 0};
    writeText(archive() + "/KR5120-UserFirmware.bin", UpdateFiles::binaryFile(header, 1200));
    writeText(archive() + "/CN7210-CnFirmware.bin", UpdateFiles::bitstreamFile(88));
    writeText(archive() + "/AI8100-Calibration.bin", "123456789");
    const std::string path = archive() + "/archive.json";
    ordered_json edited = ordered_json::parse(readText(path));
    edited["files"][0]["checksumCrc32"] = 0xCBF43926;  // as a plain file has no header that could state it
    edited["files"][1].erase("checksumCrc32");
    edited["files"][2].erase("checksumCrc32");
    edited["files"][2]["version"] = "2.0";
    writeText(path, edited.dump());

    EXPECT_EQ(ran({"describe", archive(), "--output", path}).status, 0);
    const RunResult checked = ran({"check", "--strict", archive()});
    EXPECT_EQ(checked.status, 0) << checked.out;
    const RunResult updated = ran({"update", "--verify", "--json", archive()});
    EXPECT_EQ(updated.status, 0) << updated.err;
    const ordered_json document = conformingDocument(updated.out);
    ASSERT_EQ(document["elements"].size(), 3u);
    for (const ordered_json& element : document["elements"]) {
        EXPECT_EQ(element["state"], "updated") << element;
        EXPECT_EQ(element["verified"], true);
    }
}

TEST_F(NewCommand, LeavesADescriptionThatIsThereAlone)
{
    std::filesystem::create_directories(archive());
    writeText(archive() + "/archive.json", "mine");
    const RunResult result = run();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "trellan-update: " + archive() + "/archive.json is there already, and is left as it is\n");
    EXPECT_EQ(readText(archive() + "/archive.json"), "mine");
    EXPECT_TRUE(device.trace().empty()) << "the target need not be read for that";
}

TEST_F(NewCommand, LeavesALinkToNothingAlone)
{
    std::filesystem::create_directories(archive());
    std::filesystem::create_symlink("nothing", archive() + "/archive.json");
    EXPECT_EQ(run().status, 1);
    EXPECT_FALSE(std::filesystem::exists(archive() + "/nothing"));
}

TEST_F(NewCommand, TakesAFolderThatIsThereAndAnotherDescriptionsName)
{
    std::filesystem::create_directories(archive());
    writeText(archive() + "/archive.json", "mine");
    const RunResult result = run({"--description", "other.json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.out.starts_with("other.json: 3 entries ")) << result.out;
    EXPECT_EQ(describedNames("other.json").size(), 3u);
    EXPECT_EQ(readText(archive() + "/archive.json"), "mine");
}

TEST_F(NewCommand, DescribesTheElementsThatTheFiltersSelect)
{
    const RunResult result = run({"--board-types", "CN7210,X"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.out.starts_with("archive.json: 1 entry for 1 element.")) << result.out;
    EXPECT_EQ(result.err, "trellan-update: nothing has board type X; there are KR5120, CN7210, AI8100\n");
    EXPECT_THAT(describedNames(), ElementsAre("CN7210-CnFirmware.bin"));
}

TEST_F(NewCommand, LeavesOutWhatIsExcluded)
{
    EXPECT_EQ(run({"--exclude", "1", "--disable-custom-elements"}).status, 0);
    EXPECT_THAT(describedNames(), ElementsAre("KR5120-UserFirmware.bin"));
}

TEST_F(NewCommand, WritesNothingWhereNothingIsSelected)
{
    const RunResult result = run({"--exclude", "0", "--exclude", "1", "--exclude", "2"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "trellan-update: there is no element that an archive could be for; nothing was written\n");
    EXPECT_FALSE(std::filesystem::exists(archive()));
}

TEST_F(NewCommand, EndsWith3AndWritesNothingWhereTheTargetCannotBeRead)
{
    const ProcessResult result =
        runProcess(TRELLAN_TOOL, {"new", archive(), "--target", "nothing.json"}, folder.path());
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.output, "");
    EXPECT_NE(result.errors.find("ERROR: Cannot read target device information.\n"), std::string::npos)
        << result.errors;
    EXPECT_FALSE(std::filesystem::exists(archive()));
}

TEST_F(NewCommand, NamesADescriptionThatCannotBeWritten)
{
    folder.write("new", "a file");
    const RunResult result = run();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "trellan-update: " + archive() + "/archive.json cannot be written: Not a directory\n");
}

TEST_F(NewCommand, WritesItsDescriptionIntoTheArchiveOnly)
{
    std::filesystem::create_directories(archive() + "/sub");
    std::filesystem::create_directory_symlink("..", archive() + "/up");
    for (const std::string name : {"../x.json", "sub/../../x.json", "..", "", ".", "sub/"}) {
        const RunResult result = run({"--description", name});
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.err,
                  "trellan-update: --description: '" + name +
                      "' is no name of a file in the archive\ntrellan-update: see trellan-update help new\n");
    }
    EXPECT_EQ(run({"--description", "up/x.json"}).err,
              "trellan-update: --description: 'up/x.json' leads out of the archive\n"
              "trellan-update: see trellan-update help new\n");
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "new" / "x.json"));
    EXPECT_EQ(run({"--description", "sub/x.json"}).status, 0);
    EXPECT_EQ(describedNames("sub/x.json").size(), 3u);
}

TEST_F(NewCommand, NamesAnArchiveThatIsALinkToNothing)
{
    std::filesystem::create_directories(folder.path() / "new");
    std::filesystem::create_symlink("nothing", archive());
    const RunResult result = run();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "trellan-update: " + archive() + " is a link to nothing\n");
    EXPECT_FALSE(std::filesystem::exists(archive()));
}

TEST_F(NewCommand, LeavesNoFolderBehindWhereTheDescriptionDoesNotFit)
{
    const FileSizeLimit limit(500);
    const RunResult result = run();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "trellan-update: " + archive() + "/archive.json cannot be written: File too large\n");
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "new"));
}

TEST_F(NewCommand, HasNoDocument)
{
    EXPECT_EQ(run({"--json"}).status, 2);
    EXPECT_FALSE(std::filesystem::exists(archive()));
}

TEST_F(NewCommand, PrintsNothingWhereItIsToBeQuiet)
{
    const RunResult result = run({"--quiet"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(describedNames().size(), 3u);
}
