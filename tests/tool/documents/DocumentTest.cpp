// The JSON documents: their members and values, and that they conform to the schema that describes them.
#include <gtest/gtest.h>

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

// Runs a command with --json and gives its document, which must stand alone on standard output and conform to the
// schema.
ordered_json documentOf(const std::vector<std::string>& words)
{
    const RunResult result = ran(words);
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.out.ends_with("}\n")) << result.out;
    EXPECT_EQ(joined(schema().violations(json::parse(result.out))), "") << result.out;
    return ordered_json::parse(result.out);
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
            {"disabled", false}};
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
                    {"custom", true}});
    return element;
}

ordered_json compared(ordered_json element, const ordered_json& members)
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

TEST(DocumentTest, InstalledAndScanGiveTheTargetsElements)
{
    const SimulatedTarget target(device());
    const ordered_json elements = {fpgaElement(), tuningElement()};
    EXPECT_EQ(documentOf({"installed", "--json"}), ordered_json({{"command", "installed"}, {"elements", elements}}));
    EXPECT_EQ(documentOf({"scan", "--json"}), ordered_json({{"command", "scan"}, {"elements", elements}}));
}

TEST(DocumentTest, CompareGivesTheElementsWithTheirFiles)
{
    const SimulatedTarget target(device());
    const TestArchive archive(twoFiles());
    const ordered_json fpga = compared(fpgaElement(), {{"phase", 0},
                                                       {"hasUpdateFile", true},
                                                       {"updateFileIndex", 1},
                                                       {"availableVersion", "2.3.4"},
                                                       {"checksumDiffers", true}});
    const ordered_json tuning = compared(tuningElement(), {{"phase", 0},
                                                           {"hasUpdateFile", false},
                                                           {"updateFileIndex", -1},
                                                           {"availableVersion", ""},
                                                           {"checksumDiffers", false}});
    EXPECT_EQ(documentOf({"compare", archive.path(), "--json"}),
              ordered_json({{"command", "compare"}, {"elements", {fpga, tuning}}}));
}

TEST(DocumentTest, AnExcludedElementIsDisabled)
{
    const SimulatedTarget target(device());
    const ordered_json document = documentOf({"scan", "--json", "--exclude", "1"});
    EXPECT_EQ(document["elements"][0]["disabled"], false);
    EXPECT_EQ(document["elements"][1]["disabled"], true);
}

TEST(DocumentTest, AnExcludedElementKeepsItsPhase)
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

TEST(DocumentTest, ListGivesTheArchiveAndItsFiles)
{
    const TestArchive archive(twoFiles());
    EXPECT_EQ(
        documentOf({"list", archive.path(), "--json"}),
        ordered_json(
            {{"command", "list"},
             {"archive",
              {{"name", "Test archive"},
               {"version", "2.3.4"},
               {"productName", "Test product"},
               {"formatVersion", "1.0"},
               {"variant", ""}}},
             {"files", {{{"name", "other.bin"}, {"version", "1.0"}}, {{"name", "fpga.bin"}, {"version", "2.3.4"}}}}}));
}

TEST(DocumentTest, NothingIsAnEmptyList)
{
    const SimulatedTarget empty(target({item("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}})}));
    EXPECT_EQ(documentOf({"scan", "--json"}), ordered_json({{"command", "scan"}, {"elements", ordered_json::array()}}));
    const TestArchive archive(description({}));
    EXPECT_EQ(documentOf({"list", archive.path(), "--json"})["files"], ordered_json::array());
}

TEST(DocumentTest, TheLibrarysTextGoesToStandardError)
{
    const TestArchive archive(description({}));
    const std::string text = ran({"list", archive.path(), "--json"}).err;
    EXPECT_TRUE(text.starts_with("\nVelorant Device Update Tool, Vs 1.0\n")) << text;
    EXPECT_TRUE(
        text.ends_with("\n \nBoardType | File | Version | Checksum | Id/TargetPath\n"
                       "-----------------------------------------------------\n"))
        << text;
}

TEST(DocumentTest, WithoutSuccessThereIsNoDocument)
{
    const TestArchive archive(std::string("{}"));
    const RunResult result = ran({"list", archive.path(), "--json"});
    EXPECT_TRUE(result.err.ends_with("ERROR: Failed to read firmware archive.\n"));
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.out, "");
}
