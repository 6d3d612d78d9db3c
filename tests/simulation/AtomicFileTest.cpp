#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>
#include <vector>

#include "UserNamespace.h"
#include "simulation/target/AtomicFile.h"
#include "support/Namespaces.h"
#include "support/TempDir.h"
#include "support/TextFile.h"
#include "support/Unprivileged.h"

using TrellanSimulation::replaceFile;
namespace fs = std::filesystem;

namespace {

// What stood where at a call of fsync.
struct Sync {
    bool folder;           // was synced, and no file
    std::string content;   // of the synced file
    std::string replaced;  // of the file that is replaced
};

// The calls of fsync in its scope, in which `replaced` is replaced. One at a time.
class SyncLog {
public:
    explicit SyncLog(fs::path replaced) : replaced(std::move(replaced)) { current = this; }
    ~SyncLog() { current = nullptr; }
    SyncLog(const SyncLog&) = delete;
    SyncLog& operator=(const SyncLog&) = delete;

    const std::vector<Sync>& syncs() const { return calls; }

    // Lets each call for a folder fail with `error`.
    void refuseFolders(int error) { errorOfFolders = error; }

    // Notes the call, and returns the error with which it is to fail; 0: none.
    static int add(int descriptor)
    {
        if (current == nullptr) {
            return 0;
        }
        const std::string synced = "/proc/self/fd/" + std::to_string(descriptor);
        const bool folder = fs::is_directory(synced);
        current->calls.push_back({folder, folder ? "" : readText(synced), readText(current->replaced)});
        return folder ? current->errorOfFolders : 0;
    }

private:
    static inline SyncLog* current = nullptr;

    fs::path replaced;
    std::vector<Sync> calls;
    int errorOfFolders = 0;
};

}  // namespace

// Takes the place of the system's for the whole test program.
extern "C" int fsync(int descriptor)
{
    if (const int error = SyncLog::add(descriptor); error != 0) {
        errno = error;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

namespace {

// A file with the content "old" in a folder where everybody may make files.
class ReplacedFile : public testing::Test {
protected:
    ReplacedFile() { fs::permissions(folder.path(), fs::perms::all); }

    struct stat status() const
    {
        struct stat status = {};
        EXPECT_EQ(::stat(path.c_str(), &status), 0);
        return status;
    }

    std::string fault() const
    {
        try {
            replaceFile(path, "new");
            return "";
        } catch (const std::system_error& error) {
            return error.what();
        }
    }

    TempDir folder;
    fs::path path = folder.write("file", "old");
};

}  // namespace

TEST_F(ReplacedFile, HasTheNewContent)
{
    EXPECT_EQ(fault(), "");
    EXPECT_EQ(readText(path), "new");
}

TEST_F(ReplacedFile, IsWrittenToTheMediumBeforeAndAfterItsReplacement)
{
    const SyncLog log(path);
    EXPECT_EQ(fault(), "");
    const auto& syncs = log.syncs();
    ASSERT_EQ(syncs.size(), 2U);
    EXPECT_FALSE(syncs[0].folder);
    EXPECT_EQ(syncs[0].content, "new");
    EXPECT_EQ(syncs[0].replaced, "old");
    EXPECT_TRUE(syncs[1].folder);
    EXPECT_EQ(syncs[1].replaced, "new");
}

TEST_F(ReplacedFile, IsNamedWhenItsFolderTakesNoNewFile)
{
    fs::permissions(folder.path(), static_cast<fs::perms>(0555));
    {
        const Unprivileged user;
        EXPECT_EQ(fault(), "create the new " + path.string() + ": Permission denied");
    }
    fs::permissions(folder.path(), fs::perms::all);
    EXPECT_EQ(readText(path), "old");
}

TEST_F(ReplacedFile, StaysTheOldOneInAFolderThatCannotBeSynced)
{
    fs::permissions(folder.path(), static_cast<fs::perms>(0333));
    {
        const Unprivileged user;
        EXPECT_EQ(fault(), "open " + folder.path().string() + ": Permission denied");
    }
    fs::permissions(folder.path(), fs::perms::all);
    EXPECT_EQ(readText(path), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 1);
}

TEST_F(ReplacedFile, IsWholeOnAFileSystemThatDoesNotSyncFolders)
{
    SyncLog log(path);
    log.refuseFolders(EINVAL);
    EXPECT_EQ(fault(), "");
    EXPECT_EQ(readText(path), "new");
}

TEST_F(ReplacedFile, IsReportedWhenItsFolderFailsToBeSynced)
{
    SyncLog log(path);
    log.refuseFolders(EIO);
    EXPECT_EQ(fault(), "sync " + folder.path().string() + ": Input/output error");
    EXPECT_EQ(readText(path), "new");
}

TEST_F(ReplacedFile, KeepsOwnerGroupAndMode)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can give files away";
    }
    ASSERT_EQ(::chown(path.c_str(), 1, 2), 0);
    ASSERT_EQ(::chmod(path.c_str(), 06751), 0);
    EXPECT_EQ(fault(), "");
    EXPECT_EQ(readText(path), "new");
    EXPECT_EQ(status().st_uid, 1U);
    EXPECT_EQ(status().st_gid, 2U);
    EXPECT_EQ(status().st_mode & 07777, 06751U);
}

TEST_F(ReplacedFile, BelongsToWhoMayNotGiveItAway)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "there is no other user's file";
    }
    ASSERT_EQ(::chmod(path.c_str(), 0644), 0);
    {
        const Unprivileged user;
        EXPECT_EQ(fault(), "");
    }
    EXPECT_EQ(readText(path), "new");
    EXPECT_EQ(status().st_uid, 65534U);
    EXPECT_EQ(status().st_mode & 07777, 0644U);
}

TEST_F(ReplacedFile, MayHaveAnOwnerUnknownInTheUserNamespace)
{
    SKIP_WITHOUT_USER_NAMESPACE();
    if (::geteuid() != 0) {
        GTEST_SKIP() << "there is no other user's file";
    }
    ASSERT_EQ(::chown(path.c_str(), 1, 2), 0);
    const auto replaceInNamespace = [this] {
        enterUserNamespace();
        std::fputs(fault().c_str(), stderr);
        std::_Exit(0);
    };
    EXPECT_EXIT(replaceInNamespace(), testing::ExitedWithCode(0), testing::Eq(""));
    EXPECT_EQ(readText(path), "new");
    EXPECT_EQ(status().st_uid, 0U);
}
