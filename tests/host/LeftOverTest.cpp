// Nothing is left over when an updater is gone: no error list, tree or lock of the platform, and no open file.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <set>
#include <string>

#include "Hosting.h"
#include "simulation/base/Resources.h"
#include "simulation/base/Trace.h"
#include "support/MessageCapture.h"
#include "support/Namespaces.h"

using nlohmann::ordered_json;
using namespace ZoNTrellanUpdater;

namespace {

// A host does not run what could not be applied.
constexpr int notRun = -1;

// One way in which an update can go. It begins as one that succeeds.
struct Situation {
    std::string name;
    std::function<void(ordered_json& target, ordered_json& archive, TestArchive& files)> prepare;
    unsigned applied;
    int ran;  // or notRun
};

std::ostream& operator<<(std::ostream& stream, const Situation& situation)
{
    return stream << situation.name;
}

const ordered_json lost = {{"errors", {{{"code", 4}, {"text", "lost"}}}}};

ordered_json& script(ordered_json& target, const char* call)
{
    return target["script"]["elements"]["/ROOT/HCN#1"][call];
}

std::set<std::string> openFiles()
{
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        const std::string file = std::filesystem::read_symlink(entry.path(), gone);
        // The listing itself is open while it is made, and the mounts of a simulated flash drive stay open by contract.
        if (!gone && !file.starts_with("/proc/") && !file.starts_with("mnt:[")) {
            files.insert(entry.path().filename().string() + " " + file);
        }
    }
    return files;
}

const Situation situations[] = {
    {"Success", [](auto&, auto&, auto&) {}, 0, 1},
    {"FilesOnTheFlashDrive",
     [](auto& target, auto& archive, auto& files) {
         target["flashDrive"] = "cfdrive";
         archive["files"].push_back(fileEntry("app.bin", {{"targetPath", "data/app.bin"}}));
         files.addFile("app.bin", "application");
     },
     0, 1},
    {"FailedWriteToTheFlashDrive",
     [](auto& target, auto& archive, auto& files) {
         target["flashDrive"] = "cfdrive";
         archive["files"].push_back(fileEntry("app.bin", {{"targetPath", "data/app.bin"}}));
         files.addFile("app.bin", "");
     },
     0, 0},
    {"ChecksumsFromTheFiles",
     [](auto&, auto& archive, auto& files) {
         archive["files"][0].erase("checksumCrc32");
         files.addFile("firmware.bin", R"({"inventoryTree": {"id": "ROOT"}, "checksumCrc32": 77})");
     },
     0, 1},
    {"ArchiveThatIsNoJson", [](auto&, auto& archive, auto&) { archive = "text"; }, 1, notRun},
    {"ArchiveWithoutFiles", [](auto&, auto& archive, auto&) { archive.erase("files"); }, 1, notRun},
    {"InvalidEntry", [](auto&, auto& archive, auto&) { archive["files"][1]["mode"] = "quick"; }, 1, notRun},
    {"FileWithoutAChecksum", [](auto&, auto& archive, auto&) { archive["files"][0].erase("checksumCrc32"); }, 1,
     notRun},
    {"MissingFileWithoutAChecksum",
     [](auto&, auto& archive, auto&) {
         archive["files"][0].erase("checksumCrc32");
         archive["files"][0]["name"] = "nosuch.bin";
     },
     1, notRun},
    {"FailedScan",
     [](auto& target, auto&, auto&) {
         target["script"]["scan"] = {{{"result", 1}}};
     },
     1, notRun},
    {"UnreadableTarget", [](auto& target, auto&, auto&) { target["tree"]["id"] = "NO_SUCH_KIND"; }, 1, notRun},
    {"UnreadableValues",
     [](auto& target, auto&, auto&) {
         target["script"]["values"]["/ROOT/HCN:PRODUCT/NAME"] = {{{"code", 2}, {"text", "cannot read"}}};
     },
     0, 0},
    {"UnsupportedTarget", [](auto&, auto& archive, auto&) { archive["files"].erase(1); }, 2, 1},
    {"FailedLock", [](auto& target, auto&, auto&) { target["script"]["lock"] = ordered_json::array({lost}); }, 0, 0},
    {"MissingFile", [](auto&, auto& archive, auto&) { archive["files"][0]["name"] = "nosuch.bin"; }, 0, 0},
    {"FailedStart", [](auto& target, auto&, auto&) { script(target, "start") = ordered_json::array({lost}); }, 0, 0},
    {"FailedPolls",
     [](auto& target, auto&, auto&) {
         script(target, "polls") = {lost, lost};
     },
     0, 0},
    {"UnknownStatus",
     [](auto& target, auto&, auto&) {
         script(target, "polls") = {{{"status", 7}}};
     },
     0, 0},
    {"FailedFetchOfErrors", [](auto& target, auto&, auto&) { script(target, "finish") = ordered_json::array({lost}); },
     0, 0},
    {"ErrorsOfTheUpdate",
     [](auto& target, auto&, auto&) {
         script(target, "finish") = {{{"results", {{{"code", 5}, {"text", "verify"}}}}}};
     },
     0, 0},
    {"FailedFinish", [](auto& target, auto&, auto&) { target["script"]["updateFinish"] = ordered_json::array({lost}); },
     0, 0},
    {"FailedUnlock", [](auto& target, auto&, auto&) { target["script"]["unlock"] = ordered_json::array({lost}); }, 0,
     0},
};

class LeftOver : public Host, public testing::WithParamInterface<Situation> {};

}  // namespace

TEST_P(LeftOver, NothingAfterTheUpdaterIsGone)
{
    ordered_json document = twoElements();
    ordered_json descriptionFile = twoFiles();
    TestArchive files("");
    files.addFile("firmware.bin", "firmware");
    files.addFile("fpga.bin", "fpga");
    GetParam().prepare(document, descriptionFile, files);
    if (document.contains("flashDrive")) {
        SKIP_WITHOUT_MOUNT();
    }
    files.addFile("archive.json", descriptionFile.is_string() ? "text" : descriptionFile.dump());
    const SimulatedTarget device(document);
    std::filesystem::create_directory(device.folder() / "cfdrive");

    TrellanSimulation::openTrace();  // which stays open, by its own contract
    const auto before = openFiles();
    {
        const Library library;
        {
            const auto updater = library.create(optionsFor(UPDATE, files.path()));
            const MessageCapture capture(*updater);
            EXPECT_EQ(updater->apply(), GetParam().applied) << capture.text();
            if (GetParam().ran != notRun) {
                EXPECT_EQ(updater->run(), GetParam().ran) << capture.text();
            }
        }
        EXPECT_EQ(TrellanSimulation::resources().errorLists, 0);
        EXPECT_EQ(TrellanSimulation::resources().inventoryTrees, 0);
        EXPECT_EQ(TrellanSimulation::resources().locks, 0);
        EXPECT_EQ(TrellanSimulation::resources().messageTables, 1);
        EXPECT_EQ(openFiles(), before);
    }
    EXPECT_EQ(TrellanSimulation::resources().messageTables, 0);
    EXPECT_EQ(openFiles(), before);
}

INSTANTIATE_TEST_SUITE_P(After, LeftOver, testing::ValuesIn(situations),
                         [](const auto& parameter) { return parameter.param.name; });
