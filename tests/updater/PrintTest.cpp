// print and sprint: formatted text to standard output, to the message callback, or into a string.
#include <gtest/gtest.h>
#include <stdio.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "Updating.h"
#include "support/TempDir.h"

namespace {

using Fragments = std::vector<std::string>;

// No character: formatting it fails in the locale of a program that has chosen none.
constexpr const wchar_t* unprintable = L"\xD800";

class Print : public Updating {
protected:
    ZoCTrellanUpdater updater{optionsFor(0)};
};

using Sprint = Print;

}  // namespace

TEST_F(Print, FormatsToStandardOutputWithoutACallback)
{
    testing::internal::CaptureStdout();
    const int count = updater.print("%3u%% %-5.5s|%*s\r", 7u, "-", 4, "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "  7% -    |    \r");
    EXPECT_EQ(count, 16);
}

TEST_F(Print, FlushesStandardOutputAtOnce)
{
    const TempDir folder;
    const auto file = folder.write("output", "");
    fflush(stdout);
    const int saved = dup(STDOUT_FILENO);
    ASSERT_NE(freopen(file.c_str(), "w", stdout), nullptr);
    updater.print("no line end");
    const auto sizeAfterPrint = std::filesystem::file_size(file);
    fflush(stdout);
    dup2(saved, STDOUT_FILENO);
    close(saved);
    EXPECT_EQ(sizeAfterPrint, 11u);
}

TEST_F(Print, GivesEachCallToTheCallbackAsOneFragment)
{
    const MessageCapture capture(updater);
    testing::internal::CaptureStdout();
    EXPECT_EQ(updater.print("%s:\n%s\n", "two", "lines"), 11);
    EXPECT_EQ(updater.print("no end"), 6);
    EXPECT_EQ(updater.print("%d\r", 5), 2);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(capture.fragments(), (Fragments{"two:\nlines\n", "no end", "5\r"}));
}

TEST_F(Print, GivesNoEmptyTextToTheCallback)
{
    const MessageCapture capture(updater);
    EXPECT_EQ(updater.print("%s", ""), 0);
    EXPECT_EQ(updater.print("%*s", 0, ""), 0);
    EXPECT_EQ(capture.fragments(), Fragments());
}

TEST_F(Print, PrintsAnEmptyTextAsNothing)
{
    testing::internal::CaptureStdout();
    EXPECT_EQ(updater.print("%s", ""), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(Print, GivesNothingOfATextThatCannotBeFormattedToTheCallback)
{
    const MessageCapture capture(updater);
    EXPECT_EQ(updater.print("text %ls", unprintable), -1);
    EXPECT_EQ(capture.fragments(), Fragments());
}

TEST_F(Print, TellsThatATextCannotBeFormattedToStandardOutput)
{
    testing::internal::CaptureStdout();
    EXPECT_EQ(updater.print("%ls", unprintable), -1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(Print, HasNoLimitOfLength)
{
    const std::string text(100000, 'x');
    const MessageCapture capture(updater);
    EXPECT_EQ(updater.print("<%s>", text.c_str()), 100002);
    EXPECT_EQ(capture.fragments(), Fragments{"<" + text + ">"});
}

TEST_F(Print, FormatsArgumentsOnlyOnce)
{
    const MessageCapture capture(updater);
    updater.print("%s", "50%% %s %n");
    EXPECT_EQ(capture.text(), "50%% %s %n");
}

TEST_F(Print, GoesToStandardOutputAgainWhenTheCallbackIsSwitchedOff)
{
    {
        const MessageCapture capture(updater);
        updater.print("captured");
        EXPECT_EQ(capture.text(), "captured");
    }
    testing::internal::CaptureStdout();
    updater.print("printed");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "printed");
}

TEST_F(Sprint, ReplacesTheStringsContent)
{
    std::string out = "a much longer content than what comes";
    EXPECT_EQ(updater.sprint(out, "%s-%u", "text", 12u), 7);
    EXPECT_EQ(out, "text-12");
}

TEST_F(Sprint, EmptiesTheStringForAnEmptyText)
{
    std::string out = "old";
    EXPECT_EQ(updater.sprint(out, "%s", ""), 0);
    EXPECT_EQ(out, "");
}

TEST_F(Sprint, EmptiesTheStringForATextThatCannotBeFormatted)
{
    std::string out = "old";
    EXPECT_EQ(updater.sprint(out, "text %ls", unprintable), -1);
    EXPECT_EQ(out, "");
}

TEST_F(Sprint, PrintsNothing)
{
    const MessageCapture capture(updater);
    std::string out;
    testing::internal::CaptureStdout();
    updater.sprint(out, "%s", "text");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(capture.fragments(), Fragments());
}

TEST_F(Sprint, HasNoLimitOfLength)
{
    const std::string text(100000, 'x');
    std::string out;
    EXPECT_EQ(updater.sprint(out, "%s", text.c_str()), 100000);
    EXPECT_EQ(out, text);
}

TEST_F(Sprint, MayTakeTheStringsOldContentAsAnArgument)
{
    std::string out = "location";
    EXPECT_EQ(updater.sprint(out, "[%s]", out.c_str()), 10);
    EXPECT_EQ(out, "[location]");
}
