// Updates that are verified by another scan.
#include <gtest/gtest.h>

#include "support/BuildTree.h"
#include "support/Process.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "tool/CommandLine.h"

using nlohmann::ordered_json;

namespace {

// CRC-32 of "content".
constexpr unsigned contentChecksum = 0xFEC530A9;

ordered_json deviceToVerify(unsigned active = 1)
{
    return target({board(
        "HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/SERIAL_NUMBER", 815}},
        {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", 1}, {"ACTIVE", active}}),
         updateElement(2, {{"NAME", "UserFpga"}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", 2}})})});
}

// An archive whose first file has the content "content" and the checksum `stated`; the second is installed.
class VerifiedArchive : public TestArchive {
public:
    explicit VerifiedArchive(unsigned stated)
        : TestArchive(description({fileEntry("a.bin", {{"version", "1.0"}, {"checksumCrc32", stated}}),
                                   fileEntry("b.bin", {{"id", 2}, {"version", "1.0"}, {"checksumCrc32", 2}})}))
    {
        addFile("a.bin", "content");
    }
};

}  // namespace

TEST(VerifiedUpdates, SaysNothingWhereTheTargetHasTheFilesContent)
{
    const SimulatedTarget target(deviceToVerify());
    const VerifiedArchive archive(contentChecksum);
    const RunResult result = ran({"update", archive.path(), "--verify", "--json"});
    EXPECT_EQ(result.status, 0);
    const ordered_json document = ordered_json::parse(result.out);
    EXPECT_EQ(document["elements"][0]["state"], "updated");
    EXPECT_EQ(document["elements"][0]["verified"], true);
    EXPECT_FALSE(document["elements"][1].contains("verified"));
}

TEST(VerifiedUpdates, NamesWhatDoesNotHaveItsFilesContentAndEndsWith1)
{
    const SimulatedTarget target(deviceToVerify());
    const VerifiedArchive archive(5);
    EXPECT_EQ(ran({"update", archive.path(), "--no-check"}).status, 0);
    const RunResult result = ran({"update", archive.path(), "--no-check", "--verify"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(
        result.err,
        "trellan-update: KR5120, SN 815, Firmware does not have its file's content: checksum 4274335913, not 5\n");
}

TEST(VerifiedUpdates, TellsThatAnElementOnlyBecomesActiveAfterARestart)
{
    const SimulatedTarget target(deviceToVerify(0));
    const VerifiedArchive archive(5);
    const RunResult result = ran({"update", archive.path(), "--no-check", "--verify", "--json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(ordered_json::parse(result.out)["elements"][0]["verified"], nullptr);
    EXPECT_NE(result.err.find("Firmware cannot be verified before a restart"), std::string::npos) << result.err;
}

// In a process of its own: the errors that it reports stay in that.
TEST(VerifiedUpdates, ComparesVersionsWhereTheTargetTellsNoChecksum)
{
    ordered_json device = deviceToVerify();
    device["script"]["values"]["/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT:CHECKSUM_CRC32"] = {
        {{"code", 1}, {"text", "no answer"}}};
    const SimulatedTarget target(device);
    TestArchive archive(description({fileEntry("a.bin", {{"version", "2.0"}, {"checksumCrc32", contentChecksum}}),
                                     fileEntry("b.bin", {{"id", 2}, {"version", "1.0"}, {"checksumCrc32", 2}})}));
    archive.addFile("a.bin", "content");
    const ProcessResult result =
        runProcess(TRELLAN_TOOL, {"update", archive.path(), "--no-progress", "--verify", "--json"}, archive.path(),
                   {"TRELLAN_TARGET=" + target.path().string()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(ordered_json::parse(result.output)["elements"][0]["verified"], false);
    EXPECT_NE(result.errors.find("Firmware does not have its file's content: version 1.0, not 2.0\n"),
              std::string::npos)
        << result.errors;
}
