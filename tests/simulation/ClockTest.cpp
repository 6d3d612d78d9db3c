#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>

#include "libZoRtosAbstraction/ZoNRtosAbstraction.h"
#include "simulation/base/Clock.h"

using TrellanSimulation::ClockKind;

namespace {

class Clock : public ::testing::Test {
protected:
    Clock() : before(TrellanSimulation::clockKind()) {}
    ~Clock() override { TrellanSimulation::useClock(before); }

    // The machine's time that `action` takes.
    template <typename Action>
    static std::chrono::microseconds timeOf(Action action)
    {
        const auto start = std::chrono::steady_clock::now();
        action();
        return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
    }

private:
    ClockKind before;
};

}  // namespace

TEST_F(Clock, IsRealUnlessAnythingElseIsSaid)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");  // a process in which nobody has said anything yet
    EXPECT_EXIT(std::exit(TrellanSimulation::clockKind() == ClockKind::real ? 0 : 1), ::testing::ExitedWithCode(0), "");
}

TEST_F(Clock, LetsRealTimePass)
{
    TrellanSimulation::useClock(ClockKind::real);
    const std::uint64_t start = TrellanSimulation::now();
    const auto passed = timeOf([] { ZoNRtosAbstraction::usleep(20000); });
    EXPECT_GE(passed, std::chrono::microseconds(20000));
    EXPECT_GE(TrellanSimulation::now() - start, 20000u);
}

TEST_F(Clock, GoesOnByItselfWhenItIsReal)
{
    TrellanSimulation::useClock(ClockKind::real);
    const std::uint64_t start = TrellanSimulation::now();
    std::uint64_t now = start;
    while (now == start) {
        now = TrellanSimulation::now();
    }
    EXPECT_GT(now, start);
}

TEST_F(Clock, MovesOnlyBySleepingWhenItIsVirtual)
{
    TrellanSimulation::useClock(ClockKind::virtualTime);
    const std::uint64_t start = TrellanSimulation::now();
    ZoNRtosAbstraction::usleep(200000);
    EXPECT_EQ(TrellanSimulation::now(), start + 200000);
    ZoNRtosAbstraction::usleep(500000);
    EXPECT_EQ(TrellanSimulation::now(), start + 700000);
}

TEST_F(Clock, LetsVirtualTimePassAtOnce)
{
    TrellanSimulation::useClock(ClockKind::virtualTime);
    const auto passed = timeOf([] { ZoNRtosAbstraction::usleep(4000000000u); });
    EXPECT_LT(passed, std::chrono::seconds(60));
}

TEST_F(Clock, GoesOnWhereItWasWhenItBecomesVirtualAgain)
{
    TrellanSimulation::useClock(ClockKind::virtualTime);
    TrellanSimulation::sleep(5);
    const std::uint64_t virtualTime = TrellanSimulation::now();
    TrellanSimulation::useClock(ClockKind::real);
    TrellanSimulation::sleep(1000);
    TrellanSimulation::useClock(ClockKind::virtualTime);
    EXPECT_EQ(TrellanSimulation::now(), virtualTime);
}

TEST_F(Clock, StartsAtZeroInANewProcessWhenItIsVirtual)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            TrellanSimulation::useClock(ClockKind::virtualTime);
            std::exit(TrellanSimulation::now() == 0 ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}
