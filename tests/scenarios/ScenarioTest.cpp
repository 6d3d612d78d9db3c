// Runs every scenario of this folder with the tool itself. With TRELLAN_APPROVE=1 in the environment what the tool
// prints is taken over as the expected text, to be read before it is committed.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>

#include "scenarios/Scenario.h"
#include "support/Approving.h"
#include "support/BuildTree.h"
#include "support/Difference.h"
#include "support/Namespaces.h"
#include "support/TextFile.h"

namespace fs = std::filesystem;

namespace {

std::vector<std::string> scenarioNames()
{
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(TRELLAN_SOURCE_DIR "/tests/scenarios")) {
        if (entry.is_directory()) {
            names.push_back(entry.path().filename().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string testName(const testing::TestParamInfo<std::string>& info)
{
    std::string name = info.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

// The statuses of a scenario that says nothing of them: all runs succeed.
std::string successes(const std::string& statuses)
{
    std::string text;
    for (std::ptrdiff_t runs = std::count(statuses.begin(), statuses.end(), '\n'); runs > 0; --runs) {
        text += "0\n";
    }
    return text;
}

std::string readOr(const fs::path& file, const std::string& text)
{
    return fs::exists(file) ? readText(file) : text;
}

void approve(const fs::path& file, const std::string& text, bool needed)
{
    if (readOr(file, needed ? "" : text) == text && fs::exists(file) == needed) {
        return;
    }
    if (needed) {
        writeText(file, text);
    } else {
        fs::remove(file);
    }
    std::cout << "approved: " << file.string() << '\n';
}

void approveAll(const fs::path& folder, const ScenarioResult& result)
{
    approve(folder / "expected.txt", result.output, true);
    approve(folder / "expected.err", result.errors, !result.errors.empty());
    approve(folder / "expected.status", result.statuses, result.statuses != successes(result.statuses));
    approve(folder / "expected.trace", result.trace, fs::exists(folder / "expected.trace"));
}

void compareAll(const fs::path& folder, const ScenarioResult& result)
{
    EXPECT_EQ(difference(readText(folder / "expected.txt"), result.output), "") << "standard output";
    EXPECT_EQ(difference(readOr(folder / "expected.err", ""), result.errors), "") << "standard error";
    EXPECT_EQ(difference(readOr(folder / "expected.status", successes(result.statuses)), result.statuses), "")
        << "exit status";
    EXPECT_EQ(difference(readOr(folder / "expected.trace", result.trace), result.trace), "") << "trace";
}

class Scenarios : public testing::TestWithParam<std::string> {};

}  // namespace

TEST_P(Scenarios, PrintsWhatIsExpected)
{
    const fs::path folder = fs::path(TRELLAN_SOURCE_DIR "/tests/scenarios") / GetParam();
    const Scenario scenario(folder);
    if (scenario.hasFlashDrive()) {
        SKIP_WITHOUT_MOUNT();
    }
    const ScenarioResult result = scenario.run(TRELLAN_TOOL);
    if (approving()) {
        approveAll(folder, result);
    } else {
        compareAll(folder, result);
    }
}

INSTANTIATE_TEST_SUITE_P(Each, Scenarios, testing::ValuesIn(scenarioNames()), testName);
