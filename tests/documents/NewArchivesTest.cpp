// The way from a target to an archive, as docs/archive-author.md tells it, with the example's target and update files.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>

#include "documents/ExampleFolder.h"
#include "support/BuildTree.h"
#include "support/Namespaces.h"
#include "support/TextFile.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::ordered_json;

// Which of the example's files goes under which name that the entries give. There is none for the calibration.
const std::map<std::string, std::string> updateFiles = {{"AI8100-IoFirmware.bin", "ai-firmware.bin"},
                                                        {"AI8100-IoFpga1.bin", "ai-fpga.bit"},
                                                        {"AI8100-IoCpld.bin", "ai-cpld.bin"},
                                                        {"DO8200-IoFirmware.bin", "do-firmware.bin"},
                                                        {"DO8200-IoFpga1.bin", "do-fpga.bit"},
                                                        {"CN7210-CnFirmware.bin", "cn-firmware.bin"},
                                                        {"CN7210-CnIpl.bin", "cn-ipl.bin"},
                                                        {"CN7210-HypervisorFirmware.bin", "cn-hypervisor.json"},
                                                        {"CN7210-site.cfg", "site.cfg"},
                                                        {"KR5120-UserFirmware.bin", "hcn-firmware.bin"},
                                                        {"KR5120-UserFpga.bin", "hcn-fpga.bit"},
                                                        {"KR5120-UserIpl.bin", "hcn-ipl.bin"},
                                                        {"KR5120-UserCpld.bin", "hcn-cpld.bin"}};

// What is installed of each element, by board type and name: version and checksum, null where there is none.
using Installed = std::map<std::string, ordered_json>;

void collectInstalled(const ordered_json& item, const std::string& boardType, Installed& found)
{
    const ordered_json parameters = item.value("parameters", ordered_json::object());
    const std::string type = parameters.value("PRODUCT/BOARD_TYPE", boardType);
    if (parameters.contains("NAME")) {
        found[type + " " + parameters["NAME"].get<std::string>()] = {
            parameters.value("VERSION", ordered_json()), parameters.value("CHECKSUM_CRC32", ordered_json())};
    }
    for (const ordered_json& part : item.value("items", ordered_json::array())) {
        collectInstalled(part, type, found);
    }
}

class ArchiveFromARecord : public testing::Test {
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_MOUNT();
        run("record --target target.json --output record.json", 0);
        run("new fresh --target record.json", 0);
    }

    std::string run(const std::string& arguments, int status) const
    {
        const ProcessResult result = folder.run("trellan-update " + arguments);
        EXPECT_EQ(result.status, status) << arguments << '\n' << result.output << result.errors;
        return result.output;
    }

    ordered_json description() const { return ordered_json::parse(readText(folder.path() / "fresh/archive.json")); }

    void describe(const ordered_json& description) const
    {
        writeText(folder.path() / "fresh/archive.json", description.dump(2));
    }

    // Puts the update files into the archive, and takes the entries away for which there is none.
    void takeUpdateFiles() const
    {
        ordered_json kept = ordered_json::array();
        ordered_json description = this->description();
        for (const ordered_json& entry : description["files"]) {
            const auto file = updateFiles.find(entry["name"]);
            if (file != updateFiles.end()) {
                fs::copy_file(folder.path() / "archive" / file->second, folder.path() / "fresh" / file->first);
                kept.push_back(entry);
            }
        }
        EXPECT_EQ(description["files"].size(), 14u);
        EXPECT_EQ(kept.size(), 13u);
        description["files"] = kept;
        describe(description);
    }

    // States in each entry the version and the checksum that its file has.
    void fillIn() const
    {
        ordered_json description = this->description();
        for (ordered_json& entry : description["files"]) {
            const std::string name = entry["name"];
            const auto told = ordered_json::parse(run("inspect fresh/" + name + " --json", 0))["files"][0];
            entry["version"] = told["version"];
            entry["checksumCrc32"] = told["checksum"];
        }
        describe(description);
    }

    Installed installed() const
    {
        Installed found;
        collectInstalled(ordered_json::parse(readText(folder.path() / "target.json"))["tree"], "", found);
        return found;
    }

    const ExampleFolder folder;
};

}  // namespace

TEST_F(ArchiveFromARecord, UpdatesTheTargetOnceItsFilesAreThereAndInspectedAndFoundSound)
{
    takeUpdateFiles();
    run("check fresh --strict", 1);  // versions and checksums are still to be stated
    fillIn();
    EXPECT_EQ(run("check fresh --strict", 0), "0 errors, 0 warnings, 0 notes\n");
    run("update fresh --target target.json --verify --no-progress", 0);
    EXPECT_EQ(installed(), (Installed{{"KR5120 UserFirmware", {"23.2", 2091406745}},
                                      {"KR5120 UserFpga", {nullptr, 148150363}},
                                      {"KR5120 UserIpl", {"1.4.2", 295928049}},
                                      {"KR5120 UserCpld", {"1.7", 39880968}},  // the file states no version
                                      {"CN7210 CnFirmware", {"23.2", 1280176282}},
                                      {"CN7210 HypervisorFirmware", {"4.1", 97102501}},
                                      {"CN7210 CnIpl", {"2.1", 2648276369}},
                                      {"CN7210 SiteSettings", {nullptr, nullptr}},
                                      {"AI8100 IoFirmware", {"6.3", 36282500}},
                                      {"AI8100 IoFpga1", {nullptr, 387806435}},
                                      {"AI8100 IoCpld", {nullptr, 865143275}},
                                      {"DO8200 IoFirmware", {"3.0.5", 1908605612}},
                                      {"DO8200 IoFpga1", {nullptr, 615864376}},
                                      {"DO8200 Calibration", {"1.0", 3149642683}}}));  // no entry, and left alone
    EXPECT_EQ(readText(folder.path() / "flash/config/site.cfg"),
              "rack = 1\nunits = control, inputs, outputs\nwatchdog = 250 ms\n");
}

TEST_F(ArchiveFromARecord, LeavesNothingToUpdateBehindTheUpdate)
{
    takeUpdateFiles();
    fillIn();
    run("update fresh --target target.json --no-progress", 0);
    const auto left = ordered_json::parse(run("update fresh --target target.json --dry-run --json", 0));
    EXPECT_EQ(left["counts"], ordered_json::parse(R"({"noFile": 1, "custom": 0, "upToDate": 13, "excluded": 0,
                                                      "blocked": 0, "update": 0})"));
}
