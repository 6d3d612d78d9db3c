// Telling which entries of an archive no element is ever given.
#include <benchmark/benchmark.h>

#include <functional>
#include <random>
#include <stdexcept>

#include "Workspace.h"
#include "archive/ZoCUpdateArchive.h"
#include "inspection/Reachability.h"

namespace {

using Members = std::function<nlohmann::json(unsigned)>;  // of the file entry with this number

void tell(benchmark::State& state, const Members& members)
{
    Workspace workspace;
    nlohmann::json entries = nlohmann::json::array();
    for (unsigned i = 0; i < static_cast<unsigned>(state.range(0)); ++i) {
        entries.push_back(entryOf(members(i)));
    }
    const std::string path = workspace.write("archive.json", descriptionOf(entries));
    ZoCUpdateArchive& archive = workspace.updater().getArchive();
    if (!archive.readDescriptionFileJson(workspace.errors(), path)) {
        throw std::runtime_error("the archive description is not valid");
    }
    std::vector<const ZoNUpdateArchive::ZoSUpdateFile*> files;
    for (const auto& file : archive.getUpdateFileList()) {
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
    state.SetComplexityN(state.range(0));
}

nlohmann::json entry(const nlohmann::json& type, unsigned id)
{
    return {{"boardType", type}, {"id", id}};
}

// Four lists of ten values out of `world`.
Members listsOutOf(unsigned world)
{
    return [world, random = std::mt19937(1)](unsigned) mutable {
        nlohmann::json made = entry("T", 1);
        for (const char* const key : {"boardId", "hwCompatibilityId", "swCompatibilityId", "boardVariant"}) {
            for (int i = 0; i < 10; ++i) {
                const auto value = static_cast<unsigned>(random() % world);
                made[key].push_back(key == std::string("boardVariant") ? nlohmann::json(std::to_string(value))
                                                                       : nlohmann::json(value));
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
        nlohmann::json made = entry("T", 1);
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
        nlohmann::json made = entry("T", 1);
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
        nlohmann::json made = entry("T", 1);
        made["boardId"] = 5;
        made["hwCompatibilityId"] = {i, i + 1};
        made["swCompatibilityId"] = {i % 100, 100};
        return made;
    });
}

// One entry for many board types and ids, after another one.
void reachOfManyTypesAndIds(benchmark::State& state)
{
    const auto count = static_cast<unsigned>(state.range(0)) * 1000;
    nlohmann::json types, ids;
    for (unsigned i = 0; i < count; ++i) {
        types.push_back("T" + std::to_string(i));
        ids.push_back(i);
    }
    tell(state, [&](unsigned i) {
        nlohmann::json made = entry(types, 1);
        made["boardId"] = ids;
        made["boardId"].push_back(count + i);
        return made;
    });
}

}  // namespace

BENCHMARK(reachOfPlainEntries)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(reachOfOneKind)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(reachOfEqualEntries)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(reachOfListsInASmallWorld)->Arg(200)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(reachOfListsInALargeWorld)->Arg(200)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(reachOfASharedValueOfEachProperty)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(reachOfASharedBoardId)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(reachOfManyTypesAndIds)->Arg(2)->Arg(30)->Unit(benchmark::kMillisecond);
