// Assigning update files to update elements, and the phases.
#include <benchmark/benchmark.h>

#include <functional>
#include <stdexcept>

#include "Workspace.h"
#include "assignment/ZoCUpdateAssignment.h"

namespace {

using Element = ZoNUpdateInventory::ZoSUpdateElement;

// Makes n files and n elements. Every element's file is newer, so that each run of the assignment does the same.
void fill(Workspace& workspace, unsigned n, const std::function<nlohmann::json(unsigned)>& members,
          const std::function<void(Element&, unsigned)>& change)
{
    nlohmann::json entries = nlohmann::json::array();
    for (unsigned i = 0; i < n; ++i) {
        entries.push_back(entryOf(members(i)));
    }
    const std::string path = workspace.write("archive.json", descriptionOf(entries));
    if (!workspace.updater().getArchive().readDescriptionFileJson(workspace.errors(), path)) {
        throw std::runtime_error("the archive description is not valid");
    }
    for (unsigned i = 0; i < n; ++i) {
        Element& element = workspace.updater().getInventory().getUpdateElementList().emplace_back();
        element.index = i;
        element.boardType = ZoCString("T");
        element.valid = true;
        element.active = true;
        change(element, i);
    }
}

void run(benchmark::State& state, const std::function<nlohmann::json(unsigned)>& members,
         const std::function<void(Element&, unsigned)>& change)
{
    Workspace workspace;
    fill(workspace, static_cast<unsigned>(state.range(0)), members, change);
    for ([[maybe_unused]] auto iteration : state) {
        workspace.updater().getAssignment().makeAssignment();
    }
    double assigned = 0;
    for (const Element& element : workspace.updater().getInventory().getUpdateElementList()) {
        assigned += element.updateFileIndex >= 0 ? 1 : 0;
    }
    state.counters["assigned"] = assigned;
    state.SetComplexityN(state.range(0));
}

std::string numbered(const char* text, unsigned number)
{
    return text + std::to_string(number);
}

void assignManyBoardTypes(benchmark::State& state)
{
    run(
        state,
        [](unsigned i) {
            return nlohmann::json{{"boardType", numbered("T", i)}, {"id", 1}};
        },
        [](Element& element, unsigned i) {
            element.boardType = ZoCString(numbered("T", i).c_str());
            element.id = 1;
        });
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
        [](Element& element, unsigned i) {
            element.id = 1;
            element.variant = ZoCString(numbered("V", i).c_str());
        });
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
    run(state, members, [](Element& element, unsigned i) {
        element.id = 1;
        element.boardType = ZoCString(numbered("T", i).c_str());
    });
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
        [](Element& element, unsigned i) {
            element.id = 1;
            element.hwCompatibilityId = 64000000 + i;
        });
}

void computePhases(benchmark::State& state)
{
    Workspace workspace;
    const auto count = static_cast<unsigned>(state.range(0));
    // 7919 is prime and no size is a multiple of it: every sequence occurs once, in no order.
    auto members = [=](unsigned i) {
        return nlohmann::json{{"boardType", "T"}, {"id", i}, {"sequence", 7919ull * i % count}};
    };
    fill(workspace, count, members, [](Element& element, unsigned i) { element.id = i; });
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
        ->Arg(largest / 64)                  \
        ->Arg(largest / 16)                  \
        ->Arg(largest / 4)                   \
        ->Arg(largest)                       \
        ->Unit(benchmark::kMillisecond)      \
        ->Complexity()

TRELLAN_BENCHMARK(assignManyBoardTypes, 64000);
TRELLAN_BENCHMARK(assignManyIdsOfOneBoardType, 64000);
TRELLAN_BENCHMARK(assignIdenticalElements, 64000);
TRELLAN_BENCHMARK(assignManyTargetPaths, 64000);
TRELLAN_BENCHMARK(computePhases, 64000);
TRELLAN_BENCHMARK(assignManyVariants, 64000);
TRELLAN_BENCHMARK(assignManyAcceptedIds, 16000);
TRELLAN_BENCHMARK(assignOneFileForManyBoards, 64000);
