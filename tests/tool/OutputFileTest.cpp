// Files that a command's result is written to: the old content or the complete new one, and what is no regular file.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <ostream>
#include <stdexcept>
#include <thread>

#include "support/FileSizeLimit.h"
#include "support/TempDir.h"
#include "support/TextFile.h"
#include "support/Unprivileged.h"
#include "tool/Descriptor.h"
#include "tool/OutputFile.h"

using testing::EndsWith;
using testing::StartsWith;
using TrellanTool::Descriptor;
using TrellanTool::writeNewFile;
using TrellanTool::writeOutputFile;

namespace fs = std::filesystem;

namespace {

class OutputFiles : public testing::Test {
protected:
    std::string pathOf(const char* name) const { return (folder.path() / name).string(); }

    static void write(const std::string& path, const std::string& text)
    {
        writeOutputFile(path, [&](std::ostream& out) { out << text; });
    }

    // What writing says that fails.
    static std::string fault(const std::string& path, const std::string& text)
    {
        return faultOf([&] { write(path, text); });
    }

    static std::string faultOf(const std::function<void()>& writing)
    {
        try {
            writing();
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "written";
    }

    // What is in the folder, however it is called.
    std::size_t entries() const
    {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()));
    }

    TempDir folder;
};

}  // namespace

TEST_F(OutputFiles, AreMadeWhereThereIsNone)
{
    write(pathOf("new"), "content");
    EXPECT_EQ(readText(pathOf("new")), "content");
    EXPECT_EQ(entries(), 1u);
}

TEST_F(OutputFiles, AreReplacedByAnotherFileAtOnce)
{
    folder.write("file", "the old content, which is longer");
    const Descriptor old(::open(pathOf("file").c_str(), O_RDONLY));
    write(pathOf("file"), "new");
    EXPECT_EQ(readText(pathOf("file")), "new");
    EXPECT_EQ(entries(), 1u);
    char byte = 0;
    EXPECT_EQ(::read(old.get(), &byte, 1), 1);
    EXPECT_EQ(byte, 't');
}

TEST_F(OutputFiles, HoldTheOldContentWhileTheNewOneIsPrinted)
{
    folder.write("file", "old");
    writeOutputFile(pathOf("file"), [&](std::ostream& out) {
        out << std::string(200'000, 'n') << std::flush;
        EXPECT_EQ(readText(pathOf("file")), "old");
    });
    EXPECT_EQ(readText(pathOf("file")), std::string(200'000, 'n'));
}

TEST_F(OutputFiles, KeepTheirMode)
{
    folder.write("file", "old");
    ASSERT_EQ(::chmod(pathOf("file").c_str(), 0640), 0);
    write(pathOf("file"), "new");
    struct stat status = {};
    ASSERT_EQ(::stat(pathOf("file").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TEST_F(OutputFiles, GetTheModeOfEveryNewFile)
{
    const mode_t before = ::umask(027);
    write(pathOf("new"), "content");
    ::umask(before);
    struct stat status = {};
    ASSERT_EQ(::stat(pathOf("new").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TEST_F(OutputFiles, StayLinksAndWhatTheseNameIsReplaced)
{
    folder.write("there/file", "old");
    fs::create_symlink("there/file", pathOf("middle"));
    fs::create_symlink("middle", pathOf("link"));
    write(pathOf("link"), "new");
    EXPECT_TRUE(fs::is_symlink(pathOf("link")));
    EXPECT_EQ(readText(pathOf("there/file")), "new");
}

TEST_F(OutputFiles, AreMadeWhereALinkLeadsToNone)
{
    fs::create_symlink("later", pathOf("link"));
    write(pathOf("link"), "new");
    EXPECT_EQ(readText(pathOf("later")), "new");
}

TEST_F(OutputFiles, AreRefusedWhereLinksLeadInACircle)
{
    fs::create_symlink("two", pathOf("one"));
    fs::create_symlink("one", pathOf("two"));
    EXPECT_EQ(fault(pathOf("one"), "new"), pathOf("one") + " cannot be written: Too many levels of symbolic links");
}

TEST_F(OutputFiles, StayAsTheyAreWhereTheNewContentDoesNotFit)
{
    folder.write("file", "old");
    const FileSizeLimit limit(100'000);
    EXPECT_EQ(fault(pathOf("file"), std::string(300'000, 'n')), pathOf("file") + " cannot be written: File too large");
    EXPECT_EQ(readText(pathOf("file")), "old");
    EXPECT_EQ(entries(), 1u);
}

TEST_F(OutputFiles, StayAsTheyAreWhereTheContentsWriterThrows)
{
    folder.write("file", "old");
    const auto writer = [](std::ostream& out) {
        out << "new";
        throw std::system_error(EIO, std::generic_category(), "its own");
    };
    EXPECT_THROW(writeOutputFile(pathOf("file"), writer), std::system_error);
    EXPECT_EQ(readText(pathOf("file")), "old");
    EXPECT_EQ(entries(), 1u);
}

TEST_F(OutputFiles, ThatMustNotBeWrittenAreNotReplaced)
{
    folder.write("file", "old");
    fs::permissions(folder.path(), fs::perms::all);
    ASSERT_EQ(::chmod(pathOf("file").c_str(), 0444), 0);
    const Unprivileged user;
    EXPECT_EQ(fault(pathOf("file"), "new"), pathOf("file") + " cannot be written: Permission denied");
    EXPECT_EQ(readText(pathOf("file")), "old");
}

TEST_F(OutputFiles, AreRefusedInFoldersThatAreNotThereAndAsFolders)
{
    EXPECT_EQ(fault(pathOf("none/file"), "new"), pathOf("none/file") + " cannot be written: No such file or directory");
    EXPECT_EQ(fault(folder.path().string(), "new"), folder.path().string() + " cannot be written: Is a directory");
}

TEST_F(OutputFiles, ThatArePipesAreWrittenTo)
{
    ASSERT_EQ(::mkfifo(pathOf("pipe").c_str(), 0600), 0);
    const Descriptor reader(::open(pathOf("pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    write(pathOf("pipe"), "through the pipe");
    char got[100] = {};
    EXPECT_EQ(::read(reader.get(), got, sizeof got), 16);
    EXPECT_STREQ(got, "through the pipe");
    EXPECT_TRUE(fs::is_fifo(pathOf("pipe")));
}

TEST_F(OutputFiles, ThatArePipesWaitForASlowReader)
{
    ASSERT_EQ(::mkfifo(pathOf("pipe").c_str(), 0600), 0);
    const Descriptor early(::open(pathOf("pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    const std::string text(300'000, 'p');
    std::string got;
    std::thread reader([&] { got = readText(pathOf("pipe")); });
    write(pathOf("pipe"), text);
    reader.join();
    EXPECT_EQ(got, text);
}

TEST_F(OutputFiles, ThatArePipesWithoutAReaderAreNotWaitedFor)
{
    ASSERT_EQ(::mkfifo(pathOf("pipe").c_str(), 0600), 0);
    EXPECT_EQ(fault(pathOf("pipe"), "new"), pathOf("pipe") + " cannot be written: nobody reads it");
}

TEST_F(OutputFiles, LeaveNothingBehindWhereTheProcessIsKilled)
{
    folder.write("file", "old");
    for (const char* const name : {"file", "new"}) {
        const pid_t writer = ::fork();
        if (writer == 0) {
            writeOutputFile(pathOf(name), [](std::ostream& out) {
                out << std::string(200'000, 'n') << std::flush;
                ::raise(SIGKILL);
            });
            ::_exit(0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(writer, &status, 0), writer);
        EXPECT_TRUE(WIFSIGNALED(status));
    }
    EXPECT_EQ(readText(pathOf("file")), "old");
    EXPECT_EQ(entries(), 1u);
}

TEST_F(OutputFiles, LeaveTheirOtherHardLinksTheOldContent)
{
    folder.write("file", "old");
    fs::create_hard_link(pathOf("file"), pathOf("other"));
    write(pathOf("file"), "new");
    EXPECT_EQ(readText(pathOf("file")), "new");
    EXPECT_EQ(readText(pathOf("other")), "old");
}

TEST_F(OutputFiles, AreMadeWithTheirFoldersWhereTheyAreToBeNew)
{
    writeNewFile(pathOf("a/b/file"), [](std::ostream& out) { out << "content"; });
    EXPECT_EQ(readText(pathOf("a/b/file")), "content");
    EXPECT_EQ(std::distance(fs::directory_iterator(pathOf("a/b")), fs::directory_iterator()), 1);
}

TEST_F(OutputFiles, AreNotTouchedWhereTheyAreToBeNew)
{
    folder.write("file", "old");
    fs::create_symlink("nothing", pathOf("link"));
    for (const char* const name : {"file", "link"}) {
        EXPECT_EQ(faultOf([&] { writeNewFile(pathOf(name), [](std::ostream& out) { out << "new"; }); }),
                  pathOf(name) + " cannot be written: File exists");
    }
    EXPECT_EQ(readText(pathOf("file")), "old");
    EXPECT_EQ(entries(), 2u);
}

TEST_F(OutputFiles, LeaveNoFolderBehindWhereTheyCannotBeMade)
{
    const FileSizeLimit limit(100'000);
    EXPECT_EQ(
        faultOf([&] { writeNewFile(pathOf("a/b/file"), [](std::ostream& out) { out << std::string(300'000, 'n'); }); }),
        pathOf("a/b/file") + " cannot be written: File too large");
    EXPECT_EQ(entries(), 0u);
}

TEST_F(OutputFiles, LeaveNoFolderBehindWhereOnlySomeOfTheirFoldersCanBeMade)
{
    fs::permissions(folder.path(), fs::perms::all);
    const Unprivileged user;
    const mode_t before = ::umask(0700);  // nobody may make anything in a folder of his own that is new
    EXPECT_EQ(faultOf([&] { writeNewFile(pathOf("a/b/file"), [](std::ostream& out) { out << "content"; }); }),
              pathOf("a/b/file") + " cannot be written: Permission denied");
    ::umask(before);
    EXPECT_EQ(entries(), 0u);
}

TEST_F(OutputFiles, ThatAreDevicesAreWrittenTo)
{
    EXPECT_EQ(fault("/dev/full", "new"), "/dev/full cannot be written: No space left on device");
    write("/dev/null", "new");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(OutputFiles, ThatThisProcessHasOpenAreWrittenToBehindWhatIsThere)
{
    folder.write("file", "before, ");
    const Descriptor file(::open(pathOf("file").c_str(), O_WRONLY | O_APPEND | O_CLOEXEC));
    struct stat before = {}, after = {};
    ASSERT_EQ(::fstat(file.get(), &before), 0);
    write("/dev/fd/" + std::to_string(file.get()), "new");
    EXPECT_EQ(readText(pathOf("file")), "before, new");
    ASSERT_EQ(::stat(pathOf("file").c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
}
