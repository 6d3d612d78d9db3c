// Progress of the check before an update.
#include <gtest/gtest.h>

#include <sstream>

#include "tool/update/CheckProgress.h"

using TrellanTool::CheckProgress;
using namespace std::chrono_literals;

namespace {

// What is shown of a check that has come to the half and to the end after `time` each.
std::string shown(bool atTerminal, std::chrono::milliseconds time)
{
    const CheckProgress::Clock::time_point start{};
    std::ostringstream err;
    {
        CheckProgress progress(err, atTerminal, start);
        progress.report(500, 1000, start + time);
        progress.report(501, 1000, start + time);
        progress.report(1000, 1000, start + 2 * time);
    }
    return err.str();
}

}  // namespace

TEST(CheckProgress, IsShownAfterASecondAndClearedAtTheEnd)
{
    EXPECT_EQ(shown(true, 1000ms),
              "\rtrellan-update: checking the files: 50 %"
              "\rtrellan-update: checking the files: 100 %"
              "\r                                             \r");
}

TEST(CheckProgress, SaysWhatIsDone)
{
    const CheckProgress::Clock::time_point start{};
    std::ostringstream err;
    CheckProgress(err, true, start, "reading the files").report(1, 4, start + 1s);
    EXPECT_EQ(err.str(),
              "\rtrellan-update: reading the files: 25 %"
              "\r                                             \r");
}

TEST(CheckProgress, IsAtItsEndWhereThereIsNothingToRead)
{
    const CheckProgress::Clock::time_point start{};
    std::ostringstream err;
    CheckProgress(err, true, start, "reading the files").report(0, 0, start + 1s);
    EXPECT_EQ(err.str(),
              "\rtrellan-update: reading the files: 100 %"
              "\r                                             \r");
}

TEST(CheckProgress, IsNotShownOfAShortCheckOrElsewhere)
{
    EXPECT_EQ(shown(true, 499ms), "");
    EXPECT_EQ(shown(false, 5000ms), "");
}
