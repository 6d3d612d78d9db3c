// A failing allocation or call of the system ends a run of the tool with words and an exit status, and never by abort.
#include <gtest/gtest.h>

#include "faults/FaultyTool.h"
#include "faults/Steps.h"
#include "support/BuildTree.h"
#include "support/Namespaces.h"

using FaultPoints::Kind;

namespace {

// Each command. With 3 ends what cannot read the archive or the target, with 6 an update whose files cannot be read.
const ToolRun toolRuns[] = {
    {"Version", {"version"}, 0, {1}, 1, 1},
    {"Help", {"help", "update"}, 0, {1}, 7, 1},
    {"WrongOption", {"help", "--nosuch"}, 2, {1}, 1, 1},
    {"ArchiveVersion", {"archive-version", "archive"}, 0, {1, 3}, 5, 3},
    {"List", {"list", "archive"}, 0, {1, 3}, 7, 1},
    // Whose description has so many values that they have pages of their own.
    {"ListOfALargeArchive", {"list", "large"}, 0, {1, 3}, 7, 1},
    {"ListAsJson", {"list", "archive", "--json"}, 0, {1, 3}, 7, 3},
    {"Describe", {"describe", "archive", "--output", "archive/archive.json"}, 0, {1, 3}, 7, 1},
    {"Installed", {"installed", "--target", "target.json"}, 0, {1, 3}, 11, 3},
    {"Scan", {"scan", "--target", "target.json", "--json"}, 0, {1, 3}, 17, 5},
    {"RebootSupport", {"reboot-support", "--target", "target.json"}, 1, {3}, 17, 5},
    {"Compare", {"compare", "archive", "--target", "target.json", "--json"}, 0, {1, 3}, 23, 7},
    {"CompareForScripts",
     {"compare", "archive", "--target", "target.json", "--detailed-exit-status", "--element-names", "UserFpga"},
     10,
     {1, 3},
     37,
     11},
    {"Update", {"update", "archive", "--target", "target.json"}, 0, {1, 3, 6}, 7, 1},
    {"UpdateAsJson",
     {"update", "archive", "--target", "target.json", "--json", "--verify", "--events", "events", "--trace", "trace"},
     0,
     {1, 3, 6},
     37,
     7},
    {"PlannedUpdate", {"update", "archive", "--target", "target.json", "--plan", "plan"}, 0, {1, 3, 6}, 53, 11},
    // The lock is waited for in vain, and a signal comes meanwhile: both are told by a thread beside.
    {"WaitingUpdate",
     {"update", "archive", "--target", "target.json", "--json", "--stall-timeout", "0.01", "--events", "events"},
     8,
     {1, 3, 6},
     9,
     7,
     {"LD_PRELOAD=" TRELLAN_WAITING_LOCK, "TRELLAN_SIGNAL_AT_LOCK=2"}},
    {"DryRun", {"update", "archive", "--target", "target.json", "--dry-run", "--json"}, 0, {1, 3, 6}, 37, 7},
    {"Check", {"check", "archive", "--json"}, 0, {1, 3}, 17, 5},
    {"Explain", {"explain", "archive", "--target", "target.json"}, 0, {1, 3}, 37, 7},
    {"ExplainAFile", {"explain", "archive", "--target", "target.json", "--file", "1", "--json"}, 0, {1, 3}, 53, 11},
    {"Record", {"record", "--target", "target.json", "--output", "recorded"}, 0, {1, 3}, 17, 5, {}, false, "recorded"},
    {"Coverage",
     {"coverage", "archive", "target.json", "--html", "page.html"},
     0,
     {1, 3},
     37,
     7,
     {},
     false,
     "page.html"},
    {"Inspect", {"inspect", "archive/firmware.bin"}, 0, {1}, 3, 1},
    {"History", {"history", "past", "--json"}, 0, {1}, 7, 1},
    {"New",
     {"new", "archive", "--target", "target.json", "--description", "new.json"},
     0,
     {1, 3},
     37,
     7,
     {},
     false,
     "archive/new.json"},
    {"Complete",
     {"complete", "--", "update", "archive", "--target", "target.json", "--element-names", "Us"},
     0,
     {1},
     17,
     5,
     {},
     true},
};

class FaultyToolRun : public testing::TestWithParam<ToolRun> {
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_MOUNT();
#ifdef __SANITIZE_ADDRESS__
        if (!GetParam().surroundings.empty()) {
            GTEST_SKIP() << "the sanitizer wants to be the first that is loaded";
        }
#endif
    }

    static void failEach(Kind kind, unsigned usualStep)
    {
        FaultyTool tool;
        unsigned shown = 0;
        for (const std::string& fault : tool.failEach(kind, stepOf(usualStep), GetParam())) {
            ADD_FAILURE() << fault;
            if (++shown == 20) {
                FAIL() << "and so on";
            }
        }
    }
};

}  // namespace

TEST_P(FaultyToolRun, EndsInOrderWhenAnAllocationFails)
{
    failEach(Kind::allocation, GetParam().allocationStep);
}

TEST_P(FaultyToolRun, EndsInOrderWhenACallOfTheSystemFails)
{
    failEach(Kind::call, GetParam().callStep);
}

INSTANTIATE_TEST_SUITE_P(Each, FaultyToolRun, testing::ValuesIn(toolRuns),
                         [](const auto& parameter) { return std::string(parameter.param.name); });
