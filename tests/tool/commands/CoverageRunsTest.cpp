// Whole runs of the command that holds an archive against many targets: signals, and what a terminal shows.
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "support/BuildTree.h"
#include "support/ComesTrue.h"
#include "support/Process.h"
#include "support/TargetBuilder.h"
#include "support/TempDir.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"
#include "tool/JsonDocument.h"

using nlohmann::ordered_json;

namespace {

// So many targets with so many elements that reading them takes a while.
class CoverageRuns : public testing::Test {
protected:
    CoverageRuns()
    {
        std::vector<ordered_json> elements;
        for (unsigned i = 1; i <= 2000; ++i) {
            elements.push_back(updateElement(i, {{"NAME", "E"}, {"VERSION", "1.0"}}));
        }
        writeText(folder.path() / "0.json",
                  target({board("IOMODULE", {{"PRODUCT/BOARD_TYPE", "IO7"}}, elements)}).dump());
        for (unsigned i = 1; i < 400; ++i) {
            std::filesystem::create_hard_link(folder.path() / "0.json", folder.path() / (std::to_string(i) + ".json"));
        }
    }

    std::vector<std::string> words() const
    {
        return {"coverage", archive.path(), folder.path().string(), "--json", "--trace", trace().string()};
    }

    std::filesystem::path trace() const { return folder.path() / "trace"; }

    // Runs the command, and sends it the signal while it reads the targets.
    ProcessResult interrupted(int signal, bool withItsChildren) const
    {
        RunningProcess process(TRELLAN_TOOL, words(), folder.path());
        const bool reads = comesTrue([this] {
            return std::filesystem::exists(trace()) && readText(trace()).find("\"scan\"") != std::string::npos;
        });
        EXPECT_TRUE(reads);
        withItsChildren ? process.sendToGroup(signal) : process.send(signal);
        return process.wait();
    }

    const TestArchive archive = TestArchive(description({}));
    const TempDir folder;
};

}  // namespace

TEST_F(CoverageRuns, EndAtOnceBySignalsAndSayIt)
{
    const ProcessResult result = interrupted(SIGTERM, false);
    EXPECT_EQ(result.status, 143);
    EXPECT_EQ(result.errors, "trellan-update: ended by SIGTERM while the targets were read\n");
    const ordered_json document = conformingDocument(result.output);
    EXPECT_EQ(document["error"]["status"], 143);
    EXPECT_EQ(document["error"]["message"], "ended by SIGTERM while the targets were read");
}

TEST_F(CoverageRuns, EndOnceOnlyWhereTheSignalComesToTheirChildrenToo)
{
    const ProcessResult result = interrupted(SIGINT, true);
    EXPECT_EQ(result.status, 130);
    EXPECT_EQ(result.errors, "trellan-update: ended by SIGINT while the targets were read\n");
    EXPECT_EQ(conformingDocument(result.output)["error"]["status"], 130);
}
