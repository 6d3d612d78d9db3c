// A host's whole work with the library, with one call of the platform failing, for each of them: the target is unlocked
// whenever it was locked, what was told as updated is new, and the host learns of it by the results and words that the
// library has for it. What was told as failed may be new as well, where only a poll or a fetch of errors was lost. The
// tool ends with the status that belongs to them.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>

#include "faults/Device.h"
#include "faults/HostWork.h"
#include "libZoErrorHandling/ZoCErrorManager.h"
#include "simulation/base/Resources.h"
#include "support/BuildTree.h"
#include "support/Namespaces.h"
#include "support/Process.h"
#include "support/TextFile.h"
#include "support/UpdaterOptions.h"

using nlohmann::ordered_json;

namespace {

const ordered_json lost = {{"errors", {{{"code", 4}, {"text", "lost"}}}}};
const ordered_json unknownStatus = {{"status", 7}};
const ordered_json badResult = {{"results", {{{"code", 5}, {"text", "verify"}}}}};

// What is printed at the end, without the empty lines.
const std::string lostText = "       ERROR 0x4 (reported by Host PC):\n         lost\n";
const std::string verifyText = "       ERROR 0x5 (reported by Host PC):\n         verify\n";
const std::string firmwareError = "Results:\n    ERROR: Board, SN 16(1), Firmware:\n";
const std::string fpgaError = "Results:\n    ERROR: Board, SN 16(1), FPGA:\n";
const std::string cancelled = "       Update cancelled due to previous update errors on the same board.\n";
const std::string fileCancelled = "    ERROR: Board, SN 16(1), Updatable file (app.bin):\n" + cancelled;
const std::string bothCancelled = "    ERROR: Board, SN 16(1), FPGA:\n" + cancelled + fileCancelled;
const std::string failed = "    Update failed!\n";
const std::string completed = "Results:\n    Update completed successfully!\n";
const std::string reported = "Reported errors:\n";
const std::string notRead =
    "ERROR: Cannot read target device information.\n"
    "\tPower-cycle the system and retry.\n"
    "\tIf the problem persists, contact Velorant support.\n"
    "ERROR: Device cannot be rebooted automatically (wrong command sequence).\n";

// How a call of the platform can fail, and what comes of it.
struct PlatformFault {
    ordered_json answer;
    std::string told;     // at the end
    const char* updated;  // which of "firmware fpga file" is new then
};

// A call of the platform that an update makes.
struct PlatformCall {
    const char* name;
    const char* element;  // of which it is, by the script; null: of none
    const char* list;     // of the script
    ordered_json usual;   // what it does in a run without a fault, in order
    std::vector<PlatformFault> faults;
    unsigned applied;  // what apply() returns then
    int status;        // what the tool ends with
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

const std::string firmwareLost = firmwareError + lostText + bothCancelled + failed + reported + lostText;
const std::string fpgaLost = fpgaError + lostText + fileCancelled + failed + reported + lostText;

// An element whose poll was lost is polled on, and gets its new content; one in an unknown state has failed.
const PlatformCall platformCalls[] = {
    {"Scan", nullptr, "scan", once, {{{{"result", 1}}, notRead, ""}}, 1, 3},
    {"Lock", nullptr, "lock", once, {{lost, reported + lostText, ""}}, 0, 1},
    {"StartOfTheFirst", firmware, "start", once, {{lost, firmwareLost, ""}}, 0, 1},
    {"StartOfTheSecond", fpga, "start", once, {{lost, fpgaLost, "firmware"}}, 0, 1},
    {"PollOfTheFirst",
     firmware,
     "polls",
     polls,
     {{lost, firmwareLost, "firmware"}, {unknownStatus, firmwareError + bothCancelled + failed, ""}},
     0,
     1},
    {"PollOfTheSecond",
     fpga,
     "polls",
     polls,
     {{lost, fpgaLost, "firmware fpga"}, {unknownStatus, fpgaError + fileCancelled + failed, "firmware"}},
     0,
     1},
    {"FinishOfTheFirst",
     firmware,
     "finish",
     once,
     {{lost, firmwareLost, "firmware"},
      {badResult, firmwareError + verifyText + bothCancelled + failed + reported + verifyText, "firmware"}},
     0,
     1},
    {"FinishOfTheSecond",
     fpga,
     "finish",
     once,
     {{lost, fpgaLost, "firmware fpga"},
      {badResult, fpgaError + verifyText + fileCancelled + failed + reported + verifyText, "firmware fpga"}},
     0,
     1},
    {"EndOfTheNode",
     nullptr,
     "updateFinish",
     once,
     {{lost, completed + reported + lostText, "firmware fpga file"}},
     0,
     1},
    {"Unlock", nullptr, "unlock", once, {{lost, completed + reported + lostText, "firmware fpga file"}}, 0, 1},
};

// A value of the target that cannot be read.
struct UnreadableValue {
    const char* name;
    const char* parameter;
    unsigned applied;
    int status;
    unsigned readings;  // each of which is an error; those of the board and of its first element tell of reboots too
};

std::ostream& operator<<(std::ostream& stream, const UnreadableValue& value)
{
    return stream << value.name;
}

const UnreadableValue unreadableValues[] = {
    {"BoardType", "/ROOT/HCN:PRODUCT/BOARD_TYPE", 2, 4, 0},
    {"BoardName", "/ROOT/HCN:PRODUCT/NAME", 0, 1, 2},
    {"SerialNumber", "/ROOT/HCN:PRODUCT/SERIAL_NUMBER", 0, 1, 2},
    {"Configuration", "/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT:CONFIGURATION", 0, 1, 1},
    {"Id", "/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT:ID", 2, 4, 0},
    {"Name", "/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT:NAME", 0, 1, 2},
    {"Version", "/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT[2]:VERSION", 0, 1, 1},
    {"Checksum", "/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT[2]:CHECKSUM_CRC32", 0, 1, 1},
    {"Valid", "/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT[2]:VALID", 0, 1, 1},
    {"Active", "/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT[2]:ACTIVE", 0, 1, 1},
};

std::string withoutEmptyLines(const std::string& text)
{
    std::istringstream lines(text);
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        result += line.empty() ? "" : line + "\n";
    }
    return result;
}

// Works with devices whose scripts have a fault.
class FaultyPlatform : public testing::Test {
protected:
    void SetUp() override { SKIP_WITHOUT_MOUNT(); }
    ~FaultyPlatform() override { ::unsetenv("TRELLAN_TARGET"); }

    HostWork work(const ordered_json& script)
    {
        putDevice(script);
        ZoCErrorManager::getSingleton()->getMasterErrorList().clear();
        ::setenv("TRELLAN_TARGET", device->targetFile().c_str(), 1);
        return workAsHost(optionsFor(ZoNTrellanUpdater::UPDATE, device->archive()));
    }

    // With another such device. What the library says is the same.
    int statusOfTool(const ordered_json& script)
    {
        putDevice(script);
        return runProcess(TRELLAN_TOOL, {"update", "archive", "--target", "target.json"}, device->folder()).status;
    }

    // What of the device is new; all else must be as it was.
    std::string updated() const
    {
        ordered_json expected = before;
        const ordered_json after = ordered_json::parse(std::ifstream(device->targetFile()));
        std::string names;
        for (const auto& [name, position, checksum] :
             {std::tuple("firmware", 0, 3589068740), {"fpga", 1, 2079437629}}) {
            const auto place = "/tree/items/0/items/0/items/" + std::to_string(position) + "/parameters/CHECKSUM_CRC32";
            const ordered_json::json_pointer pointer(place);
            if (after.at(pointer) == checksum) {
                expected.at(pointer) = checksum;
                names += std::string(names.empty() ? "" : " ") + name;
            }
        }
        EXPECT_EQ(after, expected);
        const std::string file = readText(device->folder() / "cfdrive/data/app.bin");
        EXPECT_TRUE(file == "old" || file == "application") << file;
        return names + (file == "application" ? " file" : "");
    }

    void expectOrder(const HostWork& done, unsigned applied) const
    {
        EXPECT_EQ(done.applied, applied);
        EXPECT_EQ(done.ran, applied == 0 ? 0 : HostWork::notRun);
        EXPECT_TRUE(isSaid(done)) << printed();
        EXPECT_EQ(TrellanSimulation::resources().locks, 0);
        EXPECT_EQ(TrellanSimulation::resources().errorLists, 0);
        EXPECT_EQ(TrellanSimulation::resources().inventoryTrees, 0);
        EXPECT_TRUE(device->isUnlocked());
    }

private:
    void putDevice(const ordered_json& script)
    {
        device.emplace();
        device->putOld();
        before = ordered_json::parse(std::ifstream(device->targetFile()));
        before["script"] = script;
        std::ofstream(device->targetFile()) << before;
    }

    std::optional<Device> device;  // another one each time: the script goes on where it was
    ordered_json before;
};

class PlatformFaults : public FaultyPlatform, public testing::WithParamInterface<PlatformCall> {
protected:
    // A script that has `calls` for the parameter's call.
    static ordered_json scriptWith(const ordered_json& calls)
    {
        ordered_json script;
        for (const char* const element : {firmware, fpga}) {
            script["elements"][element]["polls"] = polls;
        }
        (GetParam().element == nullptr ? script : script["elements"][GetParam().element])[GetParam().list] = calls;
        return script;
    }
};

class UnreadableValues : public FaultyPlatform, public testing::WithParamInterface<UnreadableValue> {};

}  // namespace

TEST_P(PlatformFaults, AreToldAndLeaveTheTargetUnlocked)
{
    const PlatformCall& call = GetParam();
    ASSERT_EQ(work(scriptWith(call.usual)).ran, 1) << printed();
    ASSERT_EQ(statusOfTool(scriptWith(call.usual)), 0);
    for (std::size_t n = 0; n < call.usual.size(); ++n) {
        for (const PlatformFault& fault : call.faults) {
            SCOPED_TRACE("call " + std::to_string(n + 1) + ": " + fault.answer.dump());
            ordered_json calls = call.usual;
            calls[n] = fault.answer;
            expectOrder(work(scriptWith(calls)), call.applied);
            EXPECT_EQ(updated(), fault.updated);
            EXPECT_TRUE(withoutEmptyLines(printed()).ends_with(fault.told)) << printed();
            EXPECT_EQ(statusOfTool(scriptWith(calls)), call.status);
            EXPECT_EQ(updated(), fault.updated);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Each, PlatformFaults, testing::ValuesIn(platformCalls),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

// What the value decides is decided as without it; the update goes on where it can, and the errors are reported.
TEST_P(UnreadableValues, AreToldAndLeaveTheTargetUnlocked)
{
    const UnreadableValue& value = GetParam();
    const ordered_json script = {{"values", {{value.parameter, {{{"code", 2}, {"text", "cannot read"}}}}}}};
    const bool isRefused = value.applied == 2;  // that it is told is part of the order
    std::string told = completed + reported;
    for (unsigned i = 0; i < value.readings; ++i) {
        told += "       ERROR 0x2 (reported by Host PC):\n         cannot read\n";
    }
    const char* const updatedThen = isRefused ? "" : "firmware fpga file";
    expectOrder(work(script), value.applied);
    EXPECT_EQ(updated(), updatedThen);
    EXPECT_TRUE(isRefused || withoutEmptyLines(printed()).ends_with(told)) << printed();
    EXPECT_EQ(statusOfTool(script), value.status);
    EXPECT_EQ(updated(), updatedThen);
}

INSTANTIATE_TEST_SUITE_P(Each, UnreadableValues, testing::ValuesIn(unreadableValues),
                         [](const auto& parameter) { return std::string(parameter.param.name); });
