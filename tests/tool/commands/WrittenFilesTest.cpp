// Files that options name to be written, and that the command reads.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"
#include "support/UpdateFiles.h"
#include "tool/CommandLine.h"

namespace {

class WrittenFiles : public testing::Test {
protected:
    WrittenFiles() { archive.addFile("a.bin", UpdateFiles::bitstreamFile(815)); }

    std::string descriptionPath() const { return archive.path() + "/archive.json"; }
    std::string updateFile() const { return archive.path() + "/a.bin"; }

    // Runs the words, which are to be refused for this reason, and looks that `file` stays as it is.
    static void expectRefused(const std::vector<std::string>& words, const std::string& reason, const std::string& file)
    {
        const std::string before = readText(file);
        const RunResult result = ran(words);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.out, "");
        const std::string expected =
            "trellan-update: " + reason + "\ntrellan-update: see trellan-update help " + words.front() + "\n";
        EXPECT_TRUE(result.err.ends_with(expected)) << result.err;
        EXPECT_EQ(readText(file), before);
    }

    TestArchive archive{description({fileEntry("a.bin")})};
    const SimulatedTarget device{target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}}, {})})};
    const std::string targetFile = device.path().string();
    const TempDir folder;
};

}  // namespace

TEST_F(WrittenFiles, AreNoneOfTheTargetsOfCoverage)
{
    const std::vector<std::string> words = {"coverage", archive.path(), device.path().parent_path().string(), "--html"};
    const auto with = [&](const std::string& page) {
        std::vector<std::string> all = words;
        all.push_back(page);
        return all;
    };
    expectRefused(with(targetFile), "--html: " + targetFile + " is a target file", targetFile);
    const std::string other = folder.path() / "other";
    std::filesystem::create_symlink(targetFile, other);
    expectRefused(with(other), "--html: " + other + " is a target file", targetFile);
    std::filesystem::remove(other);
    std::filesystem::create_hard_link(targetFile, other);
    expectRefused(with(other), "--html: " + other + " is a target file", targetFile);
}

TEST_F(WrittenFiles, AreNotOfTheArchiveThatCoverageReads)
{
    expectRefused({"coverage", archive.path(), targetFile, "--html", descriptionPath()},
                  "--html: " + descriptionPath() + " is the archive's description", descriptionPath());
    expectRefused({"coverage", archive.path(), targetFile, "--html", updateFile()},
                  "--html: " + updateFile() + " is a file of the archive", updateFile());
}

TEST_F(WrittenFiles, AreNotTheTargetThatIsRecorded)
{
    expectRefused({"record", "--output", targetFile}, "--output: " + targetFile + " is the target file", targetFile);
    expectRefused({"record", "--target", targetFile, "--output", targetFile},
                  "--output: " + targetFile + " is the target file", targetFile);
}

TEST_F(WrittenFiles, AreNoFilesOfTheArchiveThatIsDescribedButItsDescription)
{
    expectRefused({"describe", archive.path(), "--output", updateFile()},
                  "--output: " + updateFile() + " is a file of the archive", updateFile());
    EXPECT_EQ(ran({"describe", archive.path(), "--output", descriptionPath()}).status, 0);
}

TEST_F(WrittenFiles, AreNotTracedInto)
{
    expectRefused({"compare", archive.path(), "--trace", targetFile}, "--trace: " + targetFile + " is the target file",
                  targetFile);
    expectRefused({"describe", archive.path(), "--trace", descriptionPath()},
                  "--trace: " + descriptionPath() + " is the archive's description", descriptionPath());
}

TEST_F(WrittenFiles, AreNotTracedIntoWhereTheyLieInTheArchivesFolder)
{
    const std::string reason = " is in the folder of the archive, and no trace";
    expectRefused({"update", archive.path(), "--trace", updateFile()}, "--trace: " + updateFile() + reason,
                  updateFile());
    const std::string other = folder.path() / "other";
    std::filesystem::create_symlink(updateFile(), other);
    expectRefused({"describe", archive.path(), "--trace", other}, "--trace: " + other + reason, updateFile());
    const std::string trace = archive.path() + "/trace";
    writeText(trace, "{\"call\":\"scan\"}\n");
    EXPECT_EQ(ran({"describe", archive.path(), "--trace", trace}).status, 0);
}

// So that no update has installed what the trace has written.
TEST_F(WrittenFiles, AreNotTracedIntoWhereTheArchiveNamesThem)
{
    const std::string elsewhere = folder.path() / "elsewhere.bin";
    std::filesystem::rename(updateFile(), elsewhere);
    std::filesystem::create_symlink(elsewhere, updateFile());
    const RunResult result = ran({"update", archive.path(), "--trace", elsewhere});
    EXPECT_EQ(result.status, 2);
    EXPECT_TRUE(result.err.starts_with("trellan-update: --trace: " + elsewhere + " is a file of the archive\n"))
        << result.err;
}

TEST_F(WrittenFiles, MayBeAnyOthers)
{
    const std::string page = folder.path() / "page.html";
    writeText(page, "earlier");
    EXPECT_EQ(ran({"coverage", archive.path(), targetFile, "--html", page}).status, 0);
    EXPECT_TRUE(readText(page).starts_with("<!DOCTYPE html>"));
    EXPECT_EQ(ran({"record", "--output", page}).status, 0);
    EXPECT_TRUE(readText(page).starts_with("{\n  \"tree\""));
}
