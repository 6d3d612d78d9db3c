// What a shell is told when it asks what a word may become.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "tool/CommandLine.h"

namespace {

// What is told of the last of these words.
std::string completed(std::vector<std::string> words)
{
    words.insert(words.begin(), {"complete", "--"});
    const RunResult result = ran(words);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    return result.out;
}

// A target with two boards; `names` are those of the elements of the second one.
nlohmann::ordered_json targetWith(const std::vector<std::string>& names)
{
    std::vector<nlohmann::ordered_json> elements;
    for (const std::string& name : names) {
        elements.push_back(updateElement(static_cast<unsigned>(elements.size() + 1), {{"NAME", name}}));
    }
    return target(
        {board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/SERIAL_NUMBER", 4711}, {"PRODUCT/NAME", "Host"}},
               {updateElement(1, {{"NAME", "UserFirmware"}}), updateElement(2, {{"NAME", "UserFpga"}})}),
         board("CN", {{"PRODUCT/BOARD_TYPE", "CN 24 V"}, {"PRODUCT/SERIAL_NUMBER", 47}}, elements)});
}

// As completed(), with the target named.
std::string completedOn(const SimulatedTarget& device, std::vector<std::string> words)
{
    words.insert(words.begin(), {"scan", "--target", device.path().string()});
    return completed(words);
}

}  // namespace

TEST(Completion, BeginsWithTheCommandsThatHelpShows)
{
    EXPECT_EQ(completed({"re"}),
              "words\n"
              "reboot-support\tTell whether the device can be rebooted automatically\n"
              "record\tWrite the target's inventory as a target file, for a simulated target like it\n");
    EXPECT_EQ(completed({"help", "he"}), "words\nhelp\tPrint what the tool does, or a command's options\n");
    EXPECT_EQ(completed({"complet"}), "words\n");
    EXPECT_EQ(ran({"complete"}).out, completed({""}));
}

TEST(Completion, TellsTheOptionsThatHaveAMeaningForTheCommandAndMayStillBeGiven)
{
    EXPECT_EQ(completed({"update", "--ver"}),
              "words\n"
              "--verbose\tPrint more diagnostics\n"
              "--verify\tScan again after the update, and compare each updated element with its file\n");
    EXPECT_EQ(completed({"compare", "/a", "-v", "--ver"}), "words\n");
    EXPECT_EQ(completed({"compare", "--exclude", "1", "--ex"}),
              "words\n--exclude\tLeave the element with this number out of the update; may be repeated\n");
    EXPECT_EQ(completed({"-"}), "words\n--help\tPrint this help\n--version\tPrint the tool's version\n");
    const std::string json = "words\n--json\tPrint a JSON document; the library's own text goes to standard error\n";
    EXPECT_EQ(completed({"--version", "--js"}), json);
    EXPECT_EQ(completed({"describe", "--help", "--js"}), json);
    EXPECT_EQ(completed({"describe", "--js"}), "words\n");
    EXPECT_EQ(completed({"version", "--no-c"}), "words\n");
    EXPECT_EQ(completed({"nothing", "--"}), "words\n");
    EXPECT_EQ(completed({"check", "--", "-"}), "folders\n");
}

TEST(Completion, TellsWhereTheShellsOwnFilesAndFoldersAreMeant)
{
    EXPECT_EQ(completed({"update", ""}), "folders\n");
    EXPECT_EQ(completed({"update", "--force", "a"}), "folders\n");
    EXPECT_EQ(completed({"coverage", "a", "b", "c"}), "files\n");
    EXPECT_EQ(completed({"inspect", "a", "b"}), "files\n");
    EXPECT_EQ(completed({"scan", "--target", "t"}), "files\n");
    EXPECT_EQ(completed({"update", "a", "--plan", ""}), "files\n");
    EXPECT_EQ(completed({"update", "a", "b"}), "words\n");
    EXPECT_EQ(completed({"version", ""}), "words\n");
}

TEST(Completion, TellsTheChoicesOfAnOption)
{
    EXPECT_EQ(completed({"update", "a", "--progress", ""}), "words\nalways\t\nauto\t\nnever\t\n");
    EXPECT_EQ(completed({"update", "a", "--stall-timeout", ""}), "words\n");
}

TEST(Completion, OfAListTellsWhatTheNamedTargetHas)
{
    const SimulatedTarget device(targetWith({"CnFirmware", "UserFpga"}));
    EXPECT_EQ(completedOn(device, {"--board-types", ""}), "list\nKR5120\tHost\nCN 24 V\tCN 24 V\n");
    EXPECT_EQ(completedOn(device, {"--serial-numbers", "47"}), "list\n4711\tHost\n47\tCN 24 V\n");
    EXPECT_EQ(completedOn(device, {"--element-names", "User"}), "list\nUserFirmware\tFirmware\nUserFpga\tFPGA\n");
    EXPECT_EQ(completedOn(device, {"--board-types", "CN 24 V", "--element-names", ""}),
              "list\nCnFirmware\tFirmware\nUserFpga\tFPGA\n");
}

TEST(Completion, OfAListAddsToTheNamesThatItHas)
{
    const SimulatedTarget device(targetWith({"a", "b c", "b d,e"}));
    const auto names = [&](const std::string& list) { return completedOn(device, {"--element-names", list}); };
    EXPECT_EQ(names("a,"), "list\na,UserFirmware\tFirmware\na,UserFpga\tFPGA\na,b c\tb c\na,b d,e\tb d,e\n");
    EXPECT_EQ(names("a b"), "list\na b c\tb c\na b d,e\tb d,e\n");
    EXPECT_EQ(names("UserFpga b d"), "list\nUserFpga b d,e\tb d,e\n");
    EXPECT_EQ(names("a, UserF"), "list\na, UserFirmware\tFirmware\na, UserFpga\tFPGA\n");
    EXPECT_EQ(names("UserFpga,a,b c,b d,e,"), "list\nUserFpga,a,b c,b d,e,UserFirmware\tFirmware\n");
    EXPECT_EQ(names("x"), "list\n");
    const SimulatedTarget numbered(targetWith({"Fan", "Fan2"}));
    EXPECT_EQ(completedOn(numbered, {"--element-names", "Fan2,F"}), "list\nFan2,Fan\tFan\n");
}

TEST(Completion, OfAnIndexTellsTheElementsThatTheFiltersSelect)
{
    const SimulatedTarget device(targetWith({"CnFirmware"}));
    EXPECT_EQ(completedOn(device, {"--exclude", ""}),
              "words\n0\tHost, SN 4711, Firmware\n1\tHost, SN 4711, FPGA\n2\tCN 24 V, SN 47, Firmware\n");
    EXPECT_EQ(completedOn(device, {"--board-types", "CN 24 V", "--exclude", ""}),
              "words\n0\tCN 24 V, SN 47, Firmware\n");
}

TEST(Completion, LeavesOutNamesThatNobodyCanType)
{
    const SimulatedTarget device(targetWith({"a\nb", "c\td", "e\x1b[m", "\xc3\xa9"}));
    EXPECT_EQ(completedOn(device, {"--board-types", "CN 24 V", "--element-names", ""}), "list\n\xc3\xa9\t\xc3\xa9\n");
}

TEST(Completion, LeavesOutNamesThatATerminalWouldObeyOrTurnAround)
{
    const SimulatedTarget device(
        targetWith({"a\u0080", "b\u009b2J", "c\u009f", "d\u00a0", "e\u061c", "f\u200e", "g\u2028", "h\u202ecod.exe",
                    "i\u2066", "j\u2069", "k\u206a", "l\u2027", "m\u202f"}));
    EXPECT_EQ(completedOn(device, {"--board-types", "CN 24 V", "--element-names", ""}),
              "list\nd\u00a0\td\u00a0\nk\u206a\tk\u206a\nl\u2027\tl\u2027\nm\u202f\tm\u202f\n");
}

TEST(Completion, LeavesOutValuesThatWouldBeTakenForAnOption)
{
    const SimulatedTarget device(targetWith({"-dash", "--force", "a-b"}));
    const auto names = [&](const std::string& list) {
        return completedOn(device, {"--board-types", "CN 24 V", "--element-names", list});
    };
    EXPECT_EQ(names(""), "list\na-b\ta-b\n");
    EXPECT_EQ(names("-"), "list\n");
    EXPECT_EQ(names("a-b,-"), "list\na-b,-dash\t-dash\na-b,--force\t--force\n");
}

TEST(Completion, ReadsNoTargetThatIsNotNamedAndTracesNothing)
{
    const SimulatedTarget device(targetWith({}));
    EXPECT_EQ(completed({"scan", "--board-types", ""}), "list\n");
    EXPECT_TRUE(std::filesystem::exists(device.path()));
    completedOn(device, {"--board-types", ""});
    EXPECT_FALSE(std::filesystem::exists(device.folder() / "trace.jsonl"));
}

TEST(Completion, OfATargetThatCannotBeReadTellsNothing)
{
    EXPECT_EQ(completed({"scan", "--target", "/nowhere/target.json", "--board-types", ""}), "list\n");
    EXPECT_EQ(completed({"scan", "--target", "", "--board-types", ""}), "list\n");
}
