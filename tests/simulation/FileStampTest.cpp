#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "simulation/base/FileStamp.h"
#include "support/TempDir.h"
#include "support/TextFile.h"

using TrellanSimulation::FileStamp;

namespace {

// A file that was written just now.
class FileStamps : public testing::Test {
protected:
    struct stat status() const
    {
        struct stat status = {};
        EXPECT_EQ(::stat(path.c_str(), &status), 0);
        return status;
    }

    // The stamp of somebody who looks at the file when its last change is `age` seconds old.
    FileStamp stampAfter(long age) const { return {status(), status().st_ctim.tv_sec + age}; }

    TempDir folder;
    std::string path = folder.write("file", "old");
};

}  // namespace

TEST_F(FileStamps, RecognizeAnUnchangedFile)
{
    EXPECT_TRUE(stampAfter(3).isThatOf(path));
}

// FAT counts steps of two seconds: a change that is two of its seconds old may have the time stamp of the next one.
TEST_F(FileStamps, AreNotSureOfAFileThatChangedALittleBefore)
{
    EXPECT_FALSE(stampAfter(0).isThatOf(path));
    EXPECT_FALSE(stampAfter(2).isThatOf(path));
    EXPECT_FALSE(stampAfter(-60).isThatOf(path));
}

TEST_F(FileStamps, AreNotSureOfAFileWhoseContentsTimeIsYetToCome)
{
    const timespec times[] = {{0, UTIME_OMIT}, {status().st_ctim.tv_sec + 3600, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    EXPECT_FALSE(stampAfter(60).isThatOf(path));
}

TEST_F(FileStamps, NoticeAnotherFile)
{
    const FileStamp stamp = stampAfter(60);
    const std::string other = folder.write("other", "old");
    EXPECT_FALSE(stamp.isThatOf(other));
    EXPECT_FALSE(stamp.isThatOf(folder.path() / "missing"));
    EXPECT_FALSE(FileStamp().isThatOf(path));
}

TEST_F(FileStamps, NoticeANewSizeAndANewTime)
{
    const FileStamp stamp = stampAfter(60);
    writeText(path, "longer");
    EXPECT_FALSE(stamp.isThatOf(path));
    const FileStamp next = stampAfter(60);
    const timespec times[] = {{0, UTIME_OMIT}, {1, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    EXPECT_FALSE(next.isThatOf(path));
}
