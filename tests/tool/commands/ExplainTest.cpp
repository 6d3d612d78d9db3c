// Why elements get the files that they get, and why others do not fit.
#include <gtest/gtest.h>

#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "tool/CommandLine.h"
#include "tool/JsonDocument.h"

using nlohmann::ordered_json;

namespace {

// An HCN with firmware of version 1.0 and a file on the flash drive, and two I/O boards of one type.
ordered_json rack()
{
    return target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/NAME", "Processor"}},
                         {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", 7}}),
                          fileElement(2, {{"NAME", "Settings"}, {"LOCATION", "etc/site.cfg"}})}),
                   board("IOMODULE", {{"PRODUCT/BOARD_TYPE", "IO7"}, {"PRODUCT/VARIANT", "24 V"}, {"PRODUCT/ID", 5}},
                         {updateElement(1, {{"NAME", "IoFirmware"}, {"HW_COMPATIBILITY_ID", 3}})}),
                   board("IOMODULE[2]", {{"PRODUCT/BOARD_TYPE", "IO9"}},
                         {updateElement(1, {{"NAME", "IoFirmware"}, {"SW_COMPATIBILITY_ID", 2}})})});
}

ordered_json entries()
{
    return description({
        fileEntry("hcn.bin", {{"version", "2.0"}}),
        fileEntry("hcn-again.bin", {{"version", "3.0"}}),
        fileEntry("io.bin", {{"boardType", {"IO7", "IO8"}}, {"hwCompatibilityId", {1, 2}}, {"boardId", 5}}),
        fileEntry("site.cfg", {{"targetPath", "etc/other.cfg"}}),
        fileEntry("boards.bin", {{"id", 1},
                                 {"swCompatibilityId", 2},
                                 {"boards",
                                  {{{"boardType", "KR5140"}, {"swCompatibilityId", 4}},
                                   {{"boardType", "IO7"}, {"boardVariant", {"12 V", "24 V"}}, {"boardId", 5}}}}}),
    });
}

ordered_json explained(const std::vector<std::string>& options = {})
{
    const SimulatedTarget simulated(rack());
    const TestArchive archive(entries());
    std::vector<std::string> words{"explain", archive.path(), "--json"};
    words.insert(words.end(), options.begin(), options.end());
    const RunResult result = ran(words);
    EXPECT_EQ(result.status, 0) << result.err;
    return conformingDocument(result.out);
}

RunResult told(const std::vector<std::string>& options)
{
    const SimulatedTarget simulated(rack());
    const TestArchive archive(entries());
    std::vector<std::string> words{"explain", archive.path()};
    words.insert(words.end(), options.begin(), options.end());
    return ran(words);
}

ordered_json candidatesOf(unsigned index)
{
    return explained({"--element", std::to_string(index)})["elements"][0]["candidates"];
}

}  // namespace

TEST(Explain, NamesAllEntriesForTheBoardTypeByFewestUnmetCriteriaThenAsTheArchiveHasThem)
{
    EXPECT_EQ(candidatesOf(0), ordered_json::parse(R"([
        {"file": 0, "board": null, "unmet": [], "takenBy": null},
        {"file": 1, "board": null, "unmet": [], "takenBy": 0},
        {"file": 3, "board": null,
         "unmet": [{"criterion": "kind", "expected": "file", "actual": "element"}], "takenBy": null}])"));
}

TEST(Explain, NamesAllCriteriaThatAreNotMetWithWhatStandsInTheEntryOrItsDefault)
{
    EXPECT_EQ(candidatesOf(2), ordered_json::parse(R"([
        {"file": 2, "board": null,
         "unmet": [{"criterion": "boardVariant", "expected": null, "actual": "24 V"},
                   {"criterion": "hwCompatibilityId", "expected": [1, 2], "actual": 3}], "takenBy": null},
        {"file": 4, "board": 1,
         "unmet": [{"criterion": "hwCompatibilityId", "expected": 0, "actual": 3},
                   {"criterion": "swCompatibilityId", "expected": 2, "actual": 0}], "takenBy": null}])"));
}

TEST(Explain, ComparesThePathOfAFileAndNeitherItsPathNorAnIdWhereTheKindIsAnother)
{
    EXPECT_EQ(candidatesOf(1), ordered_json::parse(R"([
        {"file": 0, "board": null,
         "unmet": [{"criterion": "kind", "expected": "element", "actual": "file"}], "takenBy": null},
        {"file": 1, "board": null,
         "unmet": [{"criterion": "kind", "expected": "element", "actual": "file"}], "takenBy": null},
        {"file": 3, "board": null,
         "unmet": [{"criterion": "targetPath", "expected": "etc/other.cfg", "actual": "etc/site.cfg"}],
         "takenBy": null}])"));
}

TEST(Explain, NamesTheThreeNearestWhereNoEntryIsForTheBoardType)
{
    EXPECT_EQ(candidatesOf(3), ordered_json::parse(R"([
        {"file": 0, "board": null,
         "unmet": [{"criterion": "boardType", "expected": "KR5120", "actual": "IO9"},
                   {"criterion": "swCompatibilityId", "expected": 0, "actual": 2}], "takenBy": null},
        {"file": 1, "board": null,
         "unmet": [{"criterion": "boardType", "expected": "KR5120", "actual": "IO9"},
                   {"criterion": "swCompatibilityId", "expected": 0, "actual": 2}], "takenBy": null},
        {"file": 4, "board": 0,
         "unmet": [{"criterion": "boardType", "expected": "KR5140", "actual": "IO9"},
                   {"criterion": "swCompatibilityId", "expected": 4, "actual": 2}], "takenBy": null}])"));
}

TEST(Explain, SaysOfEachElementWhyItIsUpdatedOrNot)
{
    const ordered_json elements = explained()["elements"];
    ASSERT_EQ(elements.size(), 5u);
    EXPECT_EQ(elements[0]["state"], "update");
    EXPECT_EQ(elements[0]["updateFile"], "hcn.bin");
    EXPECT_EQ(elements[0]["reason"], "version 1.0 is installed, and files[0] \"hcn.bin\" has version 2.0");
    EXPECT_EQ(elements[2]["state"], "noFile");
    EXPECT_EQ(elements[2]["reason"],
              "no entry for board type \"IO7\" fits; the nearest is files[2] \"io.bin\": boardVariant null is "
              "expected, and the element has \"24 V\"; hwCompatibilityId [1,2] is expected, and the element has 3");
    EXPECT_EQ(elements[3]["reason"],
              "no entry is for board type \"IO9\"; the nearest is files[0] \"hcn.bin\": boardType \"KR5120\" is "
              "expected, and the element has \"IO9\"; swCompatibilityId 0 is expected, and the element has 2");
}

TEST(Explain, GivesTheFileToAnElementThatIsMadeForIt)
{
    const ordered_json made = explained()["elements"][4];
    EXPECT_EQ(made["updateFile"], "site.cfg");
    const ordered_json own = made["candidates"][0];
    EXPECT_EQ(own, ordered_json::parse(R"({"file": 3, "board": null, "unmet": [], "takenBy": null})"));
}

TEST(Explain, TellsOfAnEntryWhoIsGivenItAndWhyTheOthersAreNot)
{
    const ordered_json document = explained({"--file", "1", "--file", "3"});
    EXPECT_FALSE(document.contains("elements"));
    EXPECT_EQ(document["files"], ordered_json::parse(R"([
        {"file": 1, "name": "hcn-again.bin", "elements": [
            {"index": 0, "unmet": [], "takenBy": 0, "given": false},
            {"index": 1, "unmet": [{"criterion": "kind", "expected": "element", "actual": "file"}],
             "takenBy": null, "given": false},
            {"index": 4, "unmet": [{"criterion": "kind", "expected": "element", "actual": "file"}],
             "takenBy": null, "given": false}]},
        {"file": 3, "name": "site.cfg", "elements": [
            {"index": 0, "unmet": [{"criterion": "kind", "expected": "file", "actual": "element"}],
             "takenBy": null, "given": false},
            {"index": 1,
             "unmet": [{"criterion": "targetPath", "expected": "etc/other.cfg", "actual": "etc/site.cfg"}],
             "takenBy": null, "given": false},
            {"index": 4, "unmet": [], "takenBy": null, "given": true}]}])"));
}

TEST(Explain, ExplainsElementsAndEntriesTogether)
{
    const ordered_json document = explained({"--file", "0", "--element", "3", "--element", "0"});
    ASSERT_EQ(document["elements"].size(), 2u);
    EXPECT_EQ(document["elements"][0]["index"], 3);
    EXPECT_EQ(document["elements"][1]["index"], 0);
    EXPECT_EQ(document["files"].size(), 1u);
}

TEST(Explain, PrintsAParagraphForEachElement)
{
    const RunResult result = told({"--element", "2"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(
        result.out,
        "Element 2: IO7 (24 V), IoFirmware\n"
        "    boardType \"IO7\", boardVariant \"24 V\", boardId 5, hwCompatibilityId 3, swCompatibilityId 0, id 1\n"
        "    noFile: no entry for board type \"IO7\" fits; the nearest is files[2] \"io.bin\": boardVariant null "
        "is expected, and the element has \"24 V\"; hwCompatibilityId [1,2] is expected, and the element has 3\n"
        "    files[2] \"io.bin\": boardVariant null is expected, and the element has \"24 V\"; hwCompatibilityId "
        "[1,2] is expected, and the element has 3\n"
        "    files[4] boards[1] \"boards.bin\": hwCompatibilityId 0 is expected, and the element has 3; "
        "swCompatibilityId 2 is expected, and the element has 0\n");
}

TEST(Explain, PrintsAParagraphForEachEntry)
{
    const RunResult result = told({"--file", "1", "--file", "4"});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.out.find("files[1] \"hcn-again.bin\"\n    element 0, Processor, Firmware: fits, but files[0] "
                              "\"hcn.bin\" comes before\n"),
              std::string::npos)
        << result.out;
}

TEST(Explain, EndsWith1WhereThereIsNoSuchElementOrEntry)
{
    const RunResult element = told({"--element", "5", "--element", "0"});
    EXPECT_EQ(element.status, 1);
    EXPECT_NE(element.err.find("trellan-update: there is no element 5; there are 0 to 4\n"), std::string::npos);
    EXPECT_EQ(element.out.find("Element 0: "), 0u);

    const RunResult entry = told({"--file", "5"});
    EXPECT_EQ(entry.status, 1);
    EXPECT_NE(entry.err.find("trellan-update: the archive has no entry files[5] that this library reads\n"),
              std::string::npos);
    EXPECT_EQ(entry.out, "");
}

TEST(Explain, NamesInTheDocumentWhatThereIsNotBesideWhatThereIs)
{
    const RunResult entry = told({"--file", "99", "--json"});
    EXPECT_EQ(entry.status, 1);
    EXPECT_NE(entry.err.find("trellan-update: the archive has no entry files[99] that this library reads\n"),
              std::string::npos);
    EXPECT_EQ(conformingDocument(entry.out), ordered_json::parse(R"({
        "schemaVersion": 1, "command": "explain",
        "error": {"status": 1, "message": "the archive has no entry files[99] that this library reads"},
        "files": []})"));

    const RunResult element = told({"--element", "7", "--json"});
    EXPECT_EQ(element.status, 1);
    EXPECT_EQ(conformingDocument(element.out), ordered_json::parse(R"({
        "schemaVersion": 1, "command": "explain",
        "error": {"status": 1, "message": "there is no element 7; there are 0 to 4"},
        "elements": []})"));

    const RunResult several = told({"--element", "7", "--element", "0", "--file", "99", "--file", "0", "--json"});
    EXPECT_EQ(several.status, 1);
    const ordered_json document = conformingDocument(several.out);
    EXPECT_EQ(document["error"]["message"],
              "there is no element 7; there are 0 to 4\n"
              "the archive has no entry files[99] that this library reads");
    EXPECT_EQ(document["elements"].size(), 1u);
    EXPECT_EQ(document["files"].size(), 1u);
}

TEST(Explain, SaysThatAnEntryIsForNoBoardThatThereIs)
{
    const SimulatedTarget simulated(rack());
    const TestArchive archive(description({fileEntry("a.bin"), fileEntry("b.bin", {{"boardType", "OTHER"}})}));
    const RunResult text = ran({"explain", archive.path(), "--file", "1"});
    EXPECT_EQ(text.status, 0);
    EXPECT_EQ(text.out, "files[1] \"b.bin\"\n    no element is on a board of a type that it is for\n");
    const RunResult document = ran({"explain", archive.path(), "--file", "1", "--json"});
    EXPECT_EQ(conformingDocument(document.out)["files"],
              ordered_json::parse(R"([{"file": 1, "name": "b.bin", "elements": []}])"));
}

TEST(Explain, SaysThatTheArchiveHasNoEntry)
{
    const SimulatedTarget simulated(
        target({board("IOMODULE", {{"PRODUCT/BOARD_TYPE", "IO7"}}, {updateElement(1, {{"NAME", "IoFirmware"}})})}));
    const TestArchive archive(description({}));
    const RunResult text = ran({"explain", archive.path()});
    EXPECT_EQ(text.status, 0);
    EXPECT_EQ(text.out,
              "Element 0: IO7, IoFirmware\n"
              "    boardType \"IO7\", boardVariant null, boardId 0, hwCompatibilityId 0, swCompatibilityId 0, id 1\n"
              "    noFile: the archive has no entry\n");
    const ordered_json element = conformingDocument(ran({"explain", archive.path(), "--json"}).out)["elements"][0];
    EXPECT_EQ(element["state"], "noFile");
    EXPECT_EQ(element["reason"], "the archive has no entry");
    EXPECT_EQ(element["candidates"], ordered_json::array());
}

TEST(Explain, SaysOfAFileThatTheFlashDriveDoesNotHaveThatNothingIsInstalledYet)
{
    const RunResult text = told({"--element", "4"});
    EXPECT_EQ(text.out.find("what is installed"), std::string::npos) << text.out;
    EXPECT_EQ(explained()["elements"][4]["reason"],
              "nothing is installed yet; files[3] \"site.cfg\" has version 2.3.4");
}

TEST(Explain, SaysOfACustomElementThatItIsLeftOut)
{
    const SimulatedTarget simulated(target(
        {board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}}, {updateElement(1, {{"NAME", "Own"}, {"CUSTOM", 1}})})}));
    const TestArchive archive(description({fileEntry("own.bin")}));
    const RunResult text = ran({"explain", archive.path(), "--disable-custom-elements"});
    EXPECT_NE(text.out.find("\n    custom: custom elements are left out\n"), std::string::npos) << text.out;
    const ordered_json document =
        conformingDocument(ran({"explain", archive.path(), "--disable-custom-elements", "--json"}).out);
    EXPECT_EQ(document["elements"][0]["state"], "custom");
    EXPECT_EQ(document["elements"][0]["reason"], "custom elements are left out");
}

TEST(Explain, SaysOfABlockedElementWhyAndWhatItWouldNeedOtherwise)
{
    const SimulatedTarget simulated(target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}},
                                                  {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", "1.0"}}),
                                                   updateElement(9, {{"NAME", "UserFpga"}, {"VERSION", "1.0"}})})}));
    const TestArchive archive(description({fileEntry("hcn.bin", {{"version", "2.0"}})}));
    const RunResult text = ran({"explain", archive.path(), "--element", "0"});
    EXPECT_EQ(text.status, 0);
    EXPECT_NE(text.out.find("\n    blocked: the archive does not support the target, since elements of the processing "
                            "nodes have no file; otherwise: version 1.0 is installed, and files[0] \"hcn.bin\" has "
                            "version 2.0\n"),
              std::string::npos)
        << text.out;
    const ordered_json document = conformingDocument(ran({"explain", archive.path(), "--json"}).out);
    EXPECT_EQ(document["elements"][0]["state"], "blocked");
    EXPECT_EQ(document["elements"][0]["reason"],
              "the archive does not support the target, since elements of the processing nodes have no file; "
              "otherwise: version 1.0 is installed, and files[0] \"hcn.bin\" has version 2.0");
    EXPECT_EQ(document["elements"][1]["state"], "noFile");
}

TEST(Explain, CountsEntriesThatArePassedOverAsTheDescriptionDoes)
{
    const SimulatedTarget simulated(rack());
    const TestArchive archive(
        description({{{"name", "newer"}, {"featureLevel", 9}}, fileEntry("hcn.bin", {{"version", "1.0"}})}));
    const RunResult result = ran({"explain", archive.path(), "--json", "--element", "0", "--file", "1"});
    const ordered_json document = conformingDocument(result.out);
    EXPECT_EQ(document["elements"][0]["candidates"][0]["file"], 1);
    EXPECT_EQ(document["files"][0]["file"], 1);
    EXPECT_EQ(ran({"explain", archive.path(), "--file", "0"}).status, 1);
}

TEST(Explain, HasADocumentWhereTheArchiveCannotBeRead)
{
    const SimulatedTarget simulated(rack());
    const RunResult result = ran({"explain", "/nowhere", "--json"});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(conformingDocument(result.out)["error"]["status"], 3);
}

TEST(Explain, SaysWhyAnElementStaysAsItIs)
{
    ordered_json document = rack();
    auto& hcn = document["tree"]["items"][0]["items"][0]["items"][0]["parameters"];
    hcn["VERSION"] = "2.0";
    hcn["CHECKSUM_CRC32"] = 1;
    const SimulatedTarget simulated(document);
    const TestArchive archive(entries());
    const auto reason = [&](const std::vector<std::string>& options) {
        std::vector<std::string> words{"explain", archive.path(), "--json", "--element", "0"};
        words.insert(words.end(), options.begin(), options.end());
        const ordered_json element = ordered_json::parse(ran(words).out)["elements"][0];
        return element["state"].get<std::string>() + ": " + element["reason"].get<std::string>();
    };
    EXPECT_EQ(reason({}), "upToDate: version 2.0 is installed, as files[0] \"hcn.bin\" has it");
    EXPECT_EQ(reason({"--force"}),
              "update: version 2.0 is installed, as files[0] \"hcn.bin\" has it; --force repeats it");
    EXPECT_EQ(reason({"--force", "--exclude", "0"}),
              "excluded: it is left out by --exclude; otherwise: version 2.0 is installed, as files[0] \"hcn.bin\" has "
              "it; --force repeats it");
}

TEST(Explain, NamesEachNeedForAnUpdate)
{
    const auto reason = [](const ordered_json& parameters, const ordered_json& entry) {
        const SimulatedTarget simulated(
            target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}}, {updateElement(1, parameters)})}));
        const TestArchive archive(description({fileEntry("a.bin", entry)}));
        const RunResult result = ran({"explain", archive.path(), "--json"});
        return ordered_json::parse(result.out)["elements"][0]["reason"].get<std::string>();
    };
    EXPECT_EQ(reason({{"VALID", 0}, {"VERSION", "2.0"}}, {{"version", "2.0"}}),
              "what is installed is not valid; files[0] \"a.bin\" has version 2.0");
    EXPECT_EQ(reason({{"ACTIVE", 0}, {"VERSION", "2.0"}}, {{"version", "2.0"}}),
              "what is installed is not in use; files[0] \"a.bin\" has version 2.0");
    EXPECT_EQ(reason({{"VERSION", "2.0"}}, {{"version", "2.1"}, {"mode", "upgrade"}}),
              "version 2.0 is installed, and files[0] \"a.bin\" has the newer version 2.1");
    EXPECT_EQ(reason({{"VERSION", "2.0"}}, {{"version", "1.9"}, {"mode", "upgrade"}}),
              "version 2.0 is installed, and files[0] \"a.bin\" is an upgrade with no newer version");
    EXPECT_EQ(reason({{"VERSION", "2.0"}, {"CHECKSUM_CRC32", 5}}, {{"version", "2.0"}, {"checksumCrc32", 6}}),
              "version 2.0 is installed with checksum 5, and files[0] \"a.bin\" has checksum 6");
}
