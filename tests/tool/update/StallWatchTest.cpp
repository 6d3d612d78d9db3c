// When an update is held to make no progress.
#include <gtest/gtest.h>

#include "tool/update/StallWatch.h"

using namespace std::chrono_literals;
using TrellanTool::StallWatch;

namespace {

const StallWatch::Clock::time_point begin{1000s};

}  // namespace

TEST(StallWatch, NoticesWhenThePercentageStaysForTheLimit)
{
    StallWatch watch(2s);
    watch.beginPhase();
    EXPECT_FALSE(watch.report(10, begin));
    EXPECT_FALSE(watch.report(10, begin + 1s));
    EXPECT_FALSE(watch.report(10, begin + 1999ms));
    EXPECT_TRUE(watch.report(10, begin + 2s));
}

TEST(StallWatch, BeginsAnewWithEachPercentage)
{
    StallWatch watch(2s);
    watch.beginPhase();
    EXPECT_FALSE(watch.report(10, begin));
    EXPECT_FALSE(watch.report(11, begin + 3s));
    EXPECT_FALSE(watch.report(11, begin + 4s));
    EXPECT_FALSE(watch.report(10, begin + 9s));
    EXPECT_TRUE(watch.report(10, begin + 11s));
}

TEST(StallWatch, WaitsForWhatAPhaseCopiesBeforeItsFirstReport)
{
    StallWatch watch(2s);
    watch.beginPhase();
    EXPECT_FALSE(watch.report(100, begin));
    watch.beginPhase();
    EXPECT_FALSE(watch.report(100, begin + 60s));
    EXPECT_FALSE(watch.report(100, begin + 61s));
    EXPECT_TRUE(watch.report(100, begin + 62s));
}

TEST(StallWatch, CountsTheTimeBetweenReportsWhereItPassesAtOnce)
{
    StallWatch watch(1s);
    watch.beginPhase();
    EXPECT_FALSE(watch.report(0, begin));
    for (int i = 1; i < 5; ++i) {
        EXPECT_FALSE(watch.report(0, begin)) << i;
    }
    EXPECT_TRUE(watch.report(0, begin));
}
