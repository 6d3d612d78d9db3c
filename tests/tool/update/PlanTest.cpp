// Updates by a plan that a dry run has written: one that holds, and many that do not, each for a reason of its own.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TempDir.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"
#include "tool/CommandLine.h"

using nlohmann::ordered_json;

namespace {

ordered_json plannedDevice(const std::string& version = "1.0", unsigned checksum = 1)
{
    return target(
        {board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/SERIAL_NUMBER", 815}},
               {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", version}, {"CHECKSUM_CRC32", checksum}}),
                updateElement(2, {{"NAME", "UserFpga"}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", 2}})})});
}

ordered_json contents()
{
    return description({fileEntry("a.bin", {{"version", "2.0"}, {"checksumCrc32", 9}}),
                        fileEntry("b.bin", {{"id", 2}, {"version", "2.0"}, {"checksumCrc32", 8}})});
}

class Plans : public testing::Test {
protected:
    Plans() : target(plannedDevice()), archive(contents())
    {
        archive.addFile("a.bin", "new firmware");
        archive.addFile("b.bin", "new fpga");
        const RunResult dryRun = ran({"update", archive.path(), "--dry-run", "--json", "--no-check"});
        EXPECT_EQ(dryRun.status, 0);
        plan = dryRun.out;
    }

    // Updates by `text` as the plan.
    RunResult updated(const std::string& text, const std::vector<std::string>& options = {})
    {
        writeText(planFile(), text);
        std::vector<std::string> words = {"update", archive.path(), "--no-check", "--plan", planFile()};
        words.insert(words.end(), options.begin(), options.end());
        return ran(words);
    }

    // What is said of the plan that `updated` wrote.
    std::string thatPlan(const std::string& words) const
    {
        return "trellan-update: the plan " + planFile() + " " + words + "; nothing was done\n";
    }

    // Expects that nothing was done, and that this was said.
    void expectRefused(const RunResult& result, const std::string& reason)
    {
        EXPECT_EQ(result.status, 6);
        EXPECT_NE(result.err.find(reason), std::string::npos) << result.err;
        const std::vector<ordered_json> calls = target.trace();
        EXPECT_TRUE(
            std::none_of(calls.begin(), calls.end(), [](const ordered_json& call) { return call["call"] == "lock"; }));
    }

    void replaceTarget(const ordered_json& document) { writeText(target.path(), document.dump()); }

    std::string planFile() const { return (folder.path() / "plan.json").string(); }

    TempDir folder;
    SimulatedTarget target;
    TestArchive archive;
    std::string plan;
};

}  // namespace

TEST_F(Plans, ThatHoldsIsCarriedOut)
{
    EXPECT_EQ(updated(plan).status, 0);
    const std::vector<ordered_json> calls = target.trace();
    EXPECT_EQ(
        std::count_if(calls.begin(), calls.end(), [](const ordered_json& call) { return call["call"] == "update2"; }),
        2);
}

TEST_F(Plans, HoldsWhateverItsBlanks)
{
    EXPECT_EQ(updated(ordered_json::parse(plan).dump()).status, 0);
}

TEST_F(Plans, ThatIsNotThereIsNamed)
{
    const std::string absent = (folder.path() / "absent.json").string();
    expectRefused(
        ran({"update", archive.path(), "--no-check", "--plan", absent}),
        "trellan-update: the plan " + absent + " cannot be read: No such file or directory; nothing was done\n");
}

TEST_F(Plans, ThatIsNoPlanIsNamed)
{
    expectRefused(updated("not JSON"), thatPlan("is no JSON document"));
    expectRefused(updated(R"({"schemaVersion": 1e999})"), thatPlan("is no JSON document"));
    expectRefused(updated("[]"), thatPlan("is no document of update --dry-run --json"));
    for (const char* const document : {R"({"schemaVersion": 1, "command": "update", "elements": []})", "{}",
                                       R"({"schemaVersion": 1})", R"({"schemaVersion": 1, "command": "compare"})",
                                       R"({"schemaVersion": 1, "command": 7})", R"({"command": "update"})"}) {
        expectRefused(updated(document), thatPlan("is no document of update --dry-run --json"));
    }
}

// As a power cut leaves behind what was appended to a file.
TEST_F(Plans, WithANulByteIsNamedWhateverStandsBehindIt)
{
    expectRefused(updated(plan + '\0'), thatPlan("is no JSON document"));
    expectRefused(updated(plan + '\0' + R"( {"garbage": [)"), thatPlan("is no JSON document"));
}

TEST_F(Plans, ThatIsNestedDeeperThanTheStackIsNamed)
{
    const std::string deep = std::string(200'000, '[') + std::string(200'000, ']');
    for (const std::string& text :
         {R"({"schemaVersion": 1, "command": "update", "digest": "", "counts": )" + deep + "}",
          R"({"schemaVersion": 1, "command": "update", "digest": "", "elements": [{"keys": )" + deep + "}]}",
          R"({"schemaVersion": )" + deep + R"(, "command": "update", "digest": ""})", deep}) {
        expectRefused(updated(text), thatPlan("is no document of update --dry-run --json"));
    }
}

// Which would take the square of their number to read.
TEST_F(Plans, WithMoreMembersThanAPlanHasIsNamed)
{
    std::string members = "0";
    for (int i = 0; i < 501; ++i) {
        members += ", \"m" + std::to_string(i) + "\": 0";
    }
    expectRefused(
        updated(R"({"schemaVersion": 1, "command": "update", "digest": "", "counts": {"m": )" + members + "}}"),
        thatPlan("is no document of update --dry-run --json"));
}

TEST_F(Plans, ThatIsCutShortIsNamed)
{
    expectRefused(updated(plan.substr(0, plan.size() / 2)), thatPlan("is cut short"));
    expectRefused(updated(""), thatPlan("is cut short"));
}

TEST_F(Plans, ThatWasEditedIsNamed)
{
    ordered_json edited = ordered_json::parse(plan);
    edited["elements"][1]["state"] = "upToDate";
    expectRefused(updated(edited.dump()), thatPlan("was changed since it was written"));
    edited["elements"] = {"Firmware", 1, {2}};
    expectRefused(updated(edited.dump()), thatPlan("was changed since it was written"));
    edited["options"] = {"text"};
    expectRefused(updated(edited.dump()), thatPlan("was changed since it was written"));
    edited["elements"] = {{"a", {{"b", nullptr}}}};
    expectRefused(updated(edited.dump()), thatPlan("was changed since it was written"));
    edited = ordered_json::parse(plan);
    edited["others"] = ordered_json::array({edited["elements"][0]});
    expectRefused(updated(edited.dump()), thatPlan("was changed since it was written"));
}

TEST_F(Plans, WithAMemberThatStandsTwiceWasEdited)
{
    expectRefused(updated(R"({"supported": false, )" + plan.substr(1)), thatPlan("was changed since it was written"));
    std::string twice = plan;
    const std::string state = R"("state": "update")";
    twice.replace(twice.find(state), state.size(), R"("state": "upToDate", "state": "update")");
    expectRefused(updated(twice), thatPlan("was changed since it was written"));
}

TEST_F(Plans, OfAnotherSchemaVersionIsNamed)
{
    ordered_json newer = ordered_json::parse(plan);
    newer["schemaVersion"] = 2;
    expectRefused(updated(newer.dump()), thatPlan("has schema version 2, and this tool knows version 1 alone"));
    newer["schemaVersion"] = 1.0;
    expectRefused(updated(newer.dump()), thatPlan("has schema version 1.0, and this tool knows version 1 alone"));
}

TEST_F(Plans, OfAnUpdateThatWasRefusedIsNamed)
{
    const TestArchive partial(description({fileEntry("a.bin", {{"checksumCrc32", 9}})}));
    const RunResult refused = ran({"update", partial.path(), "--dry-run", "--json", "--no-check"});
    EXPECT_EQ(refused.status, 4);
    expectRefused(updated(refused.out), thatPlan("is of an update that was refused"));
}

TEST_F(Plans, DoesNotHoldForAnotherInstalledVersion)
{
    replaceTarget(plannedDevice("1.1"));
    expectRefused(updated(plan), R"(KR5120, SN 815, Firmware: installedVersion was "1.0" in the plan, and is "1.1")");
}

TEST_F(Plans, DoesNotHoldForAnotherInstalledChecksum)
{
    replaceTarget(plannedDevice("1.0", 7));
    const RunResult result = updated(plan);
    EXPECT_EQ(result.status, 6);
    EXPECT_EQ(result.err,
              "trellan-update: KR5120, SN 815, Firmware: installedChecksum was 1 in the plan, and is 7\n"
              "trellan-update: the plan no longer holds; nothing was done\n");
}

TEST_F(Plans, DoesNotHoldForOtherElements)
{
    ordered_json fewer = plannedDevice();
    fewer["tree"]["items"][0]["items"][0]["items"].erase(1);
    replaceTarget(fewer);
    expectRefused(updated(plan), "the number of elements was 2 in the plan, and is 1");
    ordered_json other = plannedDevice();
    other["tree"]["items"][0]["parameters"]["PRODUCT/SERIAL_NUMBER"] = 816;
    replaceTarget(other);
    expectRefused(updated(plan), R"(displayName was "KR5120, SN 815, Firmware" in the plan)");
}

TEST_F(Plans, ThatDiffersInMuchHasTwentyDifferencesNamedAndTheOthersCounted)
{
    const auto device = [](const std::string& version) {
        std::vector<ordered_json> elements;
        for (unsigned i = 1; i <= 23; ++i) {
            elements.push_back(updateElement(i, {{"ID", 1}, {"NAME", "E" + std::to_string(i)}, {"VERSION", version}}));
        }
        return ::target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/SERIAL_NUMBER", 815}}, elements)});
    };
    replaceTarget(device("1.0"));
    const std::string planned = ran({"update", archive.path(), "--dry-run", "--json", "--no-check"}).out;
    replaceTarget(device("1.1"));
    const RunResult result = updated(planned);
    expectRefused(result, R"(E20: installedVersion was "1.0" in the plan, and is "1.1")");
    expectRefused(result, "and 3 more differences\n");
    EXPECT_EQ(result.err.find("E21"), std::string::npos);
}

TEST_F(Plans, DoesNotHoldForAnotherDescription)
{
    writeText(archive.path() + "/archive.json", contents().dump(1));
    expectRefused(updated(plan), "the archive's description is another one than in the plan");
}

TEST_F(Plans, DoesNotHoldForAnotherArchiveVersion)
{
    ordered_json other = contents();
    other["info"]["archiveVersion"] = "2.3.5";
    writeText(archive.path() + "/archive.json", other.dump());
    expectRefused(updated(plan), R"(the archive's version was "2.3.4" in the plan, and is "2.3.5")");
}

TEST_F(Plans, DoesNotHoldForOtherFilesAndPhases)
{
    ordered_json other = contents();
    other["files"][0]["sequence"] = 5;
    other["files"][1]["name"] = "c.bin";
    writeText(archive.path() + "/archive.json", other.dump());
    const RunResult result = updated(plan);
    expectRefused(result, R"(FPGA: updateFile was "b.bin" in the plan, and is "c.bin")");
    expectRefused(result, "Firmware: phase was 0 in the plan, and is 1");
}

TEST_F(Plans, DoesNotHoldForOtherFiltersAndFlags)
{
    expectRefused(updated(plan, {"--force"}), "--force was false in the plan, and is true");
    expectRefused(updated(plan, {"--element-names", "UserFirmware,UserFpga"}), R"(--element-names was "" in the plan)");
    expectRefused(updated(plan, {"--exclude", "1"}), "--exclude was [] in the plan, and is [1]");
}

TEST_F(Plans, MayBeWrittenOnceMoreWhereItHolds)
{
    EXPECT_EQ(updated(plan, {"--dry-run", "--json"}).out, plan);
}
