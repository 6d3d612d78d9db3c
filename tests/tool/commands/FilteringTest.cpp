// Filters as a user gives them, with every command that reads the target.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "tool/CommandLine.h"

using nlohmann::ordered_json;

namespace {

ordered_json twoBoards()
{
    return target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/SERIAL_NUMBER", 16777232}},
                         {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", 1}}),
                          updateElement(2, {{"NAME", "UserFpga"}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", 2}})}),
                   board("CN", {{"PRODUCT/BOARD_TYPE", "CN7210"}, {"PRODUCT/SERIAL_NUMBER", 4711}},
                         {updateElement(1, {{"NAME", "CnFirmware"}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", 3}})})});
}

std::vector<std::string> namesWith(const std::vector<std::string>& filters)
{
    std::vector<std::string> words = {"scan", "--json"};
    words.insert(words.end(), filters.begin(), filters.end());
    std::vector<std::string> names;
    const ordered_json document = ordered_json::parse(ran(words).out);
    for (const ordered_json& element : document["elements"]) {
        names.push_back(element["name"]);
    }
    return names;
}

std::ptrdiff_t scansIn(const SimulatedTarget& target)
{
    const std::vector<ordered_json> calls = target.trace();
    return std::count_if(calls.begin(), calls.end(), [](const ordered_json& call) { return call["call"] == "scan"; });
}

using Names = std::vector<std::string>;

}  // namespace

TEST(Filtering, TakesASerialNumberAsItIsDisplayed)
{
    const SimulatedTarget target(twoBoards());
    EXPECT_EQ(namesWith({"--serial-numbers", "16(1)"}), (Names{"UserFirmware", "UserFpga"}));
}

TEST(Filtering, TakesAllElementsThatShowADisplayedType)
{
    const SimulatedTarget target(twoBoards());
    EXPECT_EQ(namesWith({"--element-names", "Firmware"}), (Names{"UserFirmware", "CnFirmware"}));
    EXPECT_EQ(namesWith({"--element-names", "Firmware", "--serial-numbers", "4711"}), (Names{"CnFirmware"}));
}

TEST(Filtering, TakesAnElementNamedAsOthersAreDisplayedAndThoseOthers)
{
    ordered_json document = twoBoards();
    document["tree"]["items"][1]["items"][0]["items"][0]["parameters"]["NAME"] = "Firmware";
    const SimulatedTarget target(document);
    EXPECT_EQ(namesWith({"--element-names", "Firmware"}), (Names{"UserFirmware", "Firmware"}));
}

TEST(Filtering, ScansOnceWhereEachNameSelectsSomething)
{
    const SimulatedTarget target(twoBoards());
    EXPECT_EQ(namesWith({"--element-names", "UserFpga,CnFirmware", "--serial-numbers", "4711,16777232"}),
              (Names{"UserFpga", "CnFirmware"}));
    EXPECT_EQ(scansIn(target), 1);
}

TEST(Filtering, NamesWhatSelectsNothingAndPrintsTheLibrarysTextOnce)
{
    const SimulatedTarget target(twoBoards());
    const RunResult result = ran({"installed", "--board-types", "CN7210,XX", "--serial-numbers", "16"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err,
              "trellan-update: nothing has board type XX; there are KR5120, CN7210\n"
              "trellan-update: nothing has serial number 16; there are 16777232 (16(1)), 4711\n");
    EXPECT_EQ(result.out.find("Device Update Tool"), result.out.rfind("Device Update Tool"));
}

TEST(Filtering, NamesNoSerialNumberOfABoardThatHasNone)
{
    ordered_json document = twoBoards();
    document["tree"]["items"][1]["parameters"]["PRODUCT/SERIAL_NUMBER"] = 0;
    const SimulatedTarget target(document);
    EXPECT_EQ(ran({"installed", "--serial-numbers", "16"}).err,
              "trellan-update: nothing has serial number 16; there is 16777232 (16(1))\n");
    EXPECT_EQ(namesWith({"--serial-numbers", "0"}), (Names{"CnFirmware"}));
}

TEST(Filtering, SaysNothingOfANameThatOnlyAnotherFilterLeavesOut)
{
    const SimulatedTarget target(twoBoards());
    const RunResult result = ran({"installed", "--board-types", "CN7210", "--element-names", "UserFpga"});
    EXPECT_EQ(result.err, "");
}

TEST(Filtering, EndsAnUpdateOfNothingWith5BeforeTheTargetIsLocked)
{
    const SimulatedTarget target(twoBoards());
    const TestArchive archive(description({}));
    const RunResult result = ran({"update", archive.path(), "--serial-numbers", "16"});
    EXPECT_EQ(result.status, 5);
    EXPECT_EQ(result.err,
              "trellan-update: nothing has serial number 16; there are 16777232 (16(1)), 4711\n"
              "trellan-update: the filters select no element; nothing was done\n");
    const std::vector<ordered_json> calls = target.trace();
    EXPECT_TRUE(
        std::none_of(calls.begin(), calls.end(), [](const ordered_json& call) { return call["call"] == "lock"; }));
}

TEST(Filtering, IsTheLibrarysAloneWhereNothingIsChecked)
{
    const SimulatedTarget target(twoBoards());
    EXPECT_EQ(namesWith({"--no-check", "--element-names", "Firmware"}), Names());
    EXPECT_EQ(scansIn(target), 1);
    const TestArchive archive(description({}));
    const RunResult result = ran({"update", archive.path(), "--serial-numbers", "16", "--no-check"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
}

TEST(Filtering, IsTheLibrarysAloneWhereTheWholeTargetCannotBeRead)
{
    ordered_json document = twoBoards();
    document["script"]["scan"] = {ordered_json::object(), {{"result", 1}}};
    const SimulatedTarget target(document);
    EXPECT_EQ(namesWith({"--element-names", "Firmware"}), Names());
    EXPECT_EQ(scansIn(target), 2);
}

TEST(Filtering, KeepsAFilteredOutTargetsNewFileFromBeingWritten)
{
    ordered_json document = twoBoards();
    document["tree"]["items"][1]["items"][0]["items"].push_back(
        fileElement(2, {{"NAME", "Settings"}, {"VERSION", "1.0"}, {"LOCATION", "*"}}));
    const SimulatedTarget target(document);
    const TestArchive archive(description(
        {fileEntry("site.cfg", {{"boardType", "CN7210"}, {"targetPath", "site.cfg"}, {"checksumCrc32", 4}})}));
    EXPECT_EQ(ran({"update", archive.path(), "--element-names", "Nothing"}).status, 5);
}

TEST(DetailedExitStatus, TellsWhetherThereIsSomethingToUpdate)
{
    const SimulatedTarget target(twoBoards());
    const TestArchive newer(
        description({fileEntry("a.bin", {{"version", "1.0"}, {"checksumCrc32", 9}}),
                     fileEntry("b.bin", {{"id", 2}, {"version", "1.0"}, {"checksumCrc32", 2}}),
                     fileEntry("c.bin", {{"boardType", "CN7210"}, {"version", "1.0"}, {"checksumCrc32", 3}})}));
    EXPECT_EQ(ran({"compare", newer.path(), "--detailed-exit-status"}).status, 10);
    EXPECT_EQ(ran({"compare", newer.path()}).status, 0);
    EXPECT_EQ(ran({"compare", newer.path(), "--detailed-exit-status", "--exclude", "0"}).status, 0);
    EXPECT_EQ(ran({"installed", "--detailed-exit-status"}).status, 2);
    EXPECT_EQ(ran({"explain", newer.path(), "--detailed-exit-status"}).status, 2);
}

TEST(RefusedTarget, IsNamedWithEachElementThatHasNoFile)
{
    const SimulatedTarget target(twoBoards());
    const TestArchive archive(description({fileEntry("a.bin", {{"version", "1.0"}, {"checksumCrc32", 9}})}));
    const RunResult result = ran({"update", archive.path()});
    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(
        result.err,
        "trellan-update: the archive has no file for KR5120, SN 16(1), FPGA (board KR5120, element UserFpga)\n"
        "trellan-update: the archive has no file for CN7210, SN 4711, Firmware (board CN7210, element CnFirmware)\n");
}
