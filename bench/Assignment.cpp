// Assigning update files to update elements, and the phases.
#include <benchmark/benchmark.h>

#include <stdexcept>

#include "Cases.h"
#include "Workspace.h"
#include "assignment/ZoCUpdateAssignment.h"

namespace {

// Every element's file is newer, so that each run of the assignment does the same.
void prepare(Workspace& workspace, Size size, const Case& data)
{
    const std::string path = workspace.write("archive.json", descriptionOf(entriesOf(size.files, data)));
    if (!workspace.updater().getArchive().readDescriptionFileJson(workspace.errors(), path)) {
        throw std::runtime_error("the archive description is not valid");
    }
    for (unsigned i = 0; i < size.elements; ++i) {
        auto& element = workspace.updater().getInventory().getUpdateElementList().emplace_back();
        static_cast<Element&>(element) = elementOf(i, data);
        element.index = i;
    }
}

void run(benchmark::State& state, Size size, const Case& data)
{
    Workspace workspace;
    prepare(workspace, size, data);
    for ([[maybe_unused]] auto iteration : state) {
        workspace.updater().getAssignment().makeAssignment();
    }
    double assigned = 0;
    for (const auto& element : workspace.updater().getInventory().getUpdateElementList()) {
        assigned += element.updateFileIndex >= 0 ? 1 : 0;
    }
    state.counters["assigned"] = assigned;
    state.SetComplexityN(state.range(0));
}

// As many files as elements.
void run(benchmark::State& state, const Case& data)
{
    const auto count = static_cast<unsigned>(state.range(0));
    run(state, {count, count}, data);
}

void run(benchmark::State& state, const Members& members, const Change& change)
{
    run(state, Case{members, change});
}

void assignManyBoardTypes(benchmark::State& state)
{
    run(state, manyBoardTypes());
}

void assignManyIdsOfOneBoardType(benchmark::State& state)
{
    run(
        state,
        [](unsigned i) {
            return nlohmann::json{{"boardType", "T"}, {"id", i}};
        },
        [](Element& element, unsigned i) { element.id = i; });
}

// All elements fit the last file only.
void assignIdenticalElements(benchmark::State& state)
{
    const auto last = static_cast<std::uint32_t>(state.range(0) - 1);
    run(
        state,
        [](unsigned i) {
            return nlohmann::json{{"boardType", "T"}, {"id", i}};
        },
        [=](Element& element, unsigned) { element.id = last; });
}

void assignManyTargetPaths(benchmark::State& state)
{
    run(
        state,
        [](unsigned i) {
            return nlohmann::json{{"boardType", "T"}, {"targetPath", numbered("/data/", i)}};
        },
        [](Element& element, unsigned i) {
            element.isFileSystemElement = true;
            element.location = ZoCString(numbered("/data/", i).c_str());
        });
}

// Files that differ in nothing but the variant.
void assignManyVariants(benchmark::State& state)
{
    run(
        state,
        [](unsigned i) {
            return nlohmann::json{{"boardType", "T"}, {"id", 1}, {"boardVariant", numbered("V", i)}};
        },
        [](Element& element, unsigned i) { element.variant = ZoCString(numbered("V", i).c_str()); });
}

// The first file names all board types, each in a board object of its own.
void assignOneFileForManyBoards(benchmark::State& state)
{
    const auto count = static_cast<unsigned>(state.range(0));
    auto members = [=](unsigned i) {
        nlohmann::json entry = {{"id", 1}};
        if (i > 0) {
            entry["boardType"] = "other";
            return entry;
        }
        for (unsigned type = 0; type < count; ++type) {
            entry["boards"].push_back({{"boardType", numbered("T", type)}});
        }
        return entry;
    };
    run(state, members, [](Element& element, unsigned i) { element.boardType = ZoCString(numbered("T", i).c_str()); });
}

// Each file accepts 65 hardware versions, one of which an element has.
void assignManyAcceptedIds(benchmark::State& state)
{
    run(
        state,
        [](unsigned i) {
            nlohmann::json accepted = nlohmann::json::array();
            for (unsigned k = 0; k < 65; ++k) {
                accepted.push_back(1000000 * k + i);
            }
            return nlohmann::json{{"boardType", "T"}, {"id", 1}, {"hwCompatibilityId", accepted}};
        },
        [](Element& element, unsigned i) { element.hwCompatibilityId = 64000000 + i; });
}

// The hard cases: files that state much and fit little.

void assignFourListsOfTen(benchmark::State& state)
{
    run(state, fourLists(10));
}

void assignTwentyFilesWithFourListsOf32(benchmark::State& state)
{
    run(state, {20, static_cast<unsigned>(state.range(0))}, fourLists(32));
}

void assignOneFileOfManyBoardTypesAndVersions(benchmark::State& state)
{
    const auto count = static_cast<unsigned>(state.range(0));
    run(state, {1, count}, manyBoardTypesAndVersions(count));
}

void assignOneFileOfManyBoardsAndVersions(benchmark::State& state)
{
    const auto count = static_cast<unsigned>(state.range(0));
    run(state, {1, 2 * count}, manyBoardsAndVersions(count));
}

// Files that are all for the same elements but for their software versions, and elements that are all alike: the last
// file fits.
void assignOneKeyForAll(benchmark::State& state)
{
    const auto last = static_cast<unsigned>(state.range(0));
    run(
        state,
        [](unsigned i) {
            return nlohmann::json{{"boardType", "T"}, {"id", 1}, {"swCompatibilityId", {i, i + 1}}};
        },
        [=](Element& element, unsigned) { element.swCompatibilityId = last; });
}

// A target with as many sorts of elements as files, which accept `values` values of three properties each.
void assignManySortsOfOneTarget(benchmark::State& state, unsigned values)
{
    constexpr unsigned range = 50;
    const auto list = [=](unsigned first) {
        nlohmann::json result = nlohmann::json::array();
        for (unsigned i = 0; i < values; ++i) {
            result.push_back((first + 7 * i) % range);
        }
        return result;
    };
    run(
        state,
        [&](unsigned i) {
            return nlohmann::json{{"boardType", "T"},
                                  {"id", 1},
                                  {"boardId", list(i)},
                                  {"hwCompatibilityId", list(i / range)},
                                  {"swCompatibilityId", list(i / range / range)}};
        },
        [](Element& element, unsigned i) {
            element.productId = i % range;
            element.hwCompatibilityId = i / range % range;
            element.swCompatibilityId = range - 1 - i / range / range % range;
        });
}

void assignSortsWithOneValueEach(benchmark::State& state)
{
    assignManySortsOfOneTarget(state, 1);
}

void assignSortsWithThreeValuesEach(benchmark::State& state)
{
    assignManySortsOfOneTarget(state, 3);
}

void computePhases(benchmark::State& state)
{
    Workspace workspace;
    const auto count = static_cast<unsigned>(state.range(0));
    // 7919 is prime and no size is a multiple of it: every sequence occurs once, in no order.
    auto members = [=](unsigned i) {
        return nlohmann::json{{"boardType", "T"}, {"id", i}, {"sequence", 7919ull * i % count}};
    };
    prepare(workspace, {count, count}, {members, [](Element& element, unsigned i) { element.id = i; }});
    ZoCUpdateAssignment& assignment = workspace.updater().getAssignment();
    assignment.makeAssignment();
    for ([[maybe_unused]] auto iteration : state) {
        assignment.computeUpdatePhase();
    }
    state.counters["phases"] = assignment.getNumberOfUpdatePhases();
    state.SetComplexityN(state.range(0));
}

}  // namespace

#define TRELLAN_BENCHMARK(function, largest) \
    BENCHMARK(function)                      \
        ->Arg(largest / 100)                 \
        ->Arg(largest / 10)                  \
        ->Arg(largest)                       \
        ->Unit(benchmark::kMillisecond)      \
        ->Complexity()

TRELLAN_BENCHMARK(assignManyBoardTypes, 100000);
TRELLAN_BENCHMARK(assignManyIdsOfOneBoardType, 100000);
TRELLAN_BENCHMARK(assignIdenticalElements, 100000);
TRELLAN_BENCHMARK(assignManyTargetPaths, 100000);
TRELLAN_BENCHMARK(assignManyVariants, 100000);
TRELLAN_BENCHMARK(assignManyAcceptedIds, 10000);
TRELLAN_BENCHMARK(assignOneFileForManyBoards, 100000);
TRELLAN_BENCHMARK(computePhases, 100000);

TRELLAN_BENCHMARK(assignFourListsOfTen, 10000);
TRELLAN_BENCHMARK(assignTwentyFilesWithFourListsOf32, 100000);
TRELLAN_BENCHMARK(assignOneFileOfManyBoardTypesAndVersions, 30000);
TRELLAN_BENCHMARK(assignOneFileOfManyBoardsAndVersions, 30000);
TRELLAN_BENCHMARK(assignOneKeyForAll, 100000);
TRELLAN_BENCHMARK(assignSortsWithOneValueEach, 100000);
TRELLAN_BENCHMARK(assignSortsWithThreeValuesEach, 100000);
