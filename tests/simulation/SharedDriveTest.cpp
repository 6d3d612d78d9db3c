// Targets that have one folder as their flash drive.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include "Device.h"
#include "FlashTarget.h"
#include "support/AnotherProcess.h"
#include "support/Unprivileged.h"

namespace {

// Another target file beside that of `device`, whose drive is `folder`.
std::string anotherTarget(const FlashTarget& device, const std::string& folder)
{
    const std::filesystem::path path = device.target.folder() / "another.json";
    nlohmann::ordered_json document = flashDocument();
    document["flashDrive"] = folder;
    writeText(path, document.dump());
    std::filesystem::create_directory(device.target.folder() / folder);
    return path;
}

// The error with which a process of its own, which scans the target file at `path`, is refused its lock; 0: it gets it.
int refusalOf(const std::string& path)
{
    return inAnotherProcess([&] {
        ::setenv("TRELLAN_TARGET", path.c_str(), 1);
        const Scan scan;
        const Session session;
        const unsigned code = session.errors.count() == 0 ? 0 : session.errors.code(0);
        return session.handle != 0 ? 0 : static_cast<int>(code & 0xFF);
    });
}

class SharedDrive : public FlashDrive {};

}  // namespace

TEST_F(SharedDrive, IsLockedWithEitherOfItsTargets)
{
    const FlashTarget device;
    const std::string another = anotherTarget(device, "flash");
    const Scan scan;
    Session session;
    EXPECT_EQ(refusalOf(another), 3);
    session.unlock();
    EXPECT_EQ(refusalOf(another), 0);
}

TEST_F(SharedDrive, IsFoundBehindALink)
{
    const FlashTarget device;
    std::filesystem::create_directory_symlink("flash", device.target.folder() / "link");
    const std::string another = anotherTarget(device, "link");
    const Scan scan;
    const Session session;
    EXPECT_EQ(refusalOf(another), 3);
}

TEST_F(SharedDrive, LeavesNothingBehind)
{
    const FlashTarget device;
    const Scan scan;
    const Session session;
    EXPECT_TRUE(std::filesystem::is_empty(device.flash()));
}

TEST_F(SharedDrive, DoesNotKeepTargetsWithOtherDrivesFromBeingLocked)
{
    const FlashTarget device;
    const std::string another = anotherTarget(device, "other");
    const Scan scan;
    const Session session;
    EXPECT_NE(session.handle, 0U);
    EXPECT_EQ(refusalOf(another), 0);
}

// It cannot be locked then, which is no reason to refuse an update.
TEST_F(SharedDrive, NeedNotBeReadable)
{
    const FlashTarget device;
    std::filesystem::permissions(device.target.folder(), std::filesystem::perms::all);
    const Scan scan;
    std::filesystem::permissions(device.flash(), std::filesystem::perms::none);
    const Unprivileged user;
    const Session session;
    EXPECT_EQ(session.errors.count(), 0U);
    EXPECT_NE(session.handle, 0U);
}

// A target that is refused for its drive does not stay locked itself.
TEST_F(SharedDrive, LeavesTheTargetThatIsRefusedUnlocked)
{
    const FlashTarget device;
    const std::string another = anotherTarget(device, "flash");
    const Scan scan;
    const Session session;
    ::setenv("TRELLAN_TARGET", another.c_str(), 1);
    const Scan scanOfAnother;
    for (int attempt = 0; attempt < 2; ++attempt) {
        const Session refused;
        EXPECT_EQ(refused.handle, 0U);
        ASSERT_EQ(refused.errors.count(), 1U);
        EXPECT_EQ(refused.errors.text(0), "The target is locked by another process.");
    }
    const int lockFile = ::open((another + ".lock").c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(::flock(lockFile, LOCK_EX | LOCK_NB), 0);
    ::close(lockFile);
}
