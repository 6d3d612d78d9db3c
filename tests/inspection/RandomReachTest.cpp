// Which entries are ever given to an element, held against trying every element of a small world.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "assignment/ZoCUpdateAssignment.h"
#include "inspection/Reachability.h"
#include "support/MessageCapture.h"
#include "support/OpenUpdater.h"
#include "support/TestArchive.h"
#include "support/UpdaterOptions.h"

using nlohmann::ordered_json;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateInspection::Reach;
using ZoNUpdateInspection::reachOf;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace {

using Files = std::vector<const ZoSUpdateFile*>;

const std::array<std::string, 3> types{"T", "U", ""};
const std::array<std::string, 3> variants{"", "red", "blue"};  // the empty one is none

// An element of the small world.
struct Being {
    unsigned type, variant, board, hw, sw, id;
};

std::vector<Being> everyBeing()
{
    std::vector<Being> beings;
    for (unsigned number = 0; number < 3 * 3 * 3 * 3 * 3 * 2; ++number) {
        beings.push_back({number % 3, number / 3 % 3, number / 9 % 3, number / 27 % 3, number / 81 % 3, number / 243});
    }
    return beings;
}

bool states(const ordered_json& stated, const ordered_json& value)
{
    return stated.is_array() ? std::find(stated.begin(), stated.end(), value) != stated.end() : stated == value;
}

// The matching as the users' document tells it, in its own words.
class Model {
public:
    explicit Model(const ordered_json& entry)
    {
        for (unsigned type = 0; type < types.size(); ++type) {
            const ordered_json* const object = decidingObject(entry, types[type]);
            if (object == nullptr) {
                continue;
            }
            const auto says = [&](const char* key, const ordered_json& otherwise) {
                return object->contains(key) ? (*object)[key] : entry.value(key, otherwise);
            };
            Accepted& ofType = accepted[type].emplace();
            const ordered_json stated = says("boardVariant", nullptr);
            for (unsigned i = 0; i < 3; ++i) {
                ofType.variant[i] = states(stated, i == 0 ? ordered_json() : ordered_json(variants[i]));
                ofType.board[i] = states(says("boardId", 0), i);
                ofType.hw[i] = states(says("hwCompatibilityId", 0), i);
                ofType.sw[i] = states(says("swCompatibilityId", 0), i);
                ofType.id[i] = says("id", -1) == ordered_json(i);
            }
        }
    }

    bool fits(const Being& being) const
    {
        const auto& of = accepted[being.type];
        return of && of->variant[being.variant] && of->board[being.board] && of->hw[being.hw] && of->sw[being.sw] &&
               of->id[being.id];
    }

private:
    struct Accepted {
        std::array<bool, 3> variant, board, hw, sw, id;
    };

    static const ordered_json* decidingObject(const ordered_json& entry, const std::string& type)
    {
        if (!entry.contains("boards")) {
            return states(entry["boardType"], type) ? &entry : nullptr;
        }
        for (const ordered_json& board : entry["boards"]) {
            if (states(board["boardType"], type)) {
                return &board;
            }
        }
        return nullptr;
    }

    std::array<std::optional<Accepted>, 3> accepted;  // by board type
};

// Makes entries.
class SimilarEntryMaker {
public:
    explicit SimilarEntryMaker(unsigned seed) : random(seed) {}

    // Most are like one of the last three, but for a property: so that together they may take what a later one fits.
    ordered_json make()
    {
        ordered_json entry = made.size() < 3 || oneIn(4) ? makeAnew() : made[made.size() - 1 - below(3)];
        ordered_json& object = entry.contains("boards") ? entry["boards"][0] : entry;
        const ordered_json fresh = this->object();
        for (const char* const key : {"boardVariant", "boardId", "hwCompatibilityId", "swCompatibilityId"}) {
            if (fresh.contains(key) && oneIn(4)) {
                object[key] = fresh[key];
            }
        }
        return made.emplace_back(entry);
    }

private:
    ordered_json makeAnew()
    {
        ordered_json entry = object();
        if (oneIn(3)) {
            const ordered_json own = entry["boardType"];
            entry.erase("boardType");
            entry["boards"] = ordered_json::array();
            for (unsigned count = 1 + below(3); count != 0; --count) {
                entry["boards"].push_back(object());
                if (oneIn(2)) {
                    entry["boards"].back()["id"] = below(2);
                }
            }
        }
        entry["id"] = below(2);
        return entry;
    }

    unsigned below(unsigned end) { return std::uniform_int_distribution<unsigned>(0, end - 1)(random); }
    bool oneIn(unsigned count) { return below(count) == 0; }

    ordered_json choice(const std::vector<ordered_json>& values)
    {
        const auto any = [&] { return values[below(static_cast<unsigned>(values.size()))]; };
        if (oneIn(3)) {
            return any();
        }
        ordered_json list = ordered_json::array();
        for (unsigned count = oneIn(30) ? 0 : 1 + below(5); count != 0; --count) {
            list.push_back(any());
        }
        return list;
    }

    ordered_json object()
    {
        ordered_json made = {{"boardType", choice({"T", "U", ""})}};
        if (oneIn(2)) {
            made["boardVariant"] = choice({"red", "blue", nullptr, "red", "blue", nullptr, nullptr, ""});
        }
        for (const char* const key : {"boardId", "hwCompatibilityId", "swCompatibilityId"}) {
            if (oneIn(2)) {
                made[key] = choice({0, 1, 2, 0, 1, 2, 0, 1, 2, 0, 0, 4294967296u});
            }
        }
        return made;
    }

    std::mt19937 random;
    std::vector<ordered_json> made;
};

// An updater that has read an archive of these entries.
class ReadEntries {
public:
    explicit ReadEntries(const std::vector<ordered_json>& stated)
    {
        std::vector<ordered_json> entries;
        for (const ordered_json& members : stated) {
            entries.push_back({{"name", "file"}, {"sequence", 1}, {"checksumCrc32", 1}});
            entries.back().update(members);
        }
        const TestArchive archive(description(entries));
        updater = std::make_unique<OpenUpdater>(optionsFor(ZoNTrellanUpdater::PRINT_ARCHIVE, archive.path()));
        const MessageCapture quiet(*updater);
        EXPECT_EQ(updater->apply(), 0u) << quiet.text();
    }

    const std::vector<ZoSUpdateFile>& files() { return updater->getArchive().getUpdateFileList(); }

    Files files(std::size_t begin, std::size_t end)
    {
        Files some;
        for (std::size_t i = begin; i < end; ++i) {
            some.push_back(&files()[i]);
        }
        return some;
    }

private:
    std::unique_ptr<OpenUpdater> updater;
};

Being beingOf(const ZoNTrellanInspector::ZoTKeys& keys)
{
    const auto type = std::find(types.begin(), types.end(), keys.boardType);
    const auto variant = std::find(variants.begin(), variants.end(), keys.boardVariant);
    return {static_cast<unsigned>(type - types.begin()),
            static_cast<unsigned>(variant - variants.begin()),
            keys.boardId,
            keys.hwCompatibilityId,
            keys.swCompatibilityId,
            keys.id};
}

// What trying every element says of entry `number`.
struct Tried {
    bool isReached = false;
    std::set<std::size_t> takers;
};

Tried tryAll(const std::vector<Being>& beings, const std::vector<Model>& entries, std::size_t number)
{
    Tried tried;
    for (const Being& being : beings) {
        if (!entries[number].fits(being)) {
            continue;
        }
        std::size_t first = 0;
        while (!entries[first].fits(being)) {
            ++first;
        }
        if (first == number) {
            tried.isReached = true;
        } else {
            tried.takers.insert(first);
        }
    }
    return tried;
}

struct Seen {
    unsigned unreachable = 0;
    unsigned takenBySeveral = 0;  // of these
    unsigned partlyTaken = 0;
    std::size_t mostTakers = 0;  // of one entry
};

void compareReach(const Reach& reach, const Tried& tried, const std::vector<Model>& models, std::size_t number)
{
    ASSERT_EQ(reach.isReached, tried.isReached);
    ASSERT_THAT(reach.takers, testing::ElementsAreArray(tried.takers));
    ASSERT_EQ(reach.taken != nullptr, !tried.takers.empty());
    if (reach.taken) {
        const Being example = beingOf(reach.taken->keys);
        const std::size_t taker = *tried.takers.begin();
        ASSERT_EQ(reach.taken->taker, taker);
        ASSERT_TRUE(models[number].fits(example));
        for (std::size_t j = 0; j <= taker; ++j) {
            ASSERT_EQ(models[j].fits(example), j == taker);
        }
    }
}

// Takes the entries for archives of this size.
Seen compareWithTrying(const std::vector<ordered_json>& entries, std::size_t archiveSize)
{
    ReadEntries read(entries);
    const std::vector<Being> beings = everyBeing();
    Seen seen;
    for (std::size_t begin = 0; begin < entries.size() && !testing::Test::HasFailure(); begin += archiveSize) {
        const auto reaches = reachOf(read.files(begin, begin + archiveSize));
        EXPECT_EQ(reaches.size(), archiveSize);
        const std::vector<Model> models(entries.begin() + static_cast<std::ptrdiff_t>(begin),
                                        entries.begin() + static_cast<std::ptrdiff_t>(begin + archiveSize));
        for (std::size_t i = 0; i < reaches.size(); ++i) {
            const Tried tried = tryAll(beings, models, i);
            SCOPED_TRACE("entry " + std::to_string(begin + i));
            compareReach(reaches[i], tried, models, i);
            seen.unreachable += tried.isReached ? 0 : 1;
            seen.takenBySeveral += !tried.isReached && tried.takers.size() > 1 ? 1 : 0;
            seen.partlyTaken += tried.isReached && !tried.takers.empty() ? 1 : 0;
            seen.mostTakers = std::max(seen.mostTakers, tried.takers.size());
        }
    }
    return seen;
}

std::vector<ordered_json> similarEntries(unsigned seed, std::size_t count)
{
    SimilarEntryMaker maker(seed);
    std::vector<ordered_json> entries;
    for (std::size_t i = 0; i < count; ++i) {
        entries.push_back(maker.make());
    }
    return entries;
}

void compareSmallArchives(unsigned seed)
{
    const Seen seen = compareWithTrying(similarEntries(seed, 5000), 5);
    EXPECT_GT(seen.unreachable, 300u);
    EXPECT_GT(seen.takenBySeveral, 50u);
    EXPECT_GT(seen.partlyTaken, 300u);
}

// Of the elements of one board type and id, an entry for each, in any order.
std::vector<ordered_json> entriesForSingleElements(std::mt19937& random)
{
    std::vector<ordered_json> entries;
    for (const Being& being : everyBeing()) {
        if (being.type == 0 && being.id == 0) {
            entries.push_back(
                {{"boardType", "T"},
                 {"boardVariant", being.variant == 0 ? ordered_json() : ordered_json(variants[being.variant])},
                 {"boardId", being.board},
                 {"hwCompatibilityId", being.hw},
                 {"swCompatibilityId", being.sw},
                 {"id", 0}});
        }
    }
    std::shuffle(entries.begin(), entries.end(), random);
    return entries;
}

}  // namespace

// 5,000 archives in five parts, which run side by side.
TEST(RandomReach, AgreesWithTryingEveryElementInTheFirstArchives)
{
    compareSmallArchives(1);
}

TEST(RandomReach, AgreesWithTryingEveryElementInTheSecondArchives)
{
    compareSmallArchives(2);
}

TEST(RandomReach, AgreesWithTryingEveryElementInTheThirdArchives)
{
    compareSmallArchives(3);
}

TEST(RandomReach, AgreesWithTryingEveryElementInTheFourthArchives)
{
    compareSmallArchives(4);
}

TEST(RandomReach, AgreesWithTryingEveryElementInTheFifthArchives)
{
    compareSmallArchives(5);
}

TEST(RandomReach, AgreesWithTryingEveryElementInArchivesOfManyEntries)
{
    const Seen seen = compareWithTrying(similarEntries(7, 2000), 200);
    EXPECT_GT(seen.unreachable, 500u);
    EXPECT_GT(seen.takenBySeveral, 300u);
    EXPECT_GT(seen.partlyTaken, 300u);
}

TEST(RandomReach, AgreesWithTryingEveryElementWhereManyEntriesTakeOneEach)
{
    std::mt19937 random(7);
    SimilarEntryMaker maker(7);
    std::vector<ordered_json> entries;
    constexpr std::size_t lists = 12;
    for (unsigned archive = 0; archive < 12; ++archive) {
        const std::vector<ordered_json> single = entriesForSingleElements(random);
        const std::size_t left = archive % 3;  // without an entry of their own
        entries.insert(entries.end(), single.begin(), single.end() - static_cast<std::ptrdiff_t>(left));
        for (std::size_t i = 0; i < lists + left - 1; ++i) {
            entries.push_back(maker.make());
        }
        const ordered_json all{0, 1, 2};
        entries.push_back({{"boardType", "T"},
                           {"boardVariant", {nullptr, "red", "blue"}},
                           {"boardId", all},
                           {"hwCompatibilityId", all},
                           {"swCompatibilityId", all},
                           {"id", 0}});
    }
    const Seen seen = compareWithTrying(entries, 81 + lists);
    EXPECT_GT(seen.unreachable, 12u);
    EXPECT_GT(seen.partlyTaken, 12u);
    EXPECT_EQ(seen.mostTakers, 81u);
}

TEST(RandomReach, IsHeldAgainstTheMatchingThatAssignsFiles)
{
    SimilarEntryMaker maker(6);
    std::vector<ordered_json> entries;
    for (int i = 0; i < 60; ++i) {
        entries.push_back(maker.make());
    }
    ReadEntries read(entries);
    unsigned fitting = 0;
    std::string path;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const Model model(entries[i]);
        for (const Being& being : everyBeing()) {
            ZoSUpdateElement element;
            element.boardType = types[being.type].c_str();
            element.variant = variants[being.variant].c_str();
            element.productId = being.board;
            element.hwCompatibilityId = being.hw;
            element.swCompatibilityId = being.sw;
            element.id = being.id;
            ASSERT_EQ(ZoCUpdateAssignment::matches(element, read.files()[i], path), model.fits(being)) << entries[i];
            fitting += model.fits(being) ? 1 : 0;
        }
    }
    EXPECT_GT(fitting, 200u);
}
