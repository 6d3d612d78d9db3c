// Updaters in several threads, as a host may use them. `./dev threads` runs these under ThreadSanitizer.
#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "ZoITrellanInspector.h"
#include "ZoITrellanUpdater.h"
#include "libZoErrorHandling/ZoCErrorManager.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "support/UpdaterOptions.h"

using namespace ZoNTrellanUpdater;
using ZoNTrellanInspector::ZoTState;

namespace {

constexpr int rounds = 20;

// What an updater has said on its thread; a callback has no argument of its own.
thread_local std::string said;

std::unique_ptr<ZoITrellanUpdater> create(unsigned command, const std::string& archivePath)
{
    ZoTOptions options = optionsFor(command, archivePath);
    options.noProgress = false;
    options.force = true;
    std::unique_ptr<ZoITrellanUpdater> updater(ZoITrellanUpdater::createInstance(options));
    updater->setMessageCallBack([](const std::string& text) { said += text; });
    return updater;
}

unsigned elementCount(ZoITrellanUpdater& updater)
{
    ZoTUpdateElement* list = nullptr;
    unsigned count = 0;
    updater.getUpdateElementList(list, count);
    delete[] list;
    return count;
}

unsigned installedChecksum(const SimulatedTarget& device)
{
    return device.document().at("/tree/items/0/items/0/items/0/parameters/CHECKSUM_CRC32"_json_pointer);
}

nlohmann::ordered_json deviceWithVersion(const char* version, unsigned checksum)
{
    return target(
        {board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/NAME", "Board"}},
               {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", version}, {"CHECKSUM_CRC32", checksum}})})});
}

// An archive with one file for that device; its content decides on the checksum.
struct Archive {
    Archive(unsigned checksum, const char* content)
        : files(description({fileEntry("firmware.bin", {{"checksumCrc32", checksum}})}))
    {
        files.addFile("firmware.bin", content);
    }

    TestArchive files;
};

}  // namespace

// The platform's calls are not thread safe, whatever they are for. The simulated platform's that read an archive are,
// as soon as there is an error manager: so what the library shares between updaters would be seen.
TEST(UpdatersInThreads, ReadArchivesAtTheSameTimeWhereThePlatformAllowsIt)
{
    ZoCErrorManager::getSingleton();
    const auto readRepeatedly = [](const char* version) {
        auto about = info();
        about["archiveVersion"] = version;
        const TestArchive archive(nlohmann::ordered_json{{"info", about}, {"files", {fileEntry("firmware.bin")}}});
        for (int round = 0; round < rounds; ++round) {
            for (const unsigned command : {TOOL_VERSION, ARCHIVE_VERSION, PRINT_ARCHIVE, OUTPUT_DESCRIPTION}) {
                const auto updater = create(command, archive.path());
                said.clear();
                EXPECT_EQ(updater->apply(), 0U) << said;
                EXPECT_EQ(updater->run(), 1) << said;
                EXPECT_EQ(said.find(version) != std::string::npos, command != TOOL_VERSION) << said;
            }
        }
    };
    std::thread first(readRepeatedly, "11.22.33");
    std::thread second(readRepeatedly, "44.55.66");
    first.join();
    second.join();
}

TEST(UpdatersInThreads, UpdateOneTargetCallByCallInTurn)
{
    const SimulatedTarget device(deviceWithVersion("1.0", 5));
    std::mutex turn;
    const auto updateRepeatedly = [&](unsigned checksum, const char* content) {
        const Archive archive(checksum, content);
        const auto inTurn = [&turn](auto call) {
            const std::lock_guard<std::mutex> mine(turn);
            call();
        };
        for (int round = 0; round < rounds; ++round) {
            std::unique_ptr<ZoITrellanUpdater> updater;
            std::unique_ptr<ZoITrellanInspector> inspector;
            inTurn([&] { updater = create(UPDATE, archive.files.path()); });
            inTurn([&] { inspector.reset(ZoITrellanInspector::createInstance(*updater)); });
            inTurn([&] { EXPECT_EQ(updater->apply(), 0U) << said; });
            inTurn([&] { EXPECT_EQ(elementCount(*updater), 1U); });
            inTurn([&] { EXPECT_EQ(inspector->getElement(0).state, ZoTState::UPDATE); });
            inTurn([&] { inspector->checkUsedFiles(nullptr, nullptr); });
            inTurn([&] {
                EXPECT_EQ(updater->run(), 1) << said;
                EXPECT_EQ(installedChecksum(device), checksum);
            });
            inTurn([&] { EXPECT_EQ(inspector->getElement(0).state, ZoTState::UPDATED); });
            inTurn([&] { inspector.reset(); });
            inTurn([&] { updater.reset(); });
        }
    };
    std::thread first(updateRepeatedly, 0xCBF43926, "123456789");
    std::thread second(updateRepeatedly, 0xE8B7BE43, "a");
    first.join();
    second.join();
}

TEST(UpdatersInThreads, GoOnInAnotherThread)
{
    const SimulatedTarget device(deviceWithVersion("1.0", 5));
    const Archive archive(0xCBF43926, "123456789");
    std::unique_ptr<ZoITrellanUpdater> updater;
    std::unique_ptr<ZoITrellanInspector> inspector;
    const auto inThread = [](auto action) { std::thread(action).join(); };
    inThread([&] { updater = create(UPDATE, archive.files.path()); });
    inThread([&] { inspector.reset(ZoITrellanInspector::createInstance(*updater)); });
    inThread([&] { EXPECT_EQ(updater->apply(), 0U); });
    inThread([&] { EXPECT_EQ(elementCount(*updater), 1U); });
    inThread([&] { EXPECT_EQ(inspector->getElement(0).state, ZoTState::UPDATE); });
    inThread([&] { EXPECT_EQ(inspector->explainElement(0), 1U); });
    inThread([&] { EXPECT_EQ(updater->run(), 1) << said; });
    inThread([&] { EXPECT_EQ(inspector->getElement(0).state, ZoTState::UPDATED); });
    inThread([&] { EXPECT_EQ(inspector->getElementErrorCount(0), 0U); });
    inThread([&] { inspector.reset(); });
    inThread([&] { updater.reset(); });
    EXPECT_EQ(installedChecksum(device), 0xCBF43926);
}
