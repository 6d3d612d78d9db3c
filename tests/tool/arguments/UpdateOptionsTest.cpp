// The options about what surrounds an update.
#include <gtest/gtest.h>

#include <filesystem>

#include "tool/CommandLine.h"

using TrellanTool::Arguments;
using TrellanTool::Progress;
using TrellanTool::UsageError;

namespace {

std::string mistakeOf(const std::vector<std::string>& words)
{
    try {
        parsed(words);
    } catch (const UsageError& error) {
        return error.what();
    }
    return "";
}

}  // namespace

TEST(UpdateOptions, AreOffUnlessTheyAreGiven)
{
    const Arguments arguments = parsed({"update", "/a"});
    EXPECT_EQ(arguments.eventsFile, std::nullopt);
    EXPECT_EQ(arguments.stallTimeout, std::nullopt);
    EXPECT_EQ(arguments.progress, std::nullopt);
    EXPECT_FALSE(arguments.quiet);
}

TEST(UpdateOptions, NameTheFileOfEventsAbsolutely)
{
    EXPECT_EQ(parsed({"update", "/a", "--events", "/e"}).eventsFile, "/e");
    EXPECT_EQ(parsed({"update", "/a", "--events", "e"}).eventsFile, (std::filesystem::current_path() / "e").string());
}

TEST(UpdateOptions, TakeAnyTimeAbove0)
{
    EXPECT_EQ(parsed({"update", "/a", "--stall-timeout", "90"}).stallTimeout, 90.0);
    EXPECT_EQ(parsed({"update", "/a", "--stall-timeout=0.25"}).stallTimeout, 0.25);
    for (const std::string text : {"0", "-1", "", "5s", "1e3", "inf", "nan", " 5", "0x10", "0.0"}) {
        EXPECT_EQ(mistakeOf({"update", "/a", "--stall-timeout=" + text}),
                  "--stall-timeout: '" + text + "' is no number of seconds above 0");
    }
}

TEST(UpdateOptions, SayWhenProgressIsPrinted)
{
    EXPECT_EQ(parsed({"update", "/a", "--progress", "auto"}).progress, Progress::AUTO);
    EXPECT_EQ(parsed({"update", "/a", "--progress", "always"}).progress, Progress::ALWAYS);
    EXPECT_EQ(parsed({"update", "/a", "--progress", "never"}).progress, Progress::NEVER);
    EXPECT_EQ(mistakeOf({"update", "/a", "--progress", "often"}),
              "--progress: auto, always or never is expected, not 'often'");
}

TEST(UpdateOptions, PrintNoProgressInEitherWay)
{
    EXPECT_FALSE(parsed({"update", "/a", "--progress", "always"}).options.noProgress);
    EXPECT_TRUE(parsed({"update", "/a", "--progress", "never"}).options.noProgress);
    EXPECT_TRUE(parsed({"update", "/a", "--progress", "never", "--no-progress"}).options.noProgress);
    for (const std::string when : {"auto", "always"}) {
        EXPECT_EQ(mistakeOf({"update", "/a", "--no-progress", "--progress", when}),
                  "--no-progress means --progress never, and goes with no other");
    }
}

TEST(UpdateOptions, GoWithNoOtherCommand)
{
    EXPECT_EQ(mistakeOf({"compare", "/a", "--events", "e"}), "--events does not go with compare");
    EXPECT_EQ(mistakeOf({"compare", "/a", "--stall-timeout", "1"}), "--stall-timeout does not go with compare");
    EXPECT_EQ(mistakeOf({"compare", "/a", "--progress", "never"}), "--progress does not go with compare");
}

TEST(QuietOption, GoesWithEveryCommandAndNotWithADocument)
{
    EXPECT_TRUE(parsed({"update", "/a", "-q"}).quiet);
    EXPECT_TRUE(parsed({"scan", "--quiet"}).quiet);
    EXPECT_EQ(mistakeOf({"scan", "--quiet", "--json"}), "--json does not go with --quiet");
}
