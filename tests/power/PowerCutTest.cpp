// The power is cut while a device on an ext4 file system is updated: the image of the file system is copied at random
// moments, and what a mount makes of each copy is looked at. Somebody else's flushes force the journal meanwhile.
//
// TRELLAN_POWER_CUTS=N looks at that many states.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <new>
#include <optional>
#include <random>
#include <thread>

#include "LoopMount.h"
#include "PoweredDevice.h"
#include "support/Process.h"
#include "support/TempDir.h"
#include "support/TextFile.h"

namespace fs = std::filesystem;

namespace {

// The file system does not write a file's content because it is renamed: that is the writer's business.
constexpr const char* mountOptions = "noauto_da_alloc";

// A file system in memory on a folder, for the time of a scope. That, and everything else that is mounted from then on,
// is this process's own, and gone with it.
class OwnMounts {
public:
    explicit OwnMounts(fs::path folder) : folder(std::move(folder)) {}
    ~OwnMounts() { ::umount2(folder.c_str(), MNT_DETACH); }
    OwnMounts(const OwnMounts&) = delete;
    OwnMounts& operator=(const OwnMounts&) = delete;

    // Gives why that cannot be; empty when it is.
    std::string enter() const
    {
        if (::geteuid() != 0) {
            return "only root can mount a file system that is in a file";
        }
        if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("power-cuts", folder.c_str(), "tmpfs", 0, "size=100m") != 0) {
            return "this machine allows no mount namespace";
        }
        return "";
    }

private:
    fs::path folder;
};

constexpr std::size_t imageSize = 4 << 20;

// The image, as long as this process runs.
const void* mapped(const fs::path& image)
{
    const int opened = ::open(image.c_str(), O_RDONLY | O_CLOEXEC);
    const void* const memory = ::mmap(nullptr, imageSize, PROT_READ, MAP_SHARED, opened, 0);
    ::close(opened);
    if (memory == MAP_FAILED) {
        throw std::system_error(errno, std::generic_category(), "map " + image.string());
    }
    return memory;
}

// Something that another process does over and over, until the end of a scope. That has no part in the mounts and files
// that this process has later.
class Repeated {
public:
    // `action` gives what went wrong; then it is not done any more.
    template <class Action>
    explicit Repeated(Action action) : count(makeShared()), process(::fork())
    {
        if (process == 0) {
            ::setpgid(0, 0);
            std::string fault;
            for (; fault.empty(); ++*count) {
                fault = action();
            }
            std::cerr << fault;
            ::_exit(1);
        }
        ::setpgid(process, process);  // whoever comes first
    }
    // The process, what it runs and what that leaves behind end before.
    ~Repeated()
    {
        EXPECT_EQ(::waitpid(process, nullptr, WNOHANG), 0) << "it has ended by itself";
        ::kill(-process, SIGKILL);
        while (::waitpid(-process, nullptr, 0) > 0) {
        }
    }
    Repeated(const Repeated&) = delete;
    Repeated& operator=(const Repeated&) = delete;

    unsigned times() const { return *count; }

private:
    using Count = std::atomic<unsigned>;

    static Count* makeShared()
    {
        void* const memory = ::mmap(nullptr, sizeof(Count), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        return new (memory) Count(0);  // as long as this process runs
    }

    Count* count;
    pid_t process;
};

void sleepUpTo(std::mt19937& random, int microseconds)
{
    std::this_thread::sleep_for(std::chrono::microseconds(std::uniform_int_distribution<int>(0, microseconds)(random)));
}

// Changes the file and flushes it, which makes the file system write its journal.
std::string forceJournal(const fs::path& file, std::mt19937& random)
{
    const int opened = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const bool isDone = ::write(opened, "x", 1) == 1 && ::fsync(opened) == 0;
    ::close(opened);
    sleepUpTo(random, 5000);
    return isDone ? "" : "the journal cannot be forced";
}

class PowerCut : public testing::Test {
protected:
    void SetUp() override
    {
        if (const std::string reason = mounts.enter(); !reason.empty()) {
            GTEST_SKIP() << reason;
        }
        fs::create_directory(disk);
        fs::create_directory(found);
        writeText(image, std::string(imageSize, '\0'));
        try {
            const ProcessResult made = runProcess("/sbin/mkfs.ext4", {"-q", "-b", "1024", "-J", "size=1", image}, "/");
            ASSERT_EQ(made.status, 0) << made.errors;
            mounted.emplace(image, disk, mountOptions);
            bytes = mapped(image);
        } catch (const std::system_error& fault) {
            GTEST_SKIP() << "this machine mounts no file system that is in a file: " << fault.what();
        }
    }

    // A copy at one moment: what is read twice the same was so between the two.
    void cutPower() const
    {
        std::string content(imageSize, '\0');
        do {
            std::memcpy(content.data(), bytes, imageSize);
        } while (std::memcmp(content.data(), bytes, imageSize) != 0);
        writeText(copy, content);
    }

    // Looks at `most` states while the device is updated to and fro, or until `isEnough` of what there was. Gives what
    // must not be.
    template <class Condition>
    std::string faultsIn(std::size_t most, const std::vector<std::string>& environment, Condition isEnough)
    {
        PoweredDevice device(disk);
        ::sync();
        ::prctl(PR_SET_CHILD_SUBREAPER, 1);
        const Repeated updating([&] { return device.update(environment); });
        const Repeated forcing(
            [this, random = std::mt19937(2)]() mutable { return forceJournal(disk / "other", random); });
        // The tool copies the mounts that it sees: what is mounted here would stay mounted there, and be written to.
        EXPECT_EQ(::unshare(CLONE_NEWNS), 0);
        std::string faults;
        std::map<std::string, unsigned> kinds;
        std::mt19937 random(1);
        std::size_t states = 0;
        for (; states < most && !isEnough(kinds); ++states) {
            sleepUpTo(random, 10000);
            cutPower();
            const LoopMount afterwards(copy, found, mountOptions);
            faults += PoweredDevice::faultsIn(found, kinds);
        }
        std::cout << states << " states during " << updating.times() << " updates:\n";
        for (const auto& [kind, count] : kinds) {
            std::cout << "  " << kind << ": " << count << '\n';
        }
        return faults;
    }

    const TempDir folder;
    const OwnMounts mounts{folder.path()};
    const fs::path image = folder.path() / "image";
    const fs::path copy = folder.path() / "copy";
    const fs::path disk = folder.path() / "disk";
    const fs::path found = folder.path() / "found";
    const void* bytes = nullptr;  // of the image, as they are at any time
    std::optional<LoopMount> mounted;
};

const std::vector<std::string> stretched = {"PATH=/usr/bin:/bin", "LD_PRELOAD=" TRELLAN_STRETCHED_CALLS};

}  // namespace

TEST_F(PowerCut, LeavesTheOldFileOrTheNewOneAndNoTornOne)
{
    const char* const wanted = std::getenv("TRELLAN_POWER_CUTS");
    EXPECT_EQ(faultsIn(wanted == nullptr ? 50 : std::stoul(wanted), stretched, [](const auto&) { return false; }), "");
}

TEST_F(PowerCut, WouldLeaveTornFilesIfNothingWereFlushed)
{
    std::vector<std::string> environment = stretched;
    environment.emplace_back("TRELLAN_FORGET_FLUSHES=1");
    const auto bothAreTorn = [](const auto& kinds) {
        return kinds.contains("target file: ?") && kinds.contains("drive/table: ?");
    };
    const std::string faults = faultsIn(500, environment, bothAreTorn);
    EXPECT_THAT(faults, testing::HasSubstr("target.json has 0 bytes"));
    EXPECT_THAT(faults, testing::HasSubstr("drive/table has 0 bytes"));
}
