// The command that holds an archive against many targets.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/BuildTree.h"
#include "support/Process.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TempDir.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"
#include "tool/CommandLine.h"
#include "tool/JsonDocument.h"

using nlohmann::ordered_json;

namespace {

ordered_json element(unsigned id, const std::string& version)
{
    return updateElement(id, {{"NAME", "E" + std::to_string(id)}, {"VERSION", version}, {"CHECKSUM_CRC32", 1}});
}

ordered_json hcn(std::vector<ordered_json> elements)
{
    return board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/SERIAL_NUMBER", 16777232}}, std::move(elements));
}

ordered_json io(std::vector<ordered_json> elements)
{
    return board("IOMODULE", {{"PRODUCT/BOARD_TYPE", "IO7"}, {"PRODUCT/SERIAL_NUMBER", 5}}, std::move(elements));
}

ordered_json keysOf(const std::string& boardType, unsigned id)
{
    return {{"boardType", boardType}, {"boardVariant", nullptr}, {"boardId", 0},
            {"hwCompatibilityId", 0}, {"swCompatibilityId", 0},  {"id", id},
            {"targetPath", nullptr}};
}

class CoverageCommand : public testing::Test {
protected:
    CoverageCommand()
    {
        put("a.json", target({hcn({element(1, "1.0"), element(2, "2.3.4")}), io({element(1, "1.0")})}));
        put("b.json",
            target({hcn({element(1, "1.0"), element(9, "1.0")}), io({element(1, "1.0"), element(8, "1.0")})}));
        put("c.json", target({io({element(8, "1.0"), element(8, "1.0")})}));
    }

    void put(const std::string& name, const ordered_json& document) const
    {
        writeText(folder.path() / name, document.dump());
    }

    std::string path(const std::string& name) const { return (folder.path() / name).string(); }

    RunResult covered(std::vector<std::string> words) const
    {
        words.insert(words.begin(), {"coverage", archive.path()});
        return ran(words);
    }

    ordered_json document(std::vector<std::string> words) const
    {
        words.emplace_back("--json");
        return conformingDocument(covered(words).out);
    }

    const TestArchive archive = TestArchive(
        description({fileEntry("passed.bin", {{"featureLevel", 99}}), fileEntry("one.bin", {{"id", 1}}),
                     fileEntry("two.bin", {{"id", 2}}), fileEntry("io.bin", {{"boardType", "IO7"}, {"id", 1}}),
                     fileEntry("never.bin", {{"id", 3}})}));
    const TempDir folder;
};

}  // namespace

TEST_F(CoverageCommand, TellsOfEachTargetWhetherItIsSupportedAndTheCountOfEachState)
{
    const RunResult result = covered({folder.path().string(), "--json"});
    EXPECT_EQ(result.status, 0);
    const ordered_json targets = conformingDocument(result.out)["targets"];
    ASSERT_EQ(targets.size(), 3u);
    EXPECT_EQ(targets[0]["target"], path("a.json"));
    EXPECT_EQ(targets[0]["supported"], true);
    EXPECT_EQ(targets[0]["counts"], ordered_json::parse(R"({"noFile": 0, "custom": 0, "upToDate": 1, "excluded": 0,
                                                            "blocked": 0, "update": 2})"));
    EXPECT_EQ(targets[0]["error"], nullptr);
    EXPECT_EQ(targets[1]["supported"], false);
    EXPECT_EQ(targets[1]["counts"], ordered_json::parse(R"({"noFile": 2, "custom": 0, "upToDate": 0, "excluded": 0,
                                                            "blocked": 2, "update": 0})"));
    EXPECT_EQ(targets[2]["supported"], true);
    EXPECT_EQ(targets[2]["counts"]["noFile"], 2);
}

TEST_F(CoverageCommand, TellsWhatGetsEachEntryAndWhichEntriesNothingUses)
{
    const ordered_json found = document({folder.path().string()});
    EXPECT_EQ(found["files"], ordered_json::parse(R"([
        {"file": 1, "name": "one.bin", "elements": 2, "version": "2.3.4"},
        {"file": 2, "name": "two.bin", "elements": 1, "version": "2.3.4"},
        {"file": 3, "name": "io.bin", "elements": 2, "version": "2.3.4"},
        {"file": 4, "name": "never.bin", "elements": 0, "version": "2.3.4"}])"));
    EXPECT_EQ(found["unused"], ordered_json::parse("[4]"));
}

TEST_F(CoverageCommand, GroupsTheElementsWithoutAFileByTheirKeys)
{
    const ordered_json found = document({folder.path().string()})["noFile"];
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0], (ordered_json{{"keys", keysOf("IO7", 8)}, {"elements", 3}, {"targets", 2}}));
    EXPECT_EQ(found[1], (ordered_json{{"keys", keysOf("KR5120", 9)}, {"elements", 1}, {"targets", 1}}));
}

TEST_F(CoverageCommand, TellsOfEachTargetTheKindsOfItsElements)
{
    const ordered_json found = document({path("b.json"), path("c.json")});
    EXPECT_EQ(found["kinds"][0],
              (ordered_json{{"keys", keysOf("IO7", 1)}, {"elements", 1}, {"files", ordered_json::array({3})}}));
    EXPECT_EQ(found["kinds"][1],
              (ordered_json{{"keys", keysOf("IO7", 8)}, {"elements", 3}, {"files", ordered_json::array()}}));
    EXPECT_EQ(found["targets"][1]["kinds"], ordered_json::parse(R"([{"kind": 1, "counts": {"noFile": 2}}])"));
}

TEST_F(CoverageCommand, NamesATargetThatCannotBeReadAndGoesOn)
{
    put("b.json", ordered_json::object());
    const RunResult result = covered({path("a.json"), path("b.json"), path("none.json"), path("c.json"), "--json"});
    EXPECT_EQ(result.status, 1);
    const std::string first = "The target file " + path("b.json") + " cannot be read: tree: missing.";
    const std::string second = "The target file " + path("none.json") + " cannot be read: No such file or directory.";
    const ordered_json targets = conformingDocument(result.out)["targets"];
    EXPECT_EQ(targets[1], (ordered_json{{"target", path("b.json")},
                                        {"supported", nullptr},
                                        {"counts", nullptr},
                                        {"error", first},
                                        {"kinds", nullptr}}));
    EXPECT_EQ(targets[2]["error"], second);
    EXPECT_EQ(targets[0]["counts"]["update"], 2);
    EXPECT_EQ(targets[3]["counts"]["noFile"], 2);
    EXPECT_NE(result.err.find("trellan-update: " + path("b.json") + ": " + first + "\n"), std::string::npos);
    EXPECT_NE(result.err.find("trellan-update: " + path("none.json") + ": " + second + "\n"), std::string::npos);
}

TEST_F(CoverageCommand, NamesAnEmptyPathAndAFolderWithoutTargetsAndGoesOn)
{
    std::filesystem::create_directory(folder.path() / "empty");
    const RunResult result = covered({"", path("empty"), path("a.json"), "--json"});
    EXPECT_EQ(result.status, 1);
    const ordered_json targets = conformingDocument(result.out)["targets"];
    EXPECT_EQ(targets[0]["error"], "the path is empty");
    EXPECT_EQ(targets[1]["error"], "the folder holds no .json file");
    EXPECT_EQ(targets[2]["counts"]["update"], 2);
}

TEST_F(CoverageCommand, NamesALinkThatLeadsToItself)
{
    std::filesystem::create_symlink("loop.json", folder.path() / "loop.json");
    const RunResult result = covered({path("loop.json"), path("a.json"), "--json"});
    EXPECT_EQ(result.status, 1);
    const ordered_json targets = conformingDocument(result.out)["targets"];
    EXPECT_NE(targets[0]["error"].get<std::string>().find("Too many levels of symbolic links"), std::string::npos);
    EXPECT_EQ(targets[1]["counts"]["update"], 2);
}

TEST_F(CoverageCommand, NeedsAnArchiveThatCanBeRead)
{
    const RunResult result = ran({"coverage", "/nowhere", path("a.json"), "--json"});
    EXPECT_EQ(result.status, 3);
    const ordered_json found = conformingDocument(result.out);
    EXPECT_EQ(found["command"], "coverage");
    EXPECT_EQ(found["error"]["status"], 3);
}

TEST_F(CoverageCommand, NeedsATarget)
{
    EXPECT_EQ(covered({}).status, 2);
}

TEST_F(CoverageCommand, NotesAnOptionThatNamesOneTargetAlone)
{
    const RunResult result = covered({path("a.json"), "--target", path("b.json")});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.err.find("note: --target has no meaning for coverage\n"), std::string::npos);
}

TEST_F(CoverageCommand, SelectsByWhatIsDisplayedToo)
{
    const ordered_json found = document({path("a.json"), path("c.json"), "--serial-numbers", "16(1)"});
    EXPECT_EQ(found["targets"][0]["counts"]["update"], 1);
    EXPECT_EQ(found["targets"][0]["counts"]["upToDate"], 1);
    EXPECT_EQ(found["targets"][1]["counts"]["noFile"], 0);
}

TEST_F(CoverageCommand, NamesATargetThatCannotBeReadAgainForWhatIsDisplayed)
{
    ordered_json silent = target({hcn({element(1, "1.0")})});
    silent["script"]["scan"] = {ordered_json::object(), {{"result", 1}}, {{"result", 1}}};
    put("silent.json", silent);
    const ordered_json found = document({path("silent.json"), path("a.json"), "--serial-numbers", "16(1)"});
    EXPECT_EQ(found["targets"][0]["error"],
              "ERROR: Cannot read target device information.\n\tPower-cycle the system and retry.\n"
              "\tIf the problem persists, contact Velorant support.");
    EXPECT_TRUE(found["targets"][0]["supported"].is_null());
    EXPECT_EQ(found["targets"][1]["counts"]["update"], 1);
}

TEST_F(CoverageCommand, NamesWhatSelectsNothingOnAnyTarget)
{
    const RunResult result = covered({path("a.json"), path("c.json"), "--board-types", "KR5120,XX1"});
    EXPECT_NE(result.err.find("trellan-update: nothing has board type XX1 on any target\n"), std::string::npos);
    EXPECT_EQ(result.err.find("nothing has board type KR5120"), std::string::npos);
}

TEST_F(CoverageCommand, LeavesOutWhatIsExcludedOnEachTarget)
{
    const ordered_json found = document({path("a.json"), path("c.json"), "--exclude", "0"});
    EXPECT_EQ(found["targets"][0]["counts"]["excluded"], 1);
    EXPECT_EQ(found["targets"][0]["counts"]["update"], 1);
    EXPECT_EQ(found["targets"][1]["counts"]["noFile"], 2);
}

TEST_F(CoverageCommand, NamesAnIndexToExcludeThatNoTargetHas)
{
    // Target a has three elements, target c two.
    const RunResult result = covered({path("a.json"), path("c.json"), "--exclude", "2", "--exclude", "3"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err,
              "WARNING: File entry 0 is not supported. Ignoring this entry.\n"
              "trellan-update: warning: there is no element 3 to exclude on any target\n");
}

TEST_F(CoverageCommand, ForcesWhereItIsAskedTo)
{
    EXPECT_EQ(document({path("a.json"), "--force"})["targets"][0]["counts"]["update"], 3);
}

TEST_F(CoverageCommand, GivesTheFlashDriveOfEachTargetItsOwnFiles)
{
    const ordered_json file = fileElement(1, {{"NAME", "File"}, {"LOCATION", "site.cfg"}, {"VALID", 0}});
    const TestArchive files(description(
        {fileEntry("site.cfg", {{"targetPath", "site.cfg"}, {"version", nullptr}, {"checksumCrc32", 907060870}})}));
    for (const char* const name : {"x", "y"}) {
        ordered_json withDrive = target({hcn({file})});
        withDrive["flashDrive"] = name;
        std::filesystem::create_directory(folder.path() / name);
        put(name + std::string(".json"), withDrive);
    }
    writeText(folder.path() / "y" / "site.cfg", "hello");
    const RunResult result = ran({"coverage", files.path(), path("x.json"), path("y.json"), path("x.json"), "--json"});
    if (result.out.find("user namespace") != std::string::npos) {
        GTEST_SKIP() << "this machine allows no private mounts";
    }
    const ordered_json targets = conformingDocument(result.out)["targets"];
    EXPECT_EQ(targets[0]["counts"]["update"], 1);
    EXPECT_EQ(targets[1]["counts"]["upToDate"], 1);
    EXPECT_EQ(targets[2]["counts"]["update"], 1);
}

TEST_F(CoverageCommand, ReadsATargetThatStandsThereTwiceAsOneThatStandsThereOnce)
{
    ordered_json scripted = target({io({element(8, "1.0")})});
    scripted["script"] = {{"scan", {ordered_json::object(), {{"result", 1}}, {{"result", 1}}}}};
    put("a.json", scripted);
    const RunResult result = covered({path("a.json"), path("a.json"), path("a.json")});
    EXPECT_EQ(result.status, 0) << result.err;
}

TEST_F(CoverageCommand, SaysOnceWhatOfATargetCannotBeReadAndEndsWith1AsCompareDoes)
{
    ordered_json scripted = target({board("IOMODULE", {{"PRODUCT/BOARD_TYPE", "IO7"}, {"PRODUCT/NAME", "I/O board"}},
                                          {element(8, "1.0"), element(8, "1.0")})});
    scripted["script"] = {{"values", {{"/ROOT/IOMODULE:PRODUCT/NAME", {{{"code", 2}, {"text", "cannot read"}}}}}}};
    put("a.json", scripted);
    const RunResult result = covered({path("a.json"), "--json"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "WARNING: File entry 0 is not supported. Ignoring this entry.\ntrellan-update: " +
                              path("a.json") + ": ERROR: cannot read\n");
    const ordered_json document = conformingDocument(result.out);
    EXPECT_EQ(document["targets"][0]["error"], nullptr);
    EXPECT_EQ(document["targets"][0]["counts"]["noFile"], 2);
    // In a process of its own, since the errors would be reported here once more.
    EXPECT_EQ(runProcess(TRELLAN_TOOL, {"compare", archive.path(), "--target", "a.json"}, folder.path()).status, 1);
}

TEST_F(CoverageCommand, SaysOfWhichTargetItIsWarned)
{
    put("a.json", target({item("IOMODULE", {{"PRODUCT/BOARD_TYPE", "IO7"}}, {element(8, "1.0")})}));
    const RunResult result = covered({path("a.json"), path("c.json")});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err,
              "WARNING: File entry 0 is not supported. Ignoring this entry.\ntrellan-update: " + path("a.json") +
                  ": WARNING: /ROOT/IOMODULE/UPDATE_ELEMENT[8] has no UPDATE_INFO parent item!\n");
}

TEST_F(CoverageCommand, PrintsWhatItHasFoundAlsoWhereThePageCannotBeWritten)
{
    const RunResult text = covered({path("a.json")});
    const RunResult result = covered({path("a.json"), "--html", path("none/page.html")});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, text.out);
    EXPECT_EQ(result.err, text.err + "trellan-update: " + path("none/page.html") +
                              " cannot be written: No such file or directory\n");
    const RunResult json = covered({path("a.json"), "--json", "--html", path("none/page.html")});
    EXPECT_EQ(json.status, 1);
    EXPECT_EQ(conformingDocument(json.out)["targets"][0]["counts"]["update"], 2);
}

TEST_F(CoverageCommand, KeepsNamesWithLineEndsOnOneLine)
{
    put("li\nne\t.json",
        target({hcn({element(1, "1.0")}), board("IOMODULE", {{"PRODUCT/BOARD_TYPE", "I\rO"}}, {element(8, "1.0")})}));
    const TestArchive named(description({fileEntry("o\nne\x1b.bin", {{"id", 1}}), fileEntry("é.bin", {{"id", 2}})}));
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    const RunResult result = ran({"coverage", named.path(), "li\nne\t.json"});
    std::filesystem::current_path(before);
    EXPECT_EQ(result.out,
              "Target            | Supported | Update | Up to date | Excluded | Custom | Blocked | "
              "Without a file\n" +
                  std::string(98, '-') +
                  "\n"
                  "li\\x0ane\\x09.json | yes       | 1      | 0          | 0        | 0      | 0       | 1\n"
                  "\n"
                  "Entry    | File            | Elements\n"
                  "-------------------------------------\n"
                  "files[0] | o\\x0ane\x1b.bin | 1\n"
                  "files[1] | é.bin           | none\n"
                  "\n"
                  "Without a file in the archive:\n"
                  "    I\\x0dO, boardId 0, hwCompatibilityId 0, swCompatibilityId 0, id 8: 1 element of 1 "
                  "target\n"
                  "\n"
                  "1 target: 1 supported, 0 not supported, 0 that cannot be read; entries that nothing "
                  "uses: 1 of 2\n");
}

TEST_F(CoverageCommand, LeavesNothingBehind)
{
    EXPECT_EQ(covered({folder.path().string()}).status, 0);
    std::size_t files = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        ++files;
    }
    EXPECT_EQ(files, 3u);
}

TEST_F(CoverageCommand, PrintsTablesForPeople)
{
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    const RunResult result = covered({"a.json", "b.json", "none.json"});
    std::filesystem::current_path(before);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out,
              R"(Target    | Supported      | Update | Up to date | Excluded | Custom | Blocked | Without a file
-----------------------------------------------------------------------------------------------
a.json    | yes            | 2      | 1          | 0        | 0      | 0       | 0
b.json    | no             | 0      | 0          | 0        | 0      | 2       | 2
none.json | cannot be read

Entry    | File      | Elements
-------------------------------
files[1] | one.bin   | 2
files[2] | two.bin   | 1
files[3] | io.bin    | 2
files[4] | never.bin | none

Without a file in the archive:
    IO7, boardId 0, hwCompatibilityId 0, swCompatibilityId 0, id 8: 1 element of 1 target
    KR5120, boardId 0, hwCompatibilityId 0, swCompatibilityId 0, id 9: 1 element of 1 target

3 targets: 1 supported, 1 not supported, 1 that cannot be read; entries that nothing uses: 1 of 4
)");
}
