// An archive on the flash drive itself: what is written there must not be one of its files.
#include <filesystem>

#include "operation/FlashDriveFixture.h"

using ::testing::ElementsAre;

namespace {

// An archive of two files on the drive.
class ArchiveOnDrive : public FlashDriveFixture, public ::testing::WithParamInterface<bool> {
protected:
    void SetUp() override
    {
        FlashDriveFixture::SetUp();
        if (IsSkipped()) {
            return;
        }
        prepareDrive();
        put(drive() / "archive/first.bin", "content of the first");
        put(drive() / "archive/second.bin", "content of the second");
    }

    // Writes the first one. The archive is named by its place on the drive, or by that of the folder that is the drive.
    bool writeFirst(const std::string& location)
    {
        ZoNTrellanUpdater::ZoTOptions other = options;
        const std::string folder = GetParam() ? drive() / "archive" : "/mnt/cn/cfdrive/archive";
        other.archivePath = folder.c_str();
        OpenUpdater otherUpdater(other);
        auto& files = otherUpdater.getArchive().getUpdateFileList();
        files.emplace_back().name = "first.bin";
        files.emplace_back().name = "second.bin";
        const ZoNUpdateArchive::ZoSUpdateFile first = files.front();
        return otherUpdater.getOperation().writeFileSystemElement(first, location.c_str(), messages);
    }
};

}  // namespace

TEST_P(ArchiveOnDrive, LosesNoFileToAnotherOfItsFiles)
{
    EXPECT_FALSE(writeFirst("archive/second.bin"));

    EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/archive/second.bin.tmp. Error code: 17\n"));
    EXPECT_EQ(readText(drive() / "archive/second.bin"), "content of the second");
}

TEST_P(ArchiveOnDrive, LosesNoFileToWhichOneOfItsFilesLinks)
{
    std::filesystem::rename(drive() / "archive/second.bin", drive() / "elsewhere");
    std::filesystem::create_symlink("../elsewhere", drive() / "archive/second.bin");

    EXPECT_FALSE(writeFirst("elsewhere"));
    EXPECT_FALSE(writeFirst("archive/second.bin"));

    EXPECT_EQ(readText(drive() / "elsewhere"), "content of the second");
    EXPECT_EQ(readText(drive() / "archive/second.bin"), "content of the second");
}

TEST_P(ArchiveOnDrive, MayHaveAFileWrittenToItsOwnPlace)
{
    EXPECT_TRUE(writeFirst("archive/first.bin"));

    EXPECT_THAT(onDrive(), ElementsAre("archive/", "archive/first.bin", "archive/second.bin"));
    EXPECT_EQ(readText(drive() / "archive/first.bin"), "content of the first");
}

TEST_P(ArchiveOnDrive, KeepsAFileWhoseSecondNameIsReplaced)
{
    std::filesystem::create_hard_link(drive() / "archive/second.bin", drive() / "installed");

    EXPECT_TRUE(writeFirst("installed"));

    EXPECT_EQ(readText(drive() / "installed"), "content of the first");
    EXPECT_EQ(readText(drive() / "archive/second.bin"), "content of the second");
}

INSTANTIATE_TEST_SUITE_P(All, ArchiveOnDrive, ::testing::Bool());
