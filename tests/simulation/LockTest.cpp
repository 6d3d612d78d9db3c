#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <new>

#include "Device.h"
#include "ElementDevice.h"
#include "allocations/Allocations.h"
#include "simulation/base/Clock.h"
#include "simulation/base/Resources.h"
#include "simulation/target/TargetLock.h"
#include "support/AnotherProcess.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TempDir.h"
#include "support/Unprivileged.h"

using nlohmann::ordered_json;

namespace {

void expectLocked(Session& session)
{
    EXPECT_EQ(session.handle, 0U);
    ASSERT_EQ(session.errors.count(), 1U);
    EXPECT_EQ(session.errors.code(0), 0x26300003U);
    EXPECT_EQ(session.errors.text(0), "The target is locked by another process.");
}

}  // namespace

TEST(Lock, HasTheNextHandleEachTime)
{
    const SimulatedTarget device(target({}));
    const Scan scan;
    unsigned first = 0;
    {
        const Session session;
        first = session.handle;
    }
    EXPECT_GE(first, 1U);
    const Session session;
    EXPECT_EQ(session.handle, first + 1);
}

TEST(Lock, KeepsItsFileBesideTheTarget)
{
    const SimulatedTarget device(target({}));
    const auto file = device.folder() / "target.json.lock";
    const Scan scan;
    EXPECT_FALSE(std::filesystem::exists(file));
    Session session;
    EXPECT_TRUE(std::filesystem::exists(file));
    session.unlock();
    EXPECT_TRUE(std::filesystem::exists(file));
}

TEST(Lock, EndsWithTheUnlockWhereverThatRunsOutOfMemory)
{
    const ordered_json busy = {{"errors", {{{"code", 3}, {"text", "busy"}}}}};
    const ElementDevice device(oldValues, {{"script", {{"unlock", ordered_json(1000, busy)}}}});
    const Scan scan;
    constexpr std::size_t sure = 20;  // requests that come before the document is given back, which asks for some too
    for (std::size_t number = 1; number <= sure; ++number) {
        Session session;
        ASSERT_NE(session.handle, 0U) << "after request " << number - 1 << " for memory failed";
        device.write(std::to_string(number));
        session.start(1, device.file());
        pass(10'000'000);
        EXPECT_EQ(session.poll(1).status, 2U);
        failAllocation(number);
        EXPECT_THROW(session.unlock(), std::bad_alloc);
        failAllocation(0);
        session.handle = 0;
        EXPECT_EQ(TrellanSimulation::resources().locks, 0);
    }
}

TEST(Lock, RefusesASecondLockOfTheSameProcess)
{
    const SimulatedTarget device(target({}));
    const Scan scan;
    const Session first;
    Session second;
    expectLocked(second);
}

TEST(Lock, IsRefusedWhileAnotherProcessHasIt)
{
    const SimulatedTarget device(target({}));
    const Scan scan;
    Session session;
    EXPECT_EQ(inAnotherProcess([&] {
                  const int file = ::open((device.folder() / "target.json.lock").c_str(), O_RDWR);
                  return ::flock(file, LOCK_EX | LOCK_NB) == 0 ? 0 : 1;
              }),
              1);
    session.unlock();
    EXPECT_EQ(inAnotherProcess([&] {
                  const int file = ::open((device.folder() / "target.json.lock").c_str(), O_RDWR);
                  return ::flock(file, LOCK_EX | LOCK_NB) == 0 ? 0 : 1;
              }),
              0);
}

TEST(Lock, RespectsTheLockOfAnotherProcess)
{
    const SimulatedTarget device(target({}));
    const Scan scan;
    const int file = ::open((device.folder() / "target.json.lock").c_str(), O_RDWR | O_CREAT, 0666);
    ASSERT_EQ(::flock(file, LOCK_EX), 0);
    {
        Session refused;
        expectLocked(refused);
    }
    ::close(file);
    const Session session;
    EXPECT_NE(session.handle, 0U);
}

TEST(Lock, IsFreeAgainWhenItsProcessDies)
{
    const SimulatedTarget device(target({}));
    const Scan scan;
    ASSERT_EQ(inAnotherProcess([] {
                  unsigned handle = 0;
                  ErrorPool errors;
                  Session::manager().lock(errors, 0x10003, handle);
                  return handle != 0 ? 0 : 1;
              }),
              0);
    const Session session;
    EXPECT_NE(session.handle, 0U);
}

TEST(Lock, ReportsATargetFileThatIsNoneAnyMore)
{
    const SimulatedTarget device(target({}));
    const Scan scan;
    std::ofstream(device.path()) << "{}";
    Session session;
    EXPECT_EQ(session.handle, 0U);
    ASSERT_EQ(session.errors.count(), 1U);
    EXPECT_EQ(session.errors.code(0), 0x26300007U);
    EXPECT_EQ(session.errors.text(0), "The target file " + device.path().string() + " cannot be read: tree: missing.");
    EXPECT_EQ(TrellanSimulation::resources().locks, 0);
    std::ofstream(device.path()) << R"({"tree": {"id": "ROOT"}})";
    const Session again;
    EXPECT_NE(again.handle, 0U);
}

TEST(Lock, ReportsALockFileThatCannotBeOpened)
{
    const SimulatedTarget device(target({}));
    const Scan scan;
    const std::string file = device.folder() / "target.json.lock";
    std::filesystem::create_directory(file);
    Session session;
    EXPECT_EQ(session.handle, 0U);
    ASSERT_EQ(session.errors.count(), 1U);
    EXPECT_EQ(session.errors.code(0), 0x26300007U);
    EXPECT_EQ(session.errors.text(0), "The target file " + device.path().string() +
                                          " cannot be read: its lock file cannot be opened: open " + file +
                                          ": Is a directory.");
}

TEST(Lock, NamesAFlashDriveThatCannotBeOpened)
{
    const TempDir folder;
    const std::string drive = folder.path() / "drive";
    try {
        TrellanSimulation::TargetLock::acquire(folder.path() / "target.json", drive);
        FAIL() << "locked";
    } catch (const std::exception& fault) {
        EXPECT_EQ(std::string(fault.what()),
                  "its flash drive cannot be locked: open " + drive + ": No such file or directory");
    }
}

TEST(Lock, RefusesALockFileThatIsNoRegularFile)
{
    const SimulatedTarget device(target({}));
    const Scan scan;
    const std::string file = device.folder() / "target.json.lock";
    const auto expectRefusal = [&] {
        const Session session;
        EXPECT_EQ(session.handle, 0U);
        ASSERT_EQ(session.errors.count(), 1U);
        EXPECT_EQ(session.errors.code(0), 0x26300007U);
        EXPECT_EQ(session.errors.text(0), "The target file " + device.path().string() +
                                              " cannot be read: its lock file " + file +
                                              " is no regular file, remove it.");
    };
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    expectRefusal();
    const auto ledTo = device.folder() / "led-to";
    for (const std::filesystem::path& place : {std::filesystem::path("/dev/null"), ledTo, device.path()}) {
        std::filesystem::remove(file);
        std::filesystem::create_symlink(place, file);
        expectRefusal();
    }
    EXPECT_FALSE(std::filesystem::exists(ledTo));
}

TEST(Lock, IsCountedUntilItIsGivenBack)
{
    const SimulatedTarget device(target({}));
    const Scan scan;
    EXPECT_EQ(TrellanSimulation::resources().locks, 0);
    Session session;
    EXPECT_EQ(TrellanSimulation::resources().locks, 1);
    session.unlock();
    EXPECT_EQ(TrellanSimulation::resources().locks, 0);
}

TEST(Lock, NeedsALockFileForReadingOnly)
{
    const SimulatedTarget device(target({}));
    const std::string file = device.folder() / "target.json.lock";
    std::ofstream(file).flush();
    std::filesystem::permissions(device.folder(), std::filesystem::perms::all);
    std::filesystem::permissions(device.path(), static_cast<std::filesystem::perms>(0644));
    std::filesystem::permissions(file, static_cast<std::filesystem::perms>(0444));
    const Scan scan;
    const Unprivileged user;
    const Session session;
    EXPECT_EQ(session.errors.count(), 0U);
    EXPECT_NE(session.handle, 0U);
}

TEST(Lock, TakesTheTargetsClockWithoutAScan)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");  // a process that has not scanned any target
    EXPECT_EXIT(std::_Exit([] {
                    const SimulatedTarget device(target({}));
                    const Session session;
                    const bool isVirtual = TrellanSimulation::clockKind() == TrellanSimulation::ClockKind::virtualTime;
                    return session.handle != 0 && isVirtual ? 0 : 1;
                }()),
                testing::ExitedWithCode(0), "");
}
