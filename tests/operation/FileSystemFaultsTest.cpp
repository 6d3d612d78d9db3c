// What is asked of the system, and what is said when it answers well and does otherwise, or refuses what cannot be
// refused by its rights: this program's remove(), unlink(), rename(), mkdir(), access(), fsync() and system() stand
// before those of the C library.
#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>

#include "operation/FlashDriveFixture.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

enum class Answer { asUsual, refuses, doesNothing };

Answer ofRemove = Answer::asUsual;
Answer ofUnlink = Answer::asUsual;
Answer ofRename = Answer::asUsual;
Answer ofSystem = Answer::asUsual;

std::string unreadable;  // a file that is there and cannot be read, not even by root
std::vector<std::string> madeFolders;
std::vector<std::string> commands;
std::function<void()> afterCommand;
std::function<void()> afterFlush;

std::vector<std::string> changes;            // flushes, removals and renamings, in their order
std::map<std::string, int> errorsOfFlushes;  // by the path of what is flushed

// The result without the call, or nothing where the call is to be made.
std::optional<int> resultOf(Answer answer)
{
    if (answer == Answer::asUsual) {
        return std::nullopt;
    }
    errno = EIO;
    return answer == Answer::refuses ? -1 : 0;
}

}  // namespace

extern "C" int remove(const char* path) noexcept
{
    using Remove = int(const char*);
    static Remove* const usual = reinterpret_cast<Remove*>(::dlsym(RTLD_NEXT, "remove"));
    changes.push_back("remove " + std::string(path));
    const auto result = resultOf(ofRemove);
    return result ? *result : usual(path);
}

extern "C" int unlink(const char* path) noexcept
{
    using Unlink = int(const char*);
    static Unlink* const usual = reinterpret_cast<Unlink*>(::dlsym(RTLD_NEXT, "unlink"));
    const auto result = resultOf(ofUnlink);
    return result ? *result : usual(path);
}

extern "C" int fsync(int descriptor)
{
    using Fsync = int(int);
    static Fsync* const usual = reinterpret_cast<Fsync*>(::dlsym(RTLD_NEXT, "fsync"));
    const std::string path = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor));
    changes.push_back("flush " + path);
    if (const auto found = errorsOfFlushes.find(path); found != errorsOfFlushes.end()) {
        errno = found->second;
        return -1;
    }
    const int result = usual(descriptor);
    if (afterFlush) {
        afterFlush();
    }
    return result;
}

extern "C" int rename(const char* from, const char* to) noexcept
{
    using Rename = int(const char*, const char*);
    static Rename* const usual = reinterpret_cast<Rename*>(::dlsym(RTLD_NEXT, "rename"));
    changes.push_back("rename " + std::string(from));
    const auto result = resultOf(ofRename);
    return result ? *result : usual(from, to);
}

extern "C" int mkdir(const char* path, mode_t mode) noexcept
{
    using Mkdir = int(const char*, mode_t);
    static Mkdir* const usual = reinterpret_cast<Mkdir*>(::dlsym(RTLD_NEXT, "mkdir"));
    madeFolders.push_back(path);
    return usual(path, mode);
}

extern "C" int access(const char* path, int mode) noexcept
{
    using Access = int(const char*, int);
    static Access* const usual = reinterpret_cast<Access*>(::dlsym(RTLD_NEXT, "access"));
    if (path == unreadable && (mode & R_OK) != 0) {
        errno = EACCES;
        return -1;
    }
    return usual(path, mode);
}

extern "C" int system(const char* command)
{
    using System = int(const char*);
    static System* const usual = reinterpret_cast<System*>(::dlsym(RTLD_NEXT, "system"));
    commands.push_back(command);
    const auto noResult = resultOf(ofSystem);
    const int result = noResult ? *noResult : usual(command);
    if (afterCommand) {
        afterCommand();
    }
    return result;
}

class FileSystemFaults : public FlashDriveFixture {
protected:
    // Writes "c.bin" over an old one; expects that it fails with this message and flushes nothing.
    void expectFailure(const std::string& message)
    {
        EXPECT_FALSE(write("c.bin", "c.bin"));
        ofRemove = Answer::asUsual;
        ofRename = Answer::asUsual;
        errorsOfFlushes.clear();
        EXPECT_THAT(messages, ElementsAre(message));
        EXPECT_THAT(trace(), IsEmpty());
        EXPECT_EQ(readText(drive() / "c.bin.tmp"), "content of c");
    }
};

TEST_F(FileSystemFaults, TellsWhenTheOldFileIsStillThereAfterItsDeletion)
{
    prepareDrive();
    put(drive() / "c.bin", "old");
    ofRemove = Answer::doesNothing;
    expectFailure("ERROR: Deleting /mnt/cn/cfdrive/c.bin failed.\n");
    EXPECT_EQ(readText(drive() / "c.bin"), "old");
}

TEST_F(FileSystemFaults, TellsWhenTheTemporaryFileCannotBeRenamed)
{
    prepareDrive();
    put(drive() / "c.bin", "old");
    ofRename = Answer::refuses;
    expectFailure("ERROR: Cannot rename /mnt/cn/cfdrive/c.bin.tmp.\n");
    EXPECT_THAT(onDrive(), ElementsAre("c.bin.tmp"));
}

TEST_F(FileSystemFaults, TellsWhenTheTargetIsNotThereAfterTheRenaming)
{
    prepareDrive();
    ofRename = Answer::doesNothing;
    expectFailure("ERROR: Renaming of /mnt/cn/cfdrive/c.bin.tmp failed.\n");
    EXPECT_THAT(onDrive(), ElementsAre("c.bin.tmp"));
}

TEST_F(FileSystemFaults, CopiesWithThePlainCommand)
{
    prepareDrive();
    commands.clear();

    EXPECT_TRUE(write("c.bin", "a/d.bin"));

    EXPECT_THAT(commands, ElementsAre("cp " + archive->path() + "/c.bin /mnt/cn/cfdrive/a/d.bin.tmp"));
}

TEST_F(FileSystemFaults, TellsTheResultOfACommandThatCannotBeRunAsAnUnsignedNumber)
{
    prepareDrive();
    ofSystem = Answer::refuses;
    EXPECT_FALSE(write("c.bin", "c.bin"));
    ofSystem = Answer::asUsual;

    EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/c.bin.tmp. Error code: 4294967295\n"));
    EXPECT_THAT(onDrive(), IsEmpty());
}

TEST_F(FileSystemFaults, TellsWhenTheTemporaryFileIsNotThereAfterTheCopy)
{
    prepareDrive();
    put(drive() / "c.bin", "old");
    ofSystem = Answer::doesNothing;
    EXPECT_FALSE(write("c.bin", "c.bin"));
    ofSystem = Answer::asUsual;

    EXPECT_THAT(messages, ElementsAre("ERROR: Writing /mnt/cn/cfdrive/c.bin.tmp failed.\n"));
    EXPECT_EQ(readText(drive() / "c.bin"), "old");
}

TEST_F(FileSystemFaults, TakesNothingButAFileForTheCopy)
{
    prepareDrive();
    put(drive() / "c.bin", "old");
    const std::filesystem::path temporary = drive() / "c.bin.tmp";
    const std::filesystem::path other = drive() / "other";
    put(other, "other");
    const std::vector<std::function<void()>> replacements = {
        [&] { put(temporary / "inside.txt", "inside"); },
        [&] { std::filesystem::create_symlink(other, temporary); },
        [&] { ASSERT_EQ(::mkfifo(temporary.c_str(), 0666), 0); },
    };
    for (const auto& replace : replacements) {
        afterCommand = [&] {
            std::filesystem::remove(temporary);
            replace();
        };
        EXPECT_FALSE(write("c.bin", "c.bin"));
        afterCommand = nullptr;

        EXPECT_THAT(messages, ElementsAre("ERROR: Writing /mnt/cn/cfdrive/c.bin.tmp failed.\n"));
        EXPECT_EQ(readText(drive() / "c.bin"), "old");
        EXPECT_TRUE(std::filesystem::exists(temporary));
        std::filesystem::remove_all(temporary);
    }
}

TEST_F(FileSystemFaults, TakesNoCopyWhoseSizeIsNotThatOfTheUpdateFile)
{
    prepareDrive();
    put(drive() / "c.bin", "old");
    for (const std::string content : {"content of ", "content of c and more", "c"}) {
        afterCommand = [&] { put(drive() / "c.bin.tmp", content); };
        EXPECT_FALSE(write("c.bin", "c.bin"));
        afterCommand = nullptr;

        EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/c.bin.tmp. Error code: 5\n"));
        EXPECT_THAT(onDrive(), ElementsAre("c.bin"));
        EXPECT_EQ(readText(drive() / "c.bin"), "old");
    }
}

TEST_F(FileSystemFaults, TakesNoCopyThatIsCutWhileItIsFlushed)
{
    prepareDrive();
    put(drive() / "c.bin", "old");
    afterFlush = [&] { std::filesystem::resize_file(drive() / "c.bin.tmp", 3); };
    EXPECT_FALSE(write("c.bin", "c.bin"));
    afterFlush = nullptr;

    EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/c.bin.tmp. Error code: 5\n"));
    EXPECT_THAT(onDrive(), ElementsAre("c.bin"));
    EXPECT_EQ(readText(drive() / "c.bin"), "old");
}

TEST_F(FileSystemFaults, TakesNoCopyOfAnUpdateFileThatGrowsOrGoesMeanwhile)
{
    prepareDrive();
    const std::filesystem::path source = std::filesystem::path(archive->path()) / "c.bin";
    const std::vector<std::function<void()>> changes = {
        [&] { put(source, "content of c, the newer one"); },
        [&] { std::filesystem::remove(source); },
    };
    for (const auto& change : changes) {
        put(drive() / "c.bin", "old");
        afterCommand = change;
        EXPECT_FALSE(write("c.bin", "c.bin"));
        afterCommand = nullptr;

        EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/c.bin.tmp. Error code: 5\n"));
        EXPECT_THAT(onDrive(), ElementsAre("c.bin"));
    }
}

TEST_F(FileSystemFaults, TellsWhenAnOldTemporaryFileCannotBeRemoved)
{
    prepareDrive();
    put(drive() / "c.bin.tmp", "left");
    commands.clear();
    ofUnlink = Answer::refuses;
    EXPECT_FALSE(write("c.bin", "c.bin"));
    ofUnlink = Answer::asUsual;

    EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/c.bin.tmp. Error code: 5\n"));
    EXPECT_THAT(commands, IsEmpty());
    EXPECT_EQ(readText(drive() / "c.bin.tmp"), "left");
}

TEST_F(FileSystemFaults, FlushesTheTemporaryFileAndItsFolderBeforeTheOldFileIsRemoved)
{
    prepareDrive();
    put(drive() / "a/c.bin", "old");
    changes.clear();

    EXPECT_TRUE(write("c.bin", "a/c.bin"));

    EXPECT_THAT(changes, ElementsAre("flush /mnt/cn/cfdrive/a/c.bin.tmp", "flush /mnt/cn/cfdrive/a",
                                     "remove /mnt/cn/cfdrive/a/c.bin", "rename /mnt/cn/cfdrive/a/c.bin.tmp"));
}

TEST_F(FileSystemFaults, KeepsTheOldFileWhenTheTemporaryFileCannotBeFlushed)
{
    prepareDrive();
    put(drive() / "c.bin", "old");
    errorsOfFlushes["/mnt/cn/cfdrive/c.bin.tmp"] = EIO;
    expectFailure("ERROR: Cannot write /mnt/cn/cfdrive/c.bin.tmp. Error code: 5\n");
    EXPECT_EQ(readText(drive() / "c.bin"), "old");
}

TEST_F(FileSystemFaults, KeepsTheOldFileWhenTheFolderCannotBeFlushed)
{
    prepareDrive();
    put(drive() / "c.bin", "old");
    errorsOfFlushes["/mnt/cn/cfdrive"] = ENOSPC;
    expectFailure("ERROR: Cannot write /mnt/cn/cfdrive/c.bin.tmp. Error code: 28\n");
    EXPECT_EQ(readText(drive() / "c.bin"), "old");
}

TEST_F(FileSystemFaults, WritesToAFileSystemThatDoesNotFlushFolders)
{
    prepareDrive();
    errorsOfFlushes["/mnt/cn/cfdrive"] = EINVAL;
    EXPECT_TRUE(write("c.bin", "c.bin"));
    errorsOfFlushes.clear();

    EXPECT_EQ(readText(drive() / "c.bin"), "content of c");
}

TEST_F(FileSystemFaults, NeverMakesTheDriveItself)
{
    prepareDrive();
    madeFolders.clear();

    EXPECT_TRUE(write("c.bin", "1.bin"));
    EXPECT_TRUE(write("c.bin", "/2.bin"));
    EXPECT_THAT(madeFolders, IsEmpty());

    EXPECT_TRUE(write("c.bin", "a/b/3.bin"));
    EXPECT_THAT(madeFolders, ElementsAre("/mnt/cn/cfdrive/a", "/mnt/cn/cfdrive/a/b"));
}

TEST_F(FileSystemFaults, TakesAnUpdateFileThatCannotBeReadForMissing)
{
    addElement(1, 1);
    addElement(1, 2);
    prepare();
    unreadable = archive->path() + "/b1e1.bin";
    EXPECT_FALSE(update());
    unreadable.clear();

    EXPECT_TRUE(file(0).fileMissing);
    EXPECT_FALSE(file(1).fileMissing);
    EXPECT_THAT(states(), ElementsAre(NOTHING_TO_DO, FINISHED));
}
