// Progress as lines.
#include <gtest/gtest.h>

#include "tool/update/TenthLines.h"

using TrellanTool::TenthLines;

TEST(TenthLines, HasALineForEachTenth)
{
    TenthLines lines;
    lines.beginPhase(2);
    EXPECT_EQ(lines.report(0), "Phase 2:   0%\n");
    EXPECT_EQ(lines.report(3), "");
    EXPECT_EQ(lines.report(9), "");
    EXPECT_EQ(lines.report(14), "Phase 2:  10%\n");
    EXPECT_EQ(lines.report(100), "Phase 2: 100%\n");
    EXPECT_EQ(lines.report(100), "");
}

TEST(TenthLines, SaysNothingTwiceWhereProgressIsTakenBack)
{
    TenthLines lines;
    lines.beginPhase(0);
    EXPECT_EQ(lines.report(50), "Phase 0:  50%\n");
    EXPECT_EQ(lines.report(20), "");
    EXPECT_EQ(lines.report(55), "");
    EXPECT_EQ(lines.report(60), "Phase 0:  60%\n");
}

TEST(TenthLines, BeginAnewWithEachPhase)
{
    TenthLines lines;
    lines.beginPhase(0);
    EXPECT_EQ(lines.report(100), "Phase 0: 100%\n");
    lines.beginPhase(1);
    EXPECT_EQ(lines.report(0), "Phase 1:   0%\n");
}
