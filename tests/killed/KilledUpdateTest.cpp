// Updates that are killed by SIGKILL: before each of their system calls, and at random moments.
//
// TRELLAN_KILL_EVERY=K takes every K-th system call, TRELLAN_KILL_MOMENTS=N that many random moments.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <thread>

#include "Device.h"
#include "TracedRun.h"
#include "support/BuildTree.h"
#include "support/Namespaces.h"
#include "support/Process.h"

namespace {

using std::chrono::microseconds;
using std::chrono::steady_clock;

std::size_t setting(const char* name, std::size_t otherwise)
{
    const char* const given = std::getenv(name);
    return given == nullptr ? otherwise : std::stoul(given);
}

TracedRun runUpdate(const Device& device, const std::optional<KillPoint>& point)
{
    return runTraced(TRELLAN_TOOL, device.arguments(), Device::environment(), point);
}

class KilledUpdate : public testing::Test {
protected:
    void SetUp() override { SKIP_WITHOUT_MOUNT(); }

    // Kills an update before every K-th system call, until one ends by itself.
    void killBeforeEveryCall(Killed who)
    {
        const std::size_t step = setting("TRELLAN_KILL_EVERY", 24);
        std::size_t points = 0;
        for (KillPoint point{step / 2, who};; point.call += step) {
            const Device device;
            const TracedRun run = runUpdate(device, point);
            EXPECT_EQ(device.faults() + device.faultsOfNextUpdate(), "")
                << "after SIGKILL before system call " << point.call;
            if (run.calls <= point.call || HasFailure()) {
                EXPECT_EQ(run.status, 0);
                break;
            }
            ++points;
        }
        EXPECT_GT(points * step, 500U) << "an update makes more system calls than that";
        std::cout << "Killed " << points << " times, before every system call of " << step << ".\n";
    }
};

// Collects what processes of this one leave behind.
class Orphanage {
public:
    Orphanage() { ::prctl(PR_SET_CHILD_SUBREAPER, 1); }
    ~Orphanage() { ::prctl(PR_SET_CHILD_SUBREAPER, 0); }
    Orphanage(const Orphanage&) = delete;
    Orphanage& operator=(const Orphanage&) = delete;

    static void waitForAll()
    {
        while (::wait(nullptr) > 0) {
        }
    }
};

// Kills an update after `delay` and waits for what it has started. False when it had ended before.
bool killAfter(const Device& device, microseconds delay, Killed who)
{
    const Orphanage orphanage;
    RunningProcess update(TRELLAN_TOOL, device.arguments(), "/", Device::environment());
    std::this_thread::sleep_for(delay);
    if (who == Killed::group) {
        update.sendToGroup(SIGKILL);
    } else {
        update.send(SIGKILL);
    }
    const bool isKilled = update.wait().status == -SIGKILL;
    Orphanage::waitForAll();
    return isKilled;
}

// How long an update takes that is not disturbed.
microseconds undisturbed()
{
    const Device device;
    const auto begin = steady_clock::now();
    EXPECT_EQ(runProcess(TRELLAN_TOOL, device.arguments(), "/", Device::environment()).status, 0);
    return std::chrono::duration_cast<microseconds>(steady_clock::now() - begin);
}

}  // namespace

TEST_F(KilledUpdate, BeforeAnySystemCallLeavesNothingTornAndNothingOver)
{
    killBeforeEveryCall(Killed::group);
}

TEST_F(KilledUpdate, BeforeAnySystemCallWhileACopyGoesOnLeavesNothingTornAndNothingOver)
{
    killBeforeEveryCall(Killed::alone);
}

TEST_F(KilledUpdate, AtAnyMomentLeavesNothingTornAndNothingOver)
{
    constexpr unsigned seed = 1;
    std::mt19937 random(seed);
    const std::size_t wanted = setting("TRELLAN_KILL_MOMENTS", 40);
    const auto longest = undisturbed().count();
    std::size_t tries = 0;
    for (std::size_t killed = 0; killed < wanted && !HasFailure(); ++tries) {
        const Device device;
        const microseconds delay(std::uniform_int_distribution<std::int64_t>(0, longest)(random));
        const Killed who = tries % 2 == 0 ? Killed::group : Killed::alone;
        killed += killAfter(device, delay, who) ? 1 : 0;
        EXPECT_EQ(device.faults() + device.faultsOfNextUpdate(), "")
            << "after SIGKILL after " << delay.count() << " us";
        ASSERT_LT(tries, 10 * wanted) << "the updates end before they are killed";
    }
    std::cout << "Killed " << wanted << " times within " << longest << " us, in " << tries << " tries.\n";
}
