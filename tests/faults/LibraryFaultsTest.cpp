// A host's whole work with the library, with one of its allocations or of its calls of the system failing, for each of
// them: nothing is lost, the target is unlocked, and the host learns of it by the standard exception or by the words
// and results that the library has for it.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <string>

#include "faults/Device.h"
#include "faults/FaultPoints.h"
#include "faults/HostWork.h"
#include "faults/Steps.h"
#include "libZoErrorHandling/ZoCErrorManager.h"
#include "simulation/base/Resources.h"
#include "support/Namespaces.h"
#include "support/UpdaterOptions.h"

using FaultPoints::Kind;
using namespace ZoNTrellanUpdater;

namespace {

unsigned openFiles()
{
    unsigned count = 0;
    for (int file = 0; file < 256; ++file) {
        count += ::fcntl(file, F_GETFD) >= 0 ? 1 : 0;
    }
    return count;
}

class LibraryFaults : public testing::Test {
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_MOUNT();
        ::setenv("TRELLAN_TARGET", device.targetFile().c_str(), 1);
        ::unsetenv("TRELLAN_TRACE");
        options = optionsFor(UPDATE, device.archive());
        printed().reserve(1 << 16);
    }
    ~LibraryFaults() override { ::unsetenv("TRELLAN_TARGET"); }

    // Twice: what is made once in a process is there then.
    void workWithoutFault()
    {
        for (int i = 0; i < 2; ++i) {
            putOldDevice();
            const HostWork work = workAsHost(options);
            ASSERT_EQ(work.applied, 0u) << printed();
            ASSERT_EQ(work.ran, 1) << printed();
        }
        usual = printed();
    }

    void putOldDevice()
    {
        ZoCErrorManager::getSingleton()->getMasterErrorList().clear();
        device.putOld();
    }

    // In a process of its own, which it does not survive when it goes wrong. False when the point is not reached;
    // `ways` is then in how many ways the call can fail.
    bool failAt(Kind kind, unsigned long number, unsigned way, unsigned& ways)
    {
        int ends[2];
        EXPECT_EQ(::pipe(ends), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            const std::string faults = faultsAt(kind, number, way);
            const char* const failed = FaultPoints::failed();
            const std::string report =
                (failed == nullptr ? "- 0" : failed + (" " + std::to_string(FaultPoints::ways()))) + "\n" + faults;
            const bool written = ::write(ends[1], report.data(), report.size()) == static_cast<ssize_t>(report.size());
            ::_exit(written ? 0 : 1);
        }
        ::close(ends[1]);
        std::string report;
        char piece[4096];
        for (ssize_t length; (length = ::read(ends[0], piece, sizeof piece)) > 0;) {
            report.append(piece, static_cast<std::size_t>(length));
        }
        ::close(ends[0]);
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0) << "point " << number << ", way " << way << " ends the process";
        const std::size_t end = report.find('\n');
        if (status == 0 && end + 1 < report.size()) {
            ADD_FAILURE() << report.substr(0, end) << ": point " << number << ", way " << way << "\n"
                          << report.substr(end + 1);
        }
        ways = static_cast<unsigned>(
            std::strtoul(report.c_str() + std::min(report.find(' '), report.size()), nullptr, 10));
        return status != 0 || report[0] != '-';
    }

    void failEach(Kind kind, unsigned step)
    {
        workWithoutFault();
        unsigned points = 0;
        for (unsigned long number = 1; !HasFailure(); number += step) {
            unsigned ways = 1;
            for (unsigned way = 0; way < ways; ++way, ++points) {
                if (!failAt(kind, number, way, ways)) {
                    std::cout << points << " points of the library\n";
                    EXPECT_GT(points, 40u);
                    return;
                }
            }
        }
    }

private:
    std::string faultsAt(Kind kind, unsigned long number, unsigned way)
    {
        std::string faults;
        const auto check = [&faults](bool isRight, const std::string& fault) { faults += isRight ? "" : fault + "\n"; };
        putOldDevice();
        const auto& resources = TrellanSimulation::resources();
        const unsigned filesBefore = openFiles();
        const long heldBefore = FaultPoints::allocationsHeld();
        FaultPoints::choose(kind, number, way);
        const HostWork work = workAsHost(options);
        const char* const failed = FaultPoints::failed();
        check(!work.threwOther, "another exception than that for memory");
        check(!work.threwBadAlloc || kind == Kind::allocation, "memory is not short");
        check(work.threwBadAlloc || isSaid(work), "not said: " + printed());
        check(work.ran == 1 || !FaultPoints::isInterrupted(), "a signal makes it fail: " + printed());
        check(work.ran != 1 || printed() == usual, "another text: " + printed());
        check(work.ran != 1 || device.isNew(), "the device is not new: " + device.text());
        check(device.isOldOrNew(), "the device is neither old nor new");
        check(resources.errorLists == 0, "an error list is left");
        check(resources.inventoryTrees == 0, "an inventory tree is left");
        check(resources.locks == 0 && device.isUnlocked(), "the target is locked");
        check(openFiles() == filesBefore, "a file is open");
        check(!device.hasTemporaryFile() || std::string(failed == nullptr ? "" : failed) == "unlink",
              "a temporary file is left");

        // All is well afterwards, and then nothing is held that was not before.
        putOldDevice();
        const HostWork again = workAsHost(options);
        check(again.ran == 1, "the next one fails: " + printed());
        ZoCErrorManager::getSingleton()->getMasterErrorList().clear();
        const long left = FaultPoints::allocationsHeld() - heldBefore;  // before the message takes memory
        check(left <= 0, std::to_string(left) + " allocations are left");
        return faults;
    }

    Device device;
    ZoTOptions options;
    std::string usual;
};

}  // namespace

TEST_F(LibraryFaults, LoseNothingWhenAnAllocationFails)
{
    failEach(Kind::allocation, stepOf(3));
}

TEST_F(LibraryFaults, LoseNothingWhenACallOfTheSystemFails)
{
    failEach(Kind::call, stepOf(1));
}
