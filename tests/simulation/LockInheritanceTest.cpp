// The lock and the processes that its holder starts.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdlib>
#include <set>
#include <sstream>

#include "Device.h"
#include "FlashTarget.h"
#include "libZoRtosAbstraction/ZoNRtosAbstraction.h"
#include "support/AnotherProcess.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TextFile.h"

namespace {

// A locked device whose holder, a process of its own, copies what comes through a pipe; the holder is killed as soon as
// the copy runs.
class OrphanedCopy {
public:
    explicit OrphanedCopy(const SimulatedTarget& device) : copy(device.folder() / "copy")
    {
        const std::string pipe = device.folder() / "pipe";
        EXPECT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
        ::prctl(PR_SET_CHILD_SUBREAPER, 1);  // the copy becomes this process's child
        const pid_t holder = ::fork();
        if (holder == 0) {
            const Session session;
            ::_exit(session.handle == 0 ? 1 : std::system(("cp " + pipe + ' ' + copy).c_str()));
        }
        source = ::open(pipe.c_str(), O_WRONLY | O_CLOEXEC);  // waits for the copy
        ::kill(holder, SIGKILL);
        int status = 0;
        EXPECT_EQ(::waitpid(holder, &status, 0), holder);
        EXPECT_TRUE(WIFSIGNALED(status));
    }
    ~OrphanedCopy() { ::prctl(PR_SET_CHILD_SUBREAPER, 0); }
    OrphanedCopy(const OrphanedCopy&) = delete;
    OrphanedCopy& operator=(const OrphanedCopy&) = delete;

    // Gives the copy the rest of its source, and what it has written at its end.
    std::string end(const std::string& rest)
    {
        EXPECT_EQ(::write(source, rest.data(), rest.size()), static_cast<ssize_t>(rest.size()));
        ::close(source);
        while (::wait(nullptr) > 0) {
        }
        return readText(copy);
    }

private:
    std::string copy;
    int source = -1;
};

// What the files are that a program has open which this process starts.
std::set<std::string> filesOfAProgram(const std::filesystem::path& folder)
{
    const std::string output = folder / "open";
    EXPECT_EQ(
        std::system(
            ("cd /proc/self/fd && for file in [3-9] [1-9]?; do readlink $file; done >" + output + "; true").c_str()),
        0);
    std::set<std::string> files;
    std::istringstream lines(readText(output));
    for (std::string line; std::getline(lines, line);) {
        files.insert(line);
    }
    return files;
}

}  // namespace

TEST(LockInheritance, IsHeldByACopyThatOutlivesItsKilledProcess)
{
    const SimulatedTarget device(target({}));
    const Scan scan;
    OrphanedCopy copy(device);
    {
        const Session session;
        EXPECT_EQ(session.handle, 0U);
        ASSERT_EQ(session.errors.count(), 1U);
        EXPECT_EQ(session.errors.code(0), 0x26300003U);
    }
    EXPECT_EQ(copy.end("the rest"), "the rest");
    const Session session;
    EXPECT_NE(session.handle, 0U);
}

TEST(LockInheritance, EndsWithTheSessionWhenTheCopiesHaveEnded)
{
    const SimulatedTarget device(target({}));
    const Scan scan;
    {
        const Session session;
        EXPECT_EQ(std::system(("cp " + device.path().string() + ' ' + device.path().string() + ".copy").c_str()), 0);
    }
    EXPECT_EQ(inAnotherProcess([] { return Session().handle == 0 ? 1 : 0; }), 0);
}

TEST(LockInheritance, PassesOnNothingButTheLock)
{
    SKIP_WITHOUT_MOUNT();
    const FlashTarget device;
    const std::set<std::string> before = filesOfAProgram(device.target.folder());
    const Scan scan;
    const Session session;
    std::set<std::string> expected = before;
    expected.insert(device.target.path().string() + ".lock");
    expected.insert(flashPath);
    EXPECT_EQ(filesOfAProgram(device.target.folder()), expected);
}

// A program that it starts would take it for its standard input.
TEST(LockInheritance, NeverTakesThePlaceOfAStandardStream)
{
    const SimulatedTarget device(target({}));
    const Scan scan;
    EXPECT_EQ(inAnotherProcess([] {
                  ::close(0);
                  const Session session;
                  return session.handle != 0 && ::fcntl(0, F_GETFD) < 0 ? 0 : 1;
              }),
              0);
}

TEST(LockInheritance, IsNotHeldByTheFlushingOfAllFileSystems)
{
    nlohmann::ordered_json document = target({});
    document["clock"] = "real";
    const SimulatedTarget device(document);
    const Scan scan;
    for (int round = 0; round < 20; ++round) {
        const Session session;
        ASSERT_NE(session.handle, 0U) << "round " << round;
        ZoNRtosAbstraction::syncFileSystem(nullptr, 0);
    }
}
