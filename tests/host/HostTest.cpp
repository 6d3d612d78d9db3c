// The library as a host uses it: loaded at run time, reached through its factory only, and unloaded again.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Hosting.h"
#include "simulation/base/Resources.h"
#include "support/BuildTree.h"
#include "support/MessageCapture.h"

using nlohmann::ordered_json;
using namespace ZoNTrellanUpdater;

namespace {

// What the callbacks were given; a callback has no argument of its own.
std::vector<unsigned> phases, failures, progress;

void watch(ZoITrellanUpdater& updater)
{
    phases.clear();
    failures.clear();
    progress.clear();
    updater.setPhaseCallBack([](unsigned phase) { phases.push_back(phase); });
    updater.setFailureCallBack([](unsigned index) { failures.push_back(index); });
    updater.setProgressCallBack([](unsigned percent) { progress.push_back(percent); });
}

// Loads the library, updates the target with both files, watching it, and unloads the library. Gives what run()
// returned.
int update()
{
    TestArchive archive(twoFiles());
    archive.addFile("firmware.bin", "firmware");
    archive.addFile("fpga.bin", "fpga");
    const Library library;
    const auto updater = library.create(optionsFor(UPDATE, archive.path()));
    watch(*updater);
    const MessageCapture quiet(*updater);
    EXPECT_EQ(updater->apply(), 0u);
    return updater->run();
}

std::vector<std::string> callNames(const std::vector<ordered_json>& trace)
{
    std::vector<std::string> names;
    for (const ordered_json& call : trace) {
        names.push_back(call.at("call"));
    }
    return names;
}

}  // namespace

TEST_F(Host, LoadsTheLibraryUpdatesTheTargetAndUnloadsIt)
{
    SimulatedTarget device(twoElements());
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(phases, (std::vector<unsigned>{0, 1, 0xFFFFFFFFu}));
    EXPECT_EQ(progress, (std::vector<unsigned>{100, 100, 100, 100}));
    EXPECT_EQ(failures, std::vector<unsigned>());
    EXPECT_EQ(callNames(device.trace()),
              (std::vector<std::string>{"registerMessages",  //
                                        "scan",
                                        "deleteInventoryTree",
                                        "lock",  //
                                        "sendLog",
                                        "update2",
                                        "usleep",
                                        "updateStatus2",
                                        "usleep",
                                        "usleep",         //
                                        "updateErrors2",  //
                                        "sendLog",
                                        "update2",
                                        "usleep",
                                        "updateStatus2",
                                        "usleep",
                                        "usleep",         //
                                        "updateErrors2",  //
                                        "updateFinish",
                                        "unlock",
                                        "unregisterMessages"}));
    EXPECT_EQ(device.trace().front().at("code"), 0x26500000);
    EXPECT_EQ(device.trace().back().at("code"), 0x26500000);
    const ordered_json elements = device.document()["tree"]["items"][0]["items"][0]["items"];
    EXPECT_EQ(elements[0]["parameters"]["CHECKSUM_CRC32"], 3589068740u);
    EXPECT_EQ(elements[1]["parameters"]["CHECKSUM_CRC32"], 2079437629u);
}

TEST_F(Host, IsToldOfFailures)
{
    ordered_json document = twoElements();
    document["script"]["elements"]["/ROOT/HCN#1"]["polls"] = {{{"status", 1}, {"done", 1}, {"total", 4}},
                                                              {{"status", 3}}};
    SimulatedTarget device(document);
    EXPECT_EQ(update(), 0);
    EXPECT_EQ(phases, (std::vector<unsigned>{0, 1, 0xFFFFFFFFu}));
    EXPECT_EQ(progress, (std::vector<unsigned>{25, 100, 100}));
    EXPECT_EQ(failures, (std::vector<unsigned>{0, 1}));
}

TEST_F(Host, GetsTheTextOnStandardOutputWithoutAMessageCallback)
{
    const Library library;
    const auto updater = library.create(optionsFor(TOOL_VERSION));
    testing::internal::CaptureStdout();
    EXPECT_EQ(updater->apply(), 0u);
    EXPECT_EQ(updater->run(), 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "1.0\n");
}

TEST_F(Host, ReleasesTheListsItself)
{
    SimulatedTarget device(twoElements());
    const TestArchive archive(twoFiles());
    ZoTUpdateElement* elements = nullptr;
    ZoTUpdateFile* files = nullptr;
    unsigned elementCount = 0;
    unsigned fileCount = 0;
    {
        const Library library;
        const auto updater = library.create(optionsFor(COMPARE_VERSIONS, archive.path()));
        const MessageCapture quiet(*updater);
        ASSERT_EQ(updater->apply(), 0u);
        updater->getUpdateElementList(elements, elementCount);
        updater->getUpdateFileList(files, fileCount);
    }
    // The arrays outlive the library that made them.
    ASSERT_EQ(elementCount, 2u);
    EXPECT_EQ(elements[1].displayName, "Board, FPGA");
    ASSERT_EQ(fileCount, 2u);
    EXPECT_EQ(files[1].name, "fpga.bin");
    delete[] elements;
    delete[] files;
}

TEST_F(Host, RegistersTheMessagesOnceHoweverOftenItIsLoaded)
{
    const SimulatedTarget device(twoElements());
    {
        const Library first;
        const Library second;
        EXPECT_EQ(TrellanSimulation::resources().messageTables, 1);
        EXPECT_EQ(callNames(device.trace()), std::vector<std::string>{"registerMessages"});
    }
    EXPECT_EQ(TrellanSimulation::resources().messageTables, 0);
    EXPECT_EQ(callNames(device.trace()), (std::vector<std::string>{"registerMessages", "unregisterMessages"}));
}

TEST_F(Host, CanLoadTheLibraryAgain)
{
    const SimulatedTarget device(twoElements());
    for (int round = 0; round < 3; ++round) {
        const Library library;
        EXPECT_EQ(library.create(optionsFor(READ_INVENTORY))->getArchiveId(), 0u);
    }
    EXPECT_EQ(callNames(device.trace()),
              (std::vector<std::string>{"registerMessages", "unregisterMessages", "registerMessages",
                                        "unregisterMessages", "registerMessages", "unregisterMessages"}));
}

TEST_F(Host, UnloadsTheLibraryCompletely)
{
    EXPECT_EQ(::dlopen(TRELLAN_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << "linked with the library";
    {
        const Library library;
        EXPECT_EQ(library.create(optionsFor(TOOL_VERSION))->apply(), 0u);
    }
    EXPECT_EQ(::dlopen(TRELLAN_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
}

TEST_F(Host, MayUseTwoUpdatersOneAfterTheOther)
{
    const SimulatedTarget device(twoElements());
    const Library library;
    const auto first = library.create(optionsFor(TOOL_VERSION));
    const auto second = library.create(optionsFor(READ_INVENTORY));
    const MessageCapture quiet(*second);
    EXPECT_EQ(second->apply(), 0u);
    unsigned state = 99;
    EXPECT_FALSE(second->checkRebootSupport(state));
    EXPECT_EQ(state, 2u);
    testing::internal::CaptureStdout();
    EXPECT_EQ(first->run(), 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "1.0\n");
}
