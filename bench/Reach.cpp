// Telling which entries of an archive no element is ever given.
#include <random>

#include "Measure.h"
#include "Workspace.h"
#include "archive/ZoCUpdateArchive.h"
#include "inspection/Reachability.h"

namespace {

void tell(benchmark::State& state, const Members& members)
{
    Workspace workspace;
    workspace.readArchive(sizeOf(state), members);
    std::vector<const ZoNUpdateArchive::ZoSUpdateFile*> files;
    for (const auto& file : workspace.updater().getArchive().getUpdateFileList()) {
        files.push_back(&file);
    }
    double reached = 0;
    for ([[maybe_unused]] auto iteration : state) {
        reached = 0;
        for (const auto& reach : ZoNUpdateInspection::reachOf(files)) {
            reached += reach.isReached ? 1 : 0;
        }
    }
    state.counters["reached"] = reached;
}

Json entry(const Json& type, unsigned id)
{
    return {{"boardType", type}, {"id", id}};
}

// Four lists of ten values out of `world`.
Members listsOutOf(unsigned world)
{
    return [world, random = std::mt19937(1)](unsigned) mutable {
        Json made = entry("T", 1);
        for (const char* const key : {"boardId", "hwCompatibilityId", "swCompatibilityId", "boardVariant"}) {
            for (int i = 0; i < 10; ++i) {
                const auto value = static_cast<unsigned>(random() % world);
                made[key].push_back(key == std::string("boardVariant") ? Json(std::to_string(value)) : Json(value));
            }
        }
        return made;
    };
}

void reachOfPlainEntries(benchmark::State& state)
{
    tell(state, [](unsigned i) { return entry("T" + std::to_string(i / 4), i % 4); });
}

void reachOfOneKind(benchmark::State& state)
{
    tell(state, [](unsigned i) {
        Json made = entry("T", 1);
        made["hwCompatibilityId"] = i;
        return made;
    });
}

void reachOfEqualEntries(benchmark::State& state)
{
    tell(state, [](unsigned) { return entry("T", 1); });
}

void reachOfListsInASmallWorld(benchmark::State& state)
{
    tell(state, listsOutOf(20));
}

void reachOfListsInALargeWorld(benchmark::State& state)
{
    tell(state, listsOutOf(200));
}

// All entries share a value of each property, which the first of them takes, and have one of their own.
void reachOfASharedValueOfEachProperty(benchmark::State& state)
{
    tell(state, [](unsigned i) {
        Json made = entry("T", 1);
        for (const char* const key : {"boardId", "hwCompatibilityId", "swCompatibilityId"}) {
            made[key] = {0, i + 1};
        }
        return made;
    });
}

// All entries share a board id; of the versions of hardware each has one that the entry before it has too.
void reachOfASharedBoardId(benchmark::State& state)
{
    tell(state, [](unsigned i) {
        Json made = entry("T", 1);
        made["boardId"] = 5;
        made["hwCompatibilityId"] = {i, i + 1};
        made["swCompatibilityId"] = {i % 100, 100};
        return made;
    });
}

// One entry for many board types and ids, after another one.
void reachOfManyTypesAndIds(benchmark::State& state)
{
    const auto count = sizeOf(state) * 1000;
    Json types, ids;
    for (unsigned i = 0; i < count; ++i) {
        types.push_back("T" + std::to_string(i));
        ids.push_back(i);
    }
    tell(state, [&](unsigned i) {
        Json made = entry(types, 1);
        made["boardId"] = ids;
        made["boardId"].push_back(count + i);
        return made;
    });
}

const auto* const plain = measure("reach-plain", reachOfPlainEntries, {1000, 10000, 50000});
const auto* const oneKind = measure("reach-one-kind", reachOfOneKind, {1000, 10000, 50000});
const auto* const equal = measure("reach-equal", reachOfEqualEntries, {1000, 10000, 50000});
const auto* const smallWorld = measure("reach-lists-of-20-values", reachOfListsInASmallWorld, {200, 1000, 4000});
const auto* const largeWorld = measure("reach-lists-of-200-values", reachOfListsInALargeWorld, {200, 1000, 4000});
const auto* const sharedValues = measure("reach-shared-value", reachOfASharedValueOfEachProperty, {1000, 10000});
const auto* const sharedId = measure("reach-shared-board-id", reachOfASharedBoardId, {1000, 10000});
const auto* const typesAndIds = measure("reach-many-types-and-ids", reachOfManyTypesAndIds, {2, 6, 15});

}  // namespace
