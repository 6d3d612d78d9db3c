// The command that prints an archive's description, into a file where that is asked for.
#include <gtest/gtest.h>

#include <filesystem>

#include "libZoErrorHandling/ZoCErrorManager.h"
#include "support/BuildTree.h"
#include "support/Process.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"
#include "support/UpdateFiles.h"
#include "tool/CommandLine.h"

using nlohmann::ordered_json;

namespace {

class DescribeCommand : public testing::Test {
protected:
    DescribeCommand() : archive(description({without(fileEntry("a.bin"), "checksumCrc32")}))
    {
        archive.addFile("a.bin", UpdateFiles::bitstreamFile(815));
    }

    std::string descriptionPath() const { return archive.path() + "/archive.json"; }

    TestArchive archive;
    TempDir folder;
};

// What describes the archive once its file's checksum is known.
constexpr const char* completed = R"({
    "files": [
        {
            "boardType": "KR5120",
            "checksumCrc32": 815,
            "id": 1,
            "name": "a.bin",
            "sequence": 1
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

}  // namespace

TEST_F(DescribeCommand, WritesTheDescriptionIntoAFileAndNothingElseAnywhere)
{
    const std::string file = folder.path() / "description.json";
    const RunResult result = ran({"describe", archive.path(), "--output", file});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(readText(file), completed);
}

TEST_F(DescribeCommand, DescribesAnArchiveInPlace)
{
    EXPECT_EQ(ran({"describe", archive.path(), "--output", descriptionPath()}).status, 0);
    EXPECT_EQ(readText(descriptionPath()), completed);
    std::filesystem::remove(archive.path() + "/a.bin");
    EXPECT_EQ(ran({"describe", archive.path(), "--output", descriptionPath()}).status, 0)
        << "no file is to be opened any more";
    EXPECT_EQ(readText(descriptionPath()), completed);
}

TEST_F(DescribeCommand, LeavesTheFileAsItIsWhereTheArchiveCannotBeRead)
{
    std::filesystem::remove(archive.path() + "/a.bin");
    const std::string before = readText(descriptionPath());
    const RunResult result = ran({"describe", archive.path(), "--output", descriptionPath()});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "ERROR: Cannot read checksum from update file. '" + archive.path() +
                              "/a.bin' not found.\nERROR: Failed to read firmware archive.\n");
    EXPECT_EQ(readText(descriptionPath()), before);
}

TEST_F(DescribeCommand, LeavesTheFileAsItIsWhereErrorsWereReported)
{
    ZoSErrorRecord record;
    record.code = 5;
    record.text = "no power";
    ZoCErrorListPool& errors = ZoCErrorManager::getSingleton()->getMasterErrorList();
    errors.addError(record);
    const std::string file = folder.write("description.json", "earlier").string();
    const RunResult result = ran({"describe", archive.path(), "--output", file});
    errors.clear();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, completed + std::string("\nReported errors:\n       ERROR 0x5 (reported by Host PC):\n"
                                                  "         no power\n"));
    EXPECT_EQ(readText(file), "earlier");
}

TEST_F(DescribeCommand, SaysOnStandardErrorWhatItPassesOver)
{
    archive.addFile("newer.json", description({{{"featureLevel", 3}}}).dump());
    const std::string file = folder.path() / "description.json";
    const RunResult result = ran({"describe", archive.path(), "--description", "newer.json", "--output", file});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "WARNING: File entry 0 is not supported. Ignoring this entry.\n");
    EXPECT_EQ(ordered_json::parse(readText(file))["files"], ordered_json::array());
}

TEST_F(DescribeCommand, NamesAFileThatCannotBeWritten)
{
    const std::string file = folder.path() / "nothing" / "description.json";
    const RunResult result = ran({"describe", archive.path(), "--output", file});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with("trellan-update: " + file)) << result.err;
}

TEST_F(DescribeCommand, WritesToStandardOutputToo)
{
    const ProcessResult result =
        runProcess(TRELLAN_TOOL, {"describe", archive.path(), "--output", "/dev/stdout"}, folder.path());
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, completed);
    EXPECT_EQ(result.errors, "");
}

TEST_F(DescribeCommand, WritesTheFileAlsoWhereItIsToBeQuiet)
{
    const std::string file = folder.path() / "description.json";
    EXPECT_EQ(ran({"describe", archive.path(), "--quiet", "--output", file}).status, 0);
    EXPECT_EQ(readText(file), completed);
    EXPECT_EQ(ran({"describe", archive.path(), "--quiet"}).out, "");
}

TEST_F(DescribeCommand, AloneOfThoseThatShowAnArchiveTakesAFile)
{
    EXPECT_EQ(ran({"list", archive.path(), "--output", "x"}).err,
              "trellan-update: --output does not go with list\ntrellan-update: see trellan-update help list\n");
}
