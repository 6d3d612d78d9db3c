// A host's whole work with the library, with one call of the platform failing, for each of them: the target is unlocked
// whenever it was locked, and the host learns of it by the results and words that the library has for it.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>

#include "faults/Device.h"
#include "faults/HostWork.h"
#include "libZoErrorHandling/ZoCErrorManager.h"
#include "simulation/base/Resources.h"
#include "support/Namespaces.h"
#include "support/UpdaterOptions.h"

using nlohmann::ordered_json;

namespace {

const ordered_json lost = {{"errors", {{{"code", 4}, {"text", "lost"}}}}};

// A call of the platform that an update makes, and how it can fail.
struct PlatformCall {
    const char* name;
    const char* element;  // of which it is, by the script; null: of none
    const char* list;     // of the script
    ordered_json usual;   // what it does in a run without a fault, in order
    std::vector<ordered_json> faults;
    unsigned applied;  // what apply() returns then
    const char* text;  // what is among what is printed then
};

std::ostream& operator<<(std::ostream& stream, const PlatformCall& call)
{
    return stream << call.name;
}

constexpr const char* firmware = "/ROOT/HCN#1";
constexpr const char* fpga = "/ROOT/HCN#2";
const ordered_json once = ordered_json::array({ordered_json::object()});
const ordered_json polls = {
    {{"status", 1}, {"total", 10}}, {{"status", 1}, {"done", 5}, {"total", 10}}, {{"status", 2}}};
const ordered_json unknownStatus = {{"status", 7}};
const ordered_json badResult = {{"results", {{{"code", 5}, {"text", "verify"}}}}};

const PlatformCall platformCalls[] = {
    {"Scan", nullptr, "scan", once, {{{"result", 1}}}, 1, "ERROR: Cannot read target device information.\n"},
    {"Lock",
     nullptr,
     "lock",
     once,
     {lost},
     0,
     "Reported errors:\n       ERROR 0x4 (reported by Host PC):\n         lost\n"},
    {"StartOfTheFirst", firmware, "start", once, {lost}, 0, "Firmware                       [ERROR]\n"},
    {"StartOfTheSecond", fpga, "start", once, {lost}, 0, "FPGA                           [ERROR]\n"},
    {"PollOfTheFirst", firmware, "polls", polls, {lost, unknownStatus}, 0, "[ERROR]\n"},
    {"PollOfTheSecond", fpga, "polls", polls, {lost, unknownStatus}, 0, "[ERROR]\n"},
    {"FinishOfTheFirst",
     firmware,
     "finish",
     once,
     {lost, badResult},
     0,
     "Update cancelled due to previous update errors"},
    {"FinishOfTheSecond", fpga, "finish", once, {lost, badResult}, 0, "    Update failed!\n"},
    {"EndOfTheNode",
     nullptr,
     "updateFinish",
     once,
     {lost},
     0,
     "    Update completed successfully!\n\nReported errors:\n"},
    {"Unlock", nullptr, "unlock", once, {lost}, 0, "    Update completed successfully!\n\nReported errors:\n"},
};

class PlatformFaults : public testing::TestWithParam<PlatformCall> {
protected:
    void SetUp() override { SKIP_WITHOUT_MOUNT(); }
    ~PlatformFaults() override { ::unsetenv("TRELLAN_TARGET"); }

    // Works with a device whose script has `calls` for the parameter's call.
    HostWork work(const ordered_json& calls)
    {
        ZoCErrorManager::getSingleton()->getMasterErrorList().clear();
        device.emplace();
        device->putOld();
        ::setenv("TRELLAN_TARGET", device->targetFile().c_str(), 1);
        ordered_json target = ordered_json::parse(std::ifstream(device->targetFile()));
        for (const char* const element : {firmware, fpga}) {
            target["script"]["elements"][element]["polls"] = polls;
        }
        ordered_json& script = target["script"];
        (GetParam().element == nullptr ? script : script["elements"][GetParam().element])[GetParam().list] = calls;
        std::ofstream(device->targetFile()) << target;
        return workAsHost(optionsFor(ZoNTrellanUpdater::UPDATE, device->archive()));
    }

    std::optional<Device> device;  // another one each time: the script goes on where it was
};

}  // namespace

TEST_P(PlatformFaults, AreToldAndLeaveTheTargetUnlocked)
{
    const PlatformCall& call = GetParam();
    ASSERT_EQ(work(call.usual).ran, 1) << printed();
    for (std::size_t n = 0; n < call.usual.size(); ++n) {
        for (const ordered_json& fault : call.faults) {
            ordered_json calls = call.usual;
            calls[n] = fault;

            const HostWork done = work(calls);

            SCOPED_TRACE("call " + std::to_string(n + 1) + ": " + fault.dump());
            EXPECT_EQ(done.applied, call.applied);
            EXPECT_EQ(done.ran, call.applied == 0 ? 0 : HostWork::notRun);
            EXPECT_TRUE(isSaid(done)) << printed();
            EXPECT_NE(printed().find(call.text), std::string::npos) << printed();
            EXPECT_EQ(TrellanSimulation::resources().locks, 0);
            EXPECT_EQ(TrellanSimulation::resources().errorLists, 0);
            EXPECT_EQ(TrellanSimulation::resources().inventoryTrees, 0);
            EXPECT_TRUE(device->isUnlocked());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Each, PlatformFaults, testing::ValuesIn(platformCalls),
                         [](const auto& parameter) { return std::string(parameter.param.name); });
