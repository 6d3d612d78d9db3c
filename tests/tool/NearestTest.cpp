// Which word was meant, beside what the tool says of commands and options.
#include <gtest/gtest.h>

#include "tool/Nearest.h"

using TrellanTool::didYouMean;

TEST(Nearest, IsAskedForOfUpToAHundredLetters)
{
    EXPECT_EQ(didYouMean(std::string(100, 'x'), {std::string(101, 'x')}),
              "; did you mean '" + std::string(101, 'x') + "'?");
    EXPECT_EQ(didYouMean(std::string(101, 'x'), {std::string(102, 'x')}), "");
    EXPECT_EQ(didYouMean("--" + std::string(100, 'x'), {std::string(101, 'x')}),
              "; did you mean '" + std::string(101, 'x') + "'?");
}
