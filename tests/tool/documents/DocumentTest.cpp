// The JSON documents: their members and values, and that they conform to the schema that describes them.
#include <gtest/gtest.h>

#include "support/BuildTree.h"
#include "support/JsonSchema.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"
#include "tool/CommandLine.h"

using nlohmann::json;
using nlohmann::ordered_json;

namespace {

JsonSchema schema()
{
    return JsonSchema(json::parse(readText(TRELLAN_SOURCE_DIR "/docs/trellan-update.schema.json")));
}

std::string joined(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}

// The document, which must stand alone on standard output and conform to the schema.
ordered_json documentIn(const RunResult& result)
{
    EXPECT_TRUE(result.out.ends_with("}\n")) << result.out;
    EXPECT_EQ(joined(schema().violations(json::parse(result.out))), "") << result.out;
    return ordered_json::parse(result.out);
}

// The document of a command that succeeds.
ordered_json documentOf(const std::vector<std::string>& words)
{
    const RunResult result = ran(words);
    EXPECT_EQ(result.status, 0);
    return documentIn(result);
}

ordered_json device()
{
    const ordered_json hcn = {
        {"PRODUCT/BOARD_TYPE", "KR5120"},     {"PRODUCT/VARIANT", "X"},  {"PRODUCT/NAME", "Processor board"},
        {"PRODUCT/SERIAL_NUMBER", 16777232},  {"PRODUCT/SLOT_COUNT", 2}, {"SLOT", 4},
        {"PRODUCT/UNITNAME", "Control unit"}, {"RACKNAME", "Rack 1"}};
    return target({board("HCN", hcn,
                         {updateElement(1, {{"NAME", "UserFpga"}, {"VERSION", "1.5"}, {"CHECKSUM_CRC32", 7}}),
                          updateElement(2, {{"NAME", "Tuning"}, {"CUSTOM", 1}, {"VALID", 0}, {"ACTIVE", 0}})})});
}

ordered_json keys(unsigned id)
{
    return {{"boardType", "KR5120"},  {"boardVariant", "X"},    {"boardId", 0},
            {"hwCompatibilityId", 0}, {"swCompatibilityId", 0}, {"id", id},
            {"targetPath", nullptr}};
}

ordered_json fpgaElement()
{
    return {{"index", 0},
            {"boardType", "KR5120"},
            {"serialNumber", 16777232},
            {"boardName", "Processor board (X)"},
            {"unitDescription", "Control unit: Rack 1"},
            {"slot", 4},
            {"slotCount", 2},
            {"displayName", "Processor board (X), SN 16(1), FPGA"},
            {"displayType", "FPGA"},
            {"isFileSystemElement", false},
            {"valid", true},
            {"active", true},
            {"installedVersion", "1.5"},
            {"custom", false},
            {"disabled", false},
            {"phase", 0},
            {"hasUpdateFile", false},
            {"updateFileIndex", -1},
            {"availableVersion", ""},
            {"checksumDiffers", false},
            {"name", "UserFpga"},
            {"keys", keys(1)},
            {"installedChecksum", 7}};
}

ordered_json tuningElement()
{
    ordered_json element = fpgaElement();
    element.update({{"index", 1},
                    {"displayName", "Processor board (X), SN 16(1), Tuning"},
                    {"displayType", "Tuning"},
                    {"valid", false},
                    {"active", false},
                    {"installedVersion", ""},
                    {"custom", true},
                    {"name", "Tuning"},
                    {"keys", keys(2)},
                    {"installedChecksum", nullptr}});
    return element;
}

// The element with more members, or other values.
ordered_json with(ordered_json element, const ordered_json& members)
{
    element.update(members);
    return element;
}

ordered_json twoFiles()
{
    return description({fileEntry("other.bin", {{"id", 9}, {"sequence", 2}, {"version", "1.0"}}),
                        fileEntry("fpga.bin", {{"boardVariant", "X"}, {"checksumCrc32", 8}})});
}

}  // namespace

TEST(Document, InstalledAndScanGiveTheTargetsElements)
{
    const SimulatedTarget target(device());
    const ordered_json elements = {fpgaElement(), tuningElement()};
    EXPECT_EQ(documentOf({"installed", "--json"}),
              ordered_json({{"schemaVersion", 1}, {"command", "installed"}, {"elements", elements}}));
    EXPECT_EQ(documentOf({"scan", "--json"}),
              ordered_json({{"schemaVersion", 1}, {"command", "scan"}, {"elements", elements}}));
}

TEST(Document, CompareGivesTheElementsWithTheirFiles)
{
    const SimulatedTarget target(device());
    const TestArchive archive(twoFiles());
    const ordered_json fpga = with(fpgaElement(), {{"hasUpdateFile", true},
                                                   {"updateFileIndex", 1},
                                                   {"availableVersion", "2.3.4"},
                                                   {"checksumDiffers", true},
                                                   {"updateFile", "fpga.bin"},
                                                   {"availableChecksum", 8},
                                                   {"downgrade", false},
                                                   {"state", "blocked"}});
    const ordered_json tuning =
        with(tuningElement(),
             {{"updateFile", nullptr}, {"availableChecksum", nullptr}, {"downgrade", false}, {"state", "noFile"}});
    EXPECT_EQ(documentOf({"compare", archive.path(), "--json"}),
              ordered_json({{"schemaVersion", 1}, {"command", "compare"}, {"elements", {fpga, tuning}}}));
}

TEST(Document, AnExcludedElementIsDisabled)
{
    const SimulatedTarget target(device());
    const ordered_json document = documentOf({"scan", "--json", "--exclude", "1"});
    EXPECT_EQ(document["elements"][0]["disabled"], false);
    EXPECT_EQ(document["elements"][1]["disabled"], true);
}

TEST(Document, AnExcludedElementKeepsItsPhase)
{
    const SimulatedTarget target(device());
    const TestArchive archive(
        description({fileEntry("fpga.bin", {{"boardVariant", "X"}, {"checksumCrc32", 8}}),
                     fileEntry("tuning.bin", {{"id", 2}, {"boardVariant", "X"}, {"sequence", 2}})}));
    for (const bool excluded : {false, true}) {
        const ordered_json document = excluded ? documentOf({"compare", archive.path(), "--json", "--exclude", "1"})
                                               : documentOf({"compare", archive.path(), "--json"});
        EXPECT_EQ(document["elements"][1]["phase"], 1) << excluded;
        EXPECT_EQ(document["elements"][1]["disabled"], excluded);
    }
}

TEST(Document, ListGivesTheArchiveAndItsFiles)
{
    const TestArchive archive(twoFiles());
    EXPECT_EQ(
        documentOf({"list", archive.path(), "--json"}),
        ordered_json(
            {{"schemaVersion", 1},
             {"command", "list"},
             {"archive",
              {{"name", "Test archive"},
               {"version", "2.3.4"},
               {"productName", "Test product"},
               {"formatVersion", "1.0"},
               {"variant", ""}}},
             {"files", {{{"name", "other.bin"}, {"version", "1.0"}}, {{"name", "fpga.bin"}, {"version", "2.3.4"}}}}}));
}

TEST(Document, NothingIsAnEmptyList)
{
    const SimulatedTarget empty(target({item("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}})}));
    EXPECT_EQ(documentOf({"scan", "--json"}),
              ordered_json({{"schemaVersion", 1}, {"command", "scan"}, {"elements", ordered_json::array()}}));
    const TestArchive archive(description({}));
    EXPECT_EQ(documentOf({"list", archive.path(), "--json"})["files"], ordered_json::array());
}

TEST(Document, TheLibrarysTextGoesToStandardError)
{
    const TestArchive archive(description({}));
    const std::string text = ran({"list", archive.path(), "--json"}).err;
    EXPECT_TRUE(text.starts_with("\nVelorant Device Update Tool, Vs 1.0\n")) << text;
    EXPECT_TRUE(
        text.ends_with("\n \nBoardType | File | Version | Checksum | Id/TargetPath\n"
                       "-----------------------------------------------------\n"))
        << text;
}

TEST(Document, AnArchiveThatCannotBeReadIsAnErrorWithWhatWasSaid)
{
    const TestArchive archive(std::string("{}"));
    for (const char* const command : {"archive-version", "list", "compare"}) {
        const RunResult result = ran({command, archive.path(), "--json"});
        EXPECT_EQ(result.status, 3);
        EXPECT_TRUE(result.err.ends_with("ERROR: Failed to read firmware archive.\n"));
        const ordered_json document = documentIn(result);
        EXPECT_EQ(document["command"], command);
        EXPECT_EQ(document["error"]["status"], 3);
        const std::string message = document["error"]["message"];
        EXPECT_TRUE(message.starts_with("ERROR: ")) << message;
        EXPECT_TRUE(message.ends_with("\nERROR: Failed to read firmware archive.")) << message;
    }
}

TEST(Document, VersionsAreThoseThatArePrinted)
{
    EXPECT_EQ(documentOf({"version", "--json"}),
              ordered_json({{"schemaVersion", 1}, {"command", "version"}, {"version", "1.0"}}));
    const TestArchive archive(twoFiles());
    EXPECT_EQ(documentOf({"archive-version", archive.path(), "--json"}),
              ordered_json({{"schemaVersion", 1}, {"command", "archive-version"}, {"version", "2.3.4"}}));
}

TEST(Document, RebootSupportIsToldWithItsState)
{
    const SimulatedTarget target(device());
    const RunResult result = ran({"reboot-support", "--json"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(documentIn(result),
              ordered_json({{"schemaVersion", 1}, {"command", "reboot-support"}, {"supported", false}, {"state", 1}}));
}

TEST(Document, AFileHasATargetPathAndNoId)
{
    const SimulatedTarget flash(
        target({board("CN", {{"PRODUCT/BOARD_TYPE", "CN7210"}, {"PRODUCT/ID", 5}},
                      {fileElement(1, {{"NAME", "Settings"}, {"VERSION", "1.0"}, {"LOCATION", "a/b.cfg"}})})}));
    const ordered_json document = documentOf({"scan", "--json"});
    EXPECT_EQ(document["elements"][0]["keys"]["id"], nullptr);
    EXPECT_EQ(document["elements"][0]["keys"]["targetPath"], "a/b.cfg");
}

TEST(Document, ALowerVersionIsADowngrade)
{
    const SimulatedTarget target(device());
    const TestArchive archive(description({fileEntry("fpga.bin", {{"boardVariant", "X"}, {"version", "1.4"}})}));
    EXPECT_EQ(documentOf({"compare", archive.path(), "--json"})["elements"][0]["downgrade"], true);
}

TEST(Document, EachStateBeforeAnUpdateHasItsName)
{
    const SimulatedTarget target(device());
    const TestArchive archive(description({fileEntry("fpga.bin", {{"boardVariant", "X"}, {"checksumCrc32", 8}}),
                                           fileEntry("tuning.bin", {{"id", 2}, {"boardVariant", "X"}})}));
    const auto statesWith = [&](const std::vector<std::string>& options) {
        std::vector<std::string> words = {"compare", archive.path(), "--json"};
        words.insert(words.end(), options.begin(), options.end());
        const ordered_json elements = documentOf(words)["elements"];
        return std::vector<std::string>{elements[0]["state"], elements[1]["state"]};
    };
    EXPECT_EQ(statesWith({}), (std::vector<std::string>{"update", "update"}));
    EXPECT_EQ(statesWith({"--disable-custom-elements"}), (std::vector<std::string>{"update", "custom"}));
    EXPECT_EQ(statesWith({"--exclude", "0"}), (std::vector<std::string>{"excluded", "update"}));
    const TestArchive one(
        description({fileEntry("fpga.bin", {{"boardVariant", "X"}, {"version", "1.5"}, {"checksumCrc32", 7}})}));
    EXPECT_EQ(documentOf({"compare", one.path(), "--json"})["elements"][0]["state"], "upToDate");
    const TestArchive other(description({fileEntry("fpga.bin", {{"boardVariant", "X"}, {"checksumCrc32", 8}})}));
    EXPECT_EQ(documentOf({"compare", other.path(), "--json"})["elements"][0]["state"], "blocked");
}
