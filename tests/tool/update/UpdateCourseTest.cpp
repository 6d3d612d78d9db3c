// What whole runs print of their progress where that is no terminal.
#include <gtest/gtest.h>

#include "support/BuildTree.h"
#include "support/Process.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"

using nlohmann::ordered_json;

namespace {

ordered_json firmwareEntry(const std::string& name, unsigned id)
{
    return fileEntry(name, {{"id", id}, {"sequence", id}, {"version", "2.0"}, {"checksumCrc32", 0xD5ECD7C4}});
}

// Two phases with an element each; of the first one's progress is told in several steps.
ordered_json steppingDevice()
{
    ordered_json device = target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}},
                                        {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", "1.0"}}),
                                         updateElement(2, {{"NAME", "UserFpga"}, {"VERSION", "1.0"}})})});
    for (const unsigned done : {0, 34, 37, 85}) {
        device["script"]["elements"]["/ROOT/HCN#1"]["polls"].push_back({{"done", done}, {"total", 100}});
    }
    return device;
}

class ProgressAsLines : public testing::Test {
protected:
    ProgressAsLines()
        : archive(description({firmwareEntry("one.bin", 1), firmwareEntry("two.bin", 2)})), device(steppingDevice())
    {
        archive.addFile("one.bin", "firmware");
        archive.addFile("two.bin", "firmware");
    }

    ProcessResult updated(const std::vector<std::string>& options) const
    {
        std::vector<std::string> words = {"update", archive.path()};
        words.insert(words.end(), options.begin(), options.end());
        return runProcess(TRELLAN_TOOL, words, device.folder(), {"TRELLAN_TARGET=" + device.path().string()});
    }

    TestArchive archive;
    SimulatedTarget device;
};

// The lines of `text` that tell progress.
std::string progressIn(const std::string& text)
{
    std::string found;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        found += line.starts_with("Phase ") ? line + "\n" : "";
    }
    return found;
}

}  // namespace

TEST_F(ProgressAsLines, IsALineForEachPhaseAndTenth)
{
    const ProcessResult result = updated({"--progress", "auto"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(progressIn(result.output), "Phase 0:   0%\nPhase 0:  30%\nPhase 0:  80%\nPhase 0: 100%\nPhase 1: 100%\n");
    EXPECT_EQ(result.output.find('\r'), std::string::npos);
}

TEST_F(ProgressAsLines, StandsOnStandardErrorBesideADocument)
{
    const ProcessResult result = updated({"--progress", "auto", "--json"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(progressIn(result.errors), "Phase 0:   0%\nPhase 0:  30%\nPhase 0:  80%\nPhase 0: 100%\nPhase 1: 100%\n");
    EXPECT_EQ(ordered_json::parse(result.output)["command"], "update");
}

TEST_F(ProgressAsLines, IsNoneWhereItIsAskedForAlwaysOrNever)
{
    EXPECT_EQ(progressIn(updated({"--progress", "always"}).output), "");
    EXPECT_EQ(progressIn(updated({"--progress", "never"}).output), "");
}
