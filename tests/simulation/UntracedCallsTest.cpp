// What the platform's calls cost when nobody traces them.
#include <gtest/gtest.h>

#include <cstdlib>

#include "Device.h"
#include "ElementDevice.h"
#include "allocations/Allocations.h"
#include "libZoRtosAbstraction/ZoNRtosAbstraction.h"
#include "simulation/base/Clock.h"

namespace {

class UntracedCalls : public testing::Test {
protected:
    UntracedCalls() { ::unsetenv("TRELLAN_TRACE"); }
};

}  // namespace

TEST_F(UntracedCalls, BuildNoRecords)
{
    TrellanSimulation::useClock(TrellanSimulation::ClockKind::virtualTime);
    EXPECT_EQ(allocationsOf([] { ZoNRtosAbstraction::usleep(200000); }), 0U);
    EXPECT_EQ(allocationsOf([] { ZoCInventoryManager::getInstance()->deleteInventoryTree(nullptr); }), 0U);
    TrellanSimulation::useClock(TrellanSimulation::ClockKind::real);
}

TEST_F(UntracedCalls, ComposeNoLogText)
{
    auto& manager = *ZoCErrorManager::getSingleton();
    EXPECT_EQ(allocationsOf([&] { manager.sendLog(0x26500000, 504, "startUpdatesOfPhase", "%s", "a name"); }), 0U);
}

TEST_F(UntracedCalls, PollWithAHandfulOfAllocations)
{
    const ElementDevice device(oldValues, {{"bytesPerSecond", 1}});
    ::unsetenv("TRELLAN_TRACE");
    const Scan scan;
    Session session;
    session.start(1, device.file());
    Poll poll;
    EXPECT_LE(allocationsOf([&] { poll = session.poll(1); }), 10U);
    EXPECT_EQ(poll, (Poll{1, 0, 9}));
}
