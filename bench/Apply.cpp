// A whole apply(): the archive is read, the target scanned, and its elements are assigned their files.
//
// Hard cases stand behind a plain archive of as many files and elements.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <stdexcept>

#include "Cases.h"
#include "Workspace.h"
#include "inventory/ZoCUpdateInventory.h"

namespace {

void apply(benchmark::State& state, Size size, const Case& data)
{
    Workspace workspace;
    ZoNTrellanUpdater::ZoTOptions options;
    options.command = ZoNTrellanUpdater::UPDATE;
    options.descriptionFileName = "archive.json";
    workspace.write("archive.json", descriptionOf(entriesOf(size.files, data)));
    options.archivePath = workspace.path();
    ::setenv("TRELLAN_TARGET", workspace.write("target.json", targetOf(size.elements, data)).c_str(), 1);
    double assigned = 0;
    for ([[maybe_unused]] auto iteration : state) {
        OpenUpdater updater(options);
        updater.setMessageCallBack([](const std::string&) {});
        if (updater.apply() != 0) {
            throw std::runtime_error("the archive or the target cannot be read");
        }
        assigned = 0;
        for (const auto& element : updater.getInventory().getUpdateElementList()) {
            assigned += element.updateFileIndex >= 0 ? 1 : 0;
        }
    }
    state.counters["assigned"] = assigned;
    ::unsetenv("TRELLAN_TARGET");
}

void applyPlain(benchmark::State& state)
{
    apply(state, {static_cast<unsigned>(state.range(0)), static_cast<unsigned>(state.range(1))}, manyBoardTypes());
}

void applyFourListsOfTen(benchmark::State& state)
{
    apply(state, {10000, 10000}, fourLists(10));
}

void applyTwentyFilesWithFourListsOf32(benchmark::State& state)
{
    apply(state, {20, 100000}, fourLists(32));
}

void applyOneFileOfManyBoardTypesAndVersions(benchmark::State& state)
{
    apply(state, {1, 30000}, manyBoardTypesAndVersions(30000));
}

void applyOneFileOfManyBoardsAndVersions(benchmark::State& state)
{
    apply(state, {1, 60000}, manyBoardsAndVersions(30000));
}

}  // namespace

#define TRELLAN_BENCHMARK(function) BENCHMARK(function)->Unit(benchmark::kMillisecond)

TRELLAN_BENCHMARK(applyPlain)->Args({10000, 10000})->Args({20, 100000})->Args({1, 30000})->Args({1, 60000});
TRELLAN_BENCHMARK(applyFourListsOfTen);
TRELLAN_BENCHMARK(applyTwentyFilesWithFourListsOf32);
TRELLAN_BENCHMARK(applyOneFileOfManyBoardTypesAndVersions);
TRELLAN_BENCHMARK(applyOneFileOfManyBoardsAndVersions);
