// The examples that help gives, typed as they stand there in the folder of the example target.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "documents/ExampleFolder.h"
#include "support/Namespaces.h"

namespace {

// The lines behind the first line that is `heading`, up to an empty one.
std::vector<std::string> linesBelow(const std::string& heading, const std::string& text)
{
    std::vector<std::string> result;
    std::istringstream lines(text);
    bool below = false;
    for (std::string line; std::getline(lines, line) && !(below && line.empty());) {
        if (below) {
            result.push_back(line);
        }
        below |= line == heading;
    }
    return result;
}

}  // namespace

TEST(HelpExamples, OfEachCommandDoesWhatItSays)
{
    SKIP_WITHOUT_MOUNT();
    const ExampleFolder example;
    const std::vector<std::string> commands = linesBelow("Commands:", example.run("trellan-update help").output);
    ASSERT_EQ(commands.size(), 17U);
    for (const std::string& row : commands) {
        const std::string command = row.substr(2, row.find(' ', 2) - 2);
        const auto lines = linesBelow("Example:", example.run("trellan-update help " + command).output);
        ASSERT_EQ(lines.size(), 1U) << command;
        const ProcessResult result = example.run("TRELLAN_TARGET=target.json " + lines.front());
        EXPECT_EQ(result.status, 0) << lines.front() << result.errors;
        EXPECT_EQ(result.errors.find("note: "), std::string::npos) << result.errors;
    }
    for (const char* const written : {"rack.json", "coverage.html", "events", "fresh/archive.json"}) {
        EXPECT_TRUE(std::filesystem::exists(example.path() / written)) << written;
    }
}
