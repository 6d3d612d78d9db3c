// The device of docs/target-file.md, as the document's commands leave it.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "documents/Transcripts.h"
#include "support/BuildTree.h"
#include "support/Namespaces.h"
#include "support/TextFile.h"

namespace {

using nlohmann::ordered_json;

class DeviceFromNothing : public testing::Test {
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_MOUNT();
        runExamples(readText(TRELLAN_SOURCE_DIR "/docs/target-file.md"), folder);
    }

    std::string text(const char* file) const { return readText(folder.path() / file); }

    // The parameters of the element at `position` on the board at `board` in the target file.
    ordered_json parameters(const char* board, int position) const
    {
        const auto target = ordered_json::parse(text("rig.json"));
        return target.at(ordered_json::json_pointer(board))["items"][0]["items"][position]["parameters"];
    }

    // The traced calls with this name, for the board at this address.
    std::vector<ordered_json> calls(const char* name, const char* board) const
    {
        std::vector<ordered_json> found;
        std::istringstream lines(text("calls"));
        for (std::string line; std::getline(lines, line);) {
            const auto call = ordered_json::parse(line);
            if (call["call"] == name && call.contains("board") && call["board"] == board) {
                found.push_back(call);
            }
        }
        return found;
    }

    const ExampleFolder folder;
};

constexpr const char* processorBoard = "/tree/items/0";
constexpr const char* module = "/tree/items/1/items/0";

}  // namespace

TEST_F(DeviceFromNothing, HasTheModulesNewFirmwareAlthoughItDidNotAnswerOnce)
{
    EXPECT_EQ(parameters(module, 0)["VERSION"], "6.3");
    EXPECT_EQ(parameters(module, 0)["CHECKSUM_CRC32"], 630);
}

TEST_F(DeviceFromNothing, HasTheFpgaThatReportedAnErrorAndNotTheFirmwareThatWasCancelled)
{
    EXPECT_EQ(parameters(processorBoard, 1)["CHECKSUM_CRC32"], 1323777431);
    EXPECT_EQ(parameters(processorBoard, 0)["CHECKSUM_CRC32"], 1);
}

TEST_F(DeviceFromNothing, HasTheNewSettingsOnItsFlashDrive)
{
    EXPECT_EQ(text("drive/etc/settings"), "rate = 2\n");
}

TEST_F(DeviceFromNothing, WasPolledAsItsScriptSays)
{
    const auto polls = calls("updateStatus2", "/ROOT/IOROUTER/IOMODULE[2]");
    ASSERT_EQ(polls.size(), 3U);
    EXPECT_EQ(polls[0]["done"], 40);
    EXPECT_EQ(polls[0]["total"], 100);
    EXPECT_EQ(polls[1]["errors"], 1);
    EXPECT_EQ(polls[2]["status"], 2);
    EXPECT_EQ(calls("update2", "/ROOT/HCN").size(), 1U);  // of the FPGA; the firmware's was not started
}
