// What it costs to tell which entries are reached, in bytes that are asked for: what is made of the entries before one
// grows with how much of them is looked at.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "allocations/Allocations.h"
#include "archive/ZoCUpdateArchive.h"
#include "inspection/Reachability.h"
#include "support/MessageCapture.h"
#include "support/OpenUpdater.h"
#include "support/TestArchive.h"
#include "support/UpdaterOptions.h"

using nlohmann::ordered_json;

namespace {

using Entry = std::function<ordered_json(unsigned)>;  // with this number

// The bytes asked for while `count` entries are looked at, each of which is reached.
std::size_t bytesFor(unsigned count, const Entry& entry)
{
    std::vector<ordered_json> entries;
    for (unsigned i = 0; i < count; ++i) {
        entries.push_back(fileEntry("file.bin", entry(i)));
    }
    const TestArchive archive(description(entries));
    OpenUpdater updater(optionsFor(ZoNTrellanUpdater::PRINT_ARCHIVE, archive.path()));
    const MessageCapture quiet(updater);
    EXPECT_EQ(updater.apply(), 0u) << quiet.text();
    std::vector<const ZoNUpdateArchive::ZoSUpdateFile*> files;
    for (const auto& file : updater.getArchive().getUpdateFileList()) {
        files.push_back(&file);
    }
    std::vector<ZoNUpdateInspection::Reach> reaches;
    const std::size_t bytes = bytesOf([&] { reaches = ZoNUpdateInspection::reachOf(files); });
    EXPECT_EQ(reaches.size(), count);
    for (const auto& reach : reaches) {
        EXPECT_TRUE(reach.isReached);
    }
    return bytes;
}

void expectNoMoreThanTwiceAsMany(const Entry& entry)
{
    const std::size_t once = bytesFor(100, entry);
    const std::size_t twice = bytesFor(200, entry);
    EXPECT_LE(twice, once * 22 / 10) << once << " bytes for 100 entries";
}

}  // namespace

TEST(ReachSteps, AreNoMoreThanTwiceAsManyForTwiceTheEntriesThatShareAValueOfEachProperty)
{
    expectNoMoreThanTwiceAsMany([](unsigned i) {
        return ordered_json{
            {"boardId", {0, i + 1}}, {"hwCompatibilityId", {0, i + 1}}, {"swCompatibilityId", {0, i + 1}}};
    });
}

TEST(ReachSteps, AreNoMoreThanTwiceAsManyForTwiceTheEntriesOfOneBoardId)
{
    expectNoMoreThanTwiceAsMany([](unsigned i) {
        return ordered_json{{"boardId", 5}, {"hwCompatibilityId", {i, i + 1}}};
    });
}

TEST(ReachSteps, AreNoMoreThanTwiceAsManyForTwiceTheEntriesOfFourLists)
{
    expectNoMoreThanTwiceAsMany([random = std::mt19937(1)](unsigned) mutable {
        ordered_json entry = {{"boardVariant", ordered_json::array()}};
        for (const char* const key : {"boardId", "hwCompatibilityId", "swCompatibilityId"}) {
            for (int i = 0; i < 10; ++i) {
                entry[key].push_back(random() % 200);
            }
        }
        for (int i = 0; i < 10; ++i) {
            entry["boardVariant"].push_back(std::to_string(random() % 200));
        }
        return entry;
    });
}
