// The documents' transcripts, run as they stand there. With TRELLAN_APPROVE=1 in the environment a document gets the
// transcripts that are printed now, unless one of its commands fails.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "documents/Transcripts.h"
#include "support/Approving.h"
#include "support/BuildTree.h"
#include "support/Difference.h"
#include "support/Namespaces.h"
#include "support/TextFile.h"

namespace fs = std::filesystem;

namespace {

std::string nameOf(const testing::TestParamInfo<const char*>& info)
{
    std::string name = fs::path(info.param).stem().string();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

// The names of the tool's commands: the first words of what its help lists below "Commands:".
std::vector<std::string> commandsInHelp()
{
    std::istringstream lines(ExampleFolder().run("trellan-update help").output);
    std::string line;
    while (std::getline(lines, line) && line != "Commands:") {
    }
    std::vector<std::string> commands;
    while (std::getline(lines, line) && !line.empty()) {
        std::istringstream(line) >> commands.emplace_back();
    }
    return commands;
}

class Documents : public testing::TestWithParam<const char*> {};

}  // namespace

TEST_P(Documents, ShowWhatTheirCommandsPrint)
{
    SKIP_WITHOUT_MOUNT();
    const fs::path document = fs::path(TRELLAN_SOURCE_DIR) / GetParam();
    const DocumentRun run = runExamples(readText(document), ExampleFolder());
    EXPECT_FALSE(run.commands.empty());
    for (const DocumentedCommand& command : run.commands) {
        EXPECT_EQ(command.present.status, 0) << command.text;
        EXPECT_EQ(command.present.errors, "") << command.text;
    }
    if (approving() && !HasFailure()) {
        writeText(document, run.text);
        return;
    }
    for (const DocumentedCommand& command : run.commands) {
        const std::string found = difference(command.shown, command.present.output);
        EXPECT_TRUE(found.empty()) << command.text << '\n' << found;
    }
}

INSTANTIATE_TEST_SUITE_P(All, Documents,
                         testing::Values("README.md", "docs/tour.md", "docs/archive-format.md", "docs/target-file.md"),
                         nameOf);

TEST(Tour, ShowsEveryCommand)
{
    const std::string tour = readText(TRELLAN_SOURCE_DIR "/docs/tour.md");
    const std::vector<std::string> commands = commandsInHelp();
    EXPECT_GE(commands.size(), 10U);
    for (const std::string& command : commands) {
        EXPECT_NE(tour.find("\n$ trellan-update " + command), std::string::npos) << command;
    }
}

TEST(Readme, NamesEveryCommand)
{
    const std::string readme = readText(TRELLAN_SOURCE_DIR "/README.md");
    for (const std::string& command : commandsInHelp()) {
        EXPECT_TRUE(readme.find("`" + command + "`") != std::string::npos ||
                    readme.find("`" + command + " ") != std::string::npos)
            << command;
    }
}

TEST(Transcripts, TakeOverWhatTheCommandsPrintAndLeaveTheRest)
{
    const DocumentRun run = runExamples(
        "# Title\n\n```console\n$ echo new\nold\n$ true\ngone\n```\n\n```\n$ echo text\n```\n", ExampleFolder());
    EXPECT_EQ(run.text, "# Title\n\n```console\n$ echo new\nnew\n$ true\n```\n\n```\n$ echo text\n```\n");
    ASSERT_EQ(run.commands.size(), 2U);
    EXPECT_EQ(run.commands[0].text, "4: echo new");
    EXPECT_EQ(run.commands[0].shown, "old\n");
    EXPECT_EQ(run.commands[1].shown, "gone\n");
}

TEST(Transcripts, RunAllCommandsInOneFolderWithTheFilesOfTheBlocksBefore)
{
    const std::string document =
        "```json deep/a.json\n{}\n```\n```console\n$ cat deep/a.json\n$ echo b \\\n  c >b\n```\n"
        "```console\n$ cat b\n```\n";
    const DocumentRun run = runExamples(document, ExampleFolder());
    ASSERT_EQ(run.commands.size(), 3U);
    EXPECT_EQ(run.commands[0].present.output, "{}\n");
    EXPECT_EQ(run.commands[2].present.output, "b c\n");
    EXPECT_EQ(run.commands[2].text, "10: cat b");
}

TEST(Transcripts, TellHowACommandEnds)
{
    const DocumentRun run = runExamples("```console\n$ echo reason >&2; exit 3\n```\n", ExampleFolder());
    ASSERT_EQ(run.commands.size(), 1U);
    EXPECT_EQ(run.commands[0].present.status, 3);
    EXPECT_EQ(run.commands[0].present.errors, "reason\n");
}
