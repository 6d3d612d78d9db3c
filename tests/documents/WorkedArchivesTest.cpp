// The archives of docs/archive-format.md, read out of the document and used on the example target.
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>

#include "documents/Transcripts.h"
#include "support/BuildTree.h"
#include "support/FileTree.h"
#include "support/Namespaces.h"
#include "support/TextFile.h"

namespace {

using nlohmann::ordered_json;

class WorkedArchives : public testing::Test {
protected:
    void SetUp() override { SKIP_WITHOUT_MOUNT(); }

    // Puts the document's archive `name`, as its commands have left it, into the folder.
    void take(const std::string& name) const
    {
        const ExampleFolder documented;
        runExamples(readText(TRELLAN_SOURCE_DIR "/docs/archive-format.md"), documented);
        copyTree(documented.path() / name, folder.path() / name);
    }

    ordered_json document(const std::string& command) const
    {
        const ProcessResult result = folder.run("trellan-update " + command + " --json");
        EXPECT_EQ(result.status, 0) << result.errors;
        return ordered_json::parse(result.output);
    }

    // One member of each element, by the element's label, in a comparison with the archive `name`.
    std::map<std::string, int> compared(const std::string& name, const char* member) const
    {
        std::map<std::string, int> values;
        const ordered_json comparison = document("compare " + name + " --target target.json");
        for (const ordered_json& element : comparison["elements"]) {
            values[element["displayName"]] = element[member];
        }
        return values;
    }

    void update(const std::string& arguments) const
    {
        const ProcessResult result = folder.run("trellan-update update --target target.json " + arguments);
        EXPECT_EQ(result.status, 0) << result.output << result.errors;
    }

    // The parameters of an element, by its position, of the board that stands at `board` in the target file.
    ordered_json parameters(const std::string& board, int position) const
    {
        const auto target = ordered_json::parse(readText(folder.path() / "target.json"));
        for (const ordered_json& item : target.at(ordered_json::json_pointer(board + "/items"))) {
            if (item["id"] == "UPDATE_INFO") {
                return item["items"].at(position)["parameters"];
            }
        }
        return nullptr;
    }

    std::string text(const char* file) const { return readText(folder.path() / file); }

    const ExampleFolder folder;
};

using Files = std::map<std::string, int>;

}  // namespace

TEST_F(WorkedArchives, TheFirstBringsABootloaderWithItsHeadersChecksum)
{
    take("one");
    EXPECT_EQ(document("list one")["files"], ordered_json::parse(R"([{"name": "ipl.bin", "version": "1.5"}])"));
    update("one --element-names UserIpl");
    const ordered_json bootloader = parameters("/tree/items/0", 2);
    EXPECT_EQ(bootloader["VERSION"], "1.5");
    EXPECT_EQ(bootloader["CHECKSUM_CRC32"], 814883094);
}

TEST_F(WorkedArchives, TheSecondGivesElementsTheEntriesThatAvoidTheTraps)
{
    take("boards");
    const Files files = compared("boards", "updateFileIndex");
    EXPECT_EQ(files.at("Analog inputs, SN 815, IoFirmware"), 1);
    EXPECT_EQ(files.at("Analog inputs, SN 815, FPGA"), 4);
    EXPECT_EQ(files.at("Analog inputs, SN 815, CPLD"), -1);
    EXPECT_EQ(files.at("Digital outputs (24 V), SN 1042, IoFirmware"), 3);
    EXPECT_EQ(files.at("Digital outputs (24 V), SN 1042, FPGA"), 4);
    EXPECT_EQ(files.at("Digital outputs (24 V), SN 1042, Calibration"), -1);
}

TEST_F(WorkedArchives, TheSecondsEntriesInTheTrapsFitNothing)
{
    take("boards");
    ordered_json description = ordered_json::parse(text("boards/archive.json"));
    description["files"].erase(3);
    description["files"].erase(1);
    writeText(folder.path() / "boards/archive.json", description.dump());
    const Files files = compared("boards", "updateFileIndex");
    EXPECT_EQ(files.at("Analog inputs, SN 815, IoFirmware"), -1);
    EXPECT_EQ(files.at("Digital outputs (24 V), SN 1042, IoFirmware"), -1);
    EXPECT_EQ(files.at("Digital outputs (24 V), SN 1042, FPGA"), 2);
}

TEST_F(WorkedArchives, TheThirdIsCarriedOutInThreePhases)
{
    take("node");
    const Files phases = compared("node", "phase");
    EXPECT_EQ(phases.at("Compute node, SN 4711, Firmware"), 0);
    EXPECT_EQ(phases.at("Compute node, SN 4711, Hypervisor"), 1);
    EXPECT_EQ(phases.at("Compute node, SN 4711, SiteSettings"), 2);
    const Files disabled = compared("node", "disabled");
    EXPECT_EQ(disabled.at("Compute node, SN 4711, Bootloader"), 1);
    EXPECT_EQ(disabled.at("Compute node, SN 4711, Firmware"), 0);
}

TEST_F(WorkedArchives, TheThirdWritesFilesToTheFlashDriveAndKeepsTheNewerBootloader)
{
    take("node");
    update("node --board-types CN7210");
    const std::string node = "/tree/items/0/items/1";
    EXPECT_EQ(parameters(node, 0)["VERSION"], "23.2");
    EXPECT_EQ(parameters(node, 1)["VERSION"], "4.1");
    EXPECT_EQ(parameters(node, 2)["VERSION"], "2.0");
    EXPECT_EQ(text("flash/config/site.cfg"), "rack = 1\nunits = control, inputs, outputs\nwatchdog = 250 ms\n");
    EXPECT_EQ(text("flash/doc/notes.txt"), "Firmware 23.2 needs hypervisor 4.1.\n");
}

TEST_F(WorkedArchives, TheThirdStatesTheChecksumsOfItsFilesForTheFlashDrive)
{
    take("node");
    const ProcessResult checksums =
        folder.run("for file in site.cfg notes.txt; do gzip <node/$file | tail -c 8 | od -A n -N 4 -t u4; done");
    EXPECT_EQ(checksums.output, "   77930046\n  668700885\n");
    const auto files = ordered_json::parse(text("node/archive.json"))["files"];
    EXPECT_EQ(files[3]["checksumCrc32"], 77930046);
    EXPECT_EQ(files[4]["checksumCrc32"], 668700885);
}
