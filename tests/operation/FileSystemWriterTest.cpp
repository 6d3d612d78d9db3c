// Writing update files to the flash drive.
#include <sys/stat.h>

#include "operation/FlashDriveFixture.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

// Sets the mask of the modes of new files for the time of a scope.
class FileModeMask {
public:
    explicit FileModeMask(mode_t mask) : before(::umask(mask)) {}
    ~FileModeMask() { ::umask(before); }
    FileModeMask(const FileModeMask&) = delete;
    FileModeMask& operator=(const FileModeMask&) = delete;

private:
    mode_t before;
};

}  // namespace

using FileSystemWriter = FlashDriveFixture;

TEST_F(FileSystemWriter, MakesTheFoldersOneByOneAndWritesTheFile)
{
    options.verbose = true;
    prepareDrive();

    EXPECT_TRUE(write("c.bin", "a/b/c.bin"));

    EXPECT_THAT(messages,
                ElementsAre("Directory /mnt/cn/cfdrive/a created.\n", "Directory /mnt/cn/cfdrive/a/b created.\n",
                            "Successfully written /mnt/cn/cfdrive/a/b/c.bin.\n"));
    EXPECT_THAT(onDrive(), ElementsAre("a/", "a/b/", "a/b/c.bin"));
    EXPECT_EQ(readText(drive() / "a/b/c.bin"), "content of c");
    EXPECT_THAT(journal->events(), IsEmpty());
}

TEST_F(FileSystemWriter, TellsNothingOfASuccessOtherwise)
{
    prepareDrive();

    EXPECT_TRUE(write("c.bin", "a/c.bin"));

    EXPECT_THAT(messages, IsEmpty());
    EXPECT_THAT(onDrive(), ElementsAre("a/", "a/c.bin"));
}

TEST_F(FileSystemWriter, DoesNotMentionFoldersThatAreThere)
{
    options.verbose = true;
    prepareDrive();
    fs::create_directories(drive() / "a");

    EXPECT_TRUE(write("c.bin", "a/b/c.bin"));

    EXPECT_THAT(messages, ElementsAre("Directory /mnt/cn/cfdrive/a/b created.\n",
                                      "Successfully written /mnt/cn/cfdrive/a/b/c.bin.\n"));
}

TEST_F(FileSystemWriter, WritesIntoTheDriveItselfWithoutMakingAFolder)
{
    options.verbose = true;
    prepareDrive();

    EXPECT_TRUE(write("c.bin", "c.bin"));

    EXPECT_THAT(messages, ElementsAre("Successfully written /mnt/cn/cfdrive/c.bin.\n"));
    EXPECT_THAT(onDrive(), ElementsAre("c.bin"));
}

TEST_F(FileSystemWriter, MakesFoldersThatEverybodyMayUse)
{
    prepareDrive();
    {
        const FileModeMask none(0);
        EXPECT_TRUE(write("c.bin", "a/b/c.bin"));
    }

    EXPECT_EQ(fs::status(drive() / "a").permissions() & fs::perms::all, fs::perms::all);
    EXPECT_EQ(fs::status(drive() / "a/b").permissions() & fs::perms::all, fs::perms::all);
}

TEST_F(FileSystemWriter, TakesALocationWithALeadingSlash)
{
    prepareDrive();

    EXPECT_TRUE(write("c.bin", "/a/c.bin"));

    EXPECT_THAT(onDrive(), ElementsAre("a/", "a/c.bin"));
}

TEST_F(FileSystemWriter, TakesAFileOfASubfolderOfTheArchive)
{
    prepareDrive();
    archive->addFile("sub/d.bin", "content of d");

    EXPECT_TRUE(write("sub/d.bin", "d.bin"));

    EXPECT_EQ(readText(drive() / "d.bin"), "content of d");
}

TEST_F(FileSystemWriter, ReplacesTheFileThatIsThere)
{
    prepareDrive();
    put(drive() / "c.bin", "a much longer content from before");

    EXPECT_TRUE(write("c.bin", "c.bin"));

    EXPECT_THAT(onDrive(), ElementsAre("c.bin"));
    EXPECT_EQ(readText(drive() / "c.bin"), "content of c");
}

TEST_F(FileSystemWriter, ReplacesATemporaryFileThatWasLeft)
{
    prepareDrive();
    put(drive() / "c.bin.tmp", "a much longer content from before");

    EXPECT_TRUE(write("c.bin", "c.bin"));

    EXPECT_THAT(onDrive(), ElementsAre("c.bin"));
    EXPECT_EQ(readText(drive() / "c.bin"), "content of c");
}

TEST_F(FileSystemWriter, CopiesBinaryContentUnchanged)
{
    prepareDrive();
    std::string content;
    for (int i = 0; i < 100000; ++i) {
        content += static_cast<char>(i * 7);
    }
    archive->addFile("big.bin", content);

    EXPECT_TRUE(write("big.bin", "big.bin"));

    EXPECT_TRUE(readText(drive() / "big.bin") == content);
}

TEST_F(FileSystemWriter, WritesTheSmallestFile)
{
    prepareDrive();
    archive->addFile("one.bin", "1");

    EXPECT_TRUE(write("one.bin", "one.bin"));

    EXPECT_EQ(readText(drive() / "one.bin"), "1");
}

TEST_F(FileSystemWriter, FlushesTheFileSystemAfterSuccess)
{
    prepareDrive();

    EXPECT_TRUE(write("c.bin", "c.bin"));

    ASSERT_THAT(callNames(), ElementsAre("syncFileSystem"));
    EXPECT_EQ(trace()[0].at("timeout"), 500);
}

TEST_F(FileSystemWriter, NamesAMissingSourceInFull)
{
    prepareDrive();

    EXPECT_FALSE(write("missing.bin", "a/c.bin"));

    EXPECT_THAT(messages, ElementsAre("ERROR: File " + archive->path() + "/missing.bin does not exist.\n"));
    EXPECT_THAT(onDrive(), IsEmpty());
    EXPECT_THAT(trace(), IsEmpty());
}

TEST_F(FileSystemWriter, FailsForAnEmptyFileAndKeepsTheOldOne)
{
    prepareDrive();
    archive->addFile("empty.bin", "");
    put(drive() / "c.bin", "old");

    EXPECT_FALSE(write("empty.bin", "c.bin"));

    EXPECT_THAT(messages, ElementsAre("ERROR: Writing /mnt/cn/cfdrive/c.bin.tmp failed.\n"));
    EXPECT_THAT(onDrive(), ElementsAre("c.bin", "c.bin.tmp"));
    EXPECT_EQ(readText(drive() / "c.bin"), "old");
    EXPECT_THAT(trace(), IsEmpty());
}

TEST_F(FileSystemWriter, TellsWhichFolderCannotBeMade)
{
    prepareDrive();
    put(drive() / "a", "a file, not a folder");

    EXPECT_FALSE(write("c.bin", "a/b/c.bin"));

    EXPECT_THAT(messages, ElementsAre("ERROR: Cannot create directory /mnt/cn/cfdrive/a/b (error code: 20).\n"));
    EXPECT_THAT(onDrive(), ElementsAre("a"));
}

TEST_F(FileSystemWriter, TellsOfTheFoldersMadeBeforeAFailure)
{
    options.verbose = true;
    prepareDrive();
    const std::string tooLong(300, 'x');

    EXPECT_FALSE(write("c.bin", "a/" + tooLong + "/c.bin"));

    EXPECT_THAT(messages,
                ElementsAre("Directory /mnt/cn/cfdrive/a created.\n",
                            "ERROR: Cannot create directory /mnt/cn/cfdrive/a/" + tooLong + " (error code: 36).\n"));
}

TEST_F(FileSystemWriter, TellsWhenTheTemporaryFileCannotBeWritten)
{
    prepareDrive();
    const std::string name(252, 'x');  // with ".tmp" longer than a file name may be

    EXPECT_FALSE(write("c.bin", name));

    EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/" + name + ".tmp. Error code: 256\n"));
    EXPECT_THAT(onDrive(), IsEmpty());
}

TEST_F(FileSystemWriter, WritesTheLongestNameAndTheLongestPathThatTheTemporaryFileCanHave)
{
    prepareDrive();
    const std::string name(251, 'x');
    std::string path;
    while (path.size() < 3900) {
        path += std::string(199, 'd') + "/";
    }
    path += std::string(4095 - 4 - path.size() - std::string("/mnt/cn/cfdrive/").size(), 'f');

    EXPECT_TRUE(write("c.bin", name));
    EXPECT_TRUE(write("c.bin", path));
    EXPECT_FALSE(write("c.bin", path + "f"));

    EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/" + path + "f.tmp. Error code: 256\n"));
    EXPECT_EQ(readText(drive() / name), "content of c");
    EXPECT_EQ(readText("/mnt/cn/cfdrive/" + path), "content of c");
}

TEST_F(FileSystemWriter, TellsWhenTheSourceCannotBeCopied)
{
    prepareDrive();
    fs::create_directory(fs::path(archive->path()) / "folder.bin");

    EXPECT_FALSE(write("folder.bin", "c.bin"));

    EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/c.bin.tmp. Error code: 256\n"));
    EXPECT_THAT(onDrive(), IsEmpty());
}

TEST_F(FileSystemWriter, TellsWhenTheOldFileCannotBeDeleted)
{
    prepareDrive();
    put(drive() / "c.bin/inside.txt", "a folder in the file's place");

    EXPECT_FALSE(write("c.bin", "c.bin"));

    EXPECT_THAT(messages, ElementsAre("ERROR: Cannot delete /mnt/cn/cfdrive/c.bin.\n"));
    EXPECT_THAT(onDrive(), ElementsAre("c.bin.tmp", "c.bin/", "c.bin/inside.txt"));
    EXPECT_THAT(trace(), IsEmpty());
}

TEST_F(FileSystemWriter, EmptiesTheMessagesAlsoBeforeAFailure)
{
    prepareDrive();
    EXPECT_FALSE(write("missing.bin", "c.bin"));
    EXPECT_FALSE(write("missing.bin", "c.bin"));

    EXPECT_EQ(messages.size(), 1u);
}

TEST_F(FileSystemWriter, WritesFilesThatTheTargetDoesNotHaveYet)
{
    hasFlashDrive = true;
    addFileElement(1, 1, "a/new.bin");
    prepare();

    EXPECT_TRUE(update());

    EXPECT_EQ(readText(drive() / "a/new.bin"), "content of b1f1.bin");
}
