// A failing allocation or call of the system ends a run of the tool with words and an exit status, and never by abort.
#include <gtest/gtest.h>

#include <ostream>

#include "faults/FaultyTool.h"
#include "faults/Steps.h"
#include "support/BuildTree.h"
#include "support/Namespaces.h"

using FaultPoints::Kind;

namespace {

struct ToolRun {
    const char* name;
    std::vector<std::string> arguments;
    unsigned allocationStep;
    unsigned callStep;
    std::vector<std::string> surroundings = {};
};

std::ostream& operator<<(std::ostream& stream, const ToolRun& run)
{
    return stream << run.name;
}

const ToolRun toolRuns[] = {
    {"Version", {"version"}, 1, 1},
    {"Help", {"help", "update"}, 7, 1},
    {"WrongOption", {"help", "--nosuch"}, 1, 1},
    {"List", {"list", "archive"}, 7, 1},
    {"ListAsJson", {"list", "archive", "--json"}, 7, 3},
    {"Describe", {"describe", "archive", "--output", "archive/archive.json"}, 7, 1},
    {"Installed", {"installed", "--target", "target.json"}, 11, 3},
    {"Compare", {"compare", "archive", "--target", "target.json", "--json"}, 23, 7},
    {"Update", {"update", "archive", "--target", "target.json"}, 7, 1},
    {"UpdateAsJson",
     {"update", "archive", "--target", "target.json", "--json", "--verify", "--events", "events", "--trace", "trace"},
     37,
     7},
    // The lock is waited for in vain, and a signal comes meanwhile: both are told by a thread beside.
    {"WaitingUpdate",
     {"update", "archive", "--target", "target.json", "--json", "--stall-timeout", "0.01", "--events", "events"},
     9,
     7,
     {"LD_PRELOAD=" TRELLAN_WAITING_LOCK, "TRELLAN_SIGNAL_AT_LOCK=2"}},
    {"DryRun", {"update", "archive", "--target", "target.json", "--dry-run", "--json"}, 37, 7},
    {"Check", {"check", "archive", "--json"}, 17, 5},
    {"Explain", {"explain", "archive", "--target", "target.json"}, 37, 7},
    {"Record", {"record", "--target", "target.json", "--output", "recorded"}, 17, 5},
    {"Coverage", {"coverage", "archive", "target.json", "--html", "page.html"}, 37, 7},
    {"Inspect", {"inspect", "archive/firmware.bin"}, 3, 1},
    {"New", {"new", "archive", "--target", "target.json", "--description", "new.json"}, 37, 7},
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
        for (const std::string& fault :
             tool.failEach(kind, stepOf(usualStep), GetParam().arguments, GetParam().surroundings)) {
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
