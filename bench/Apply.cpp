// The whole apply() of a comparison: the archive is read, the target scanned, and its elements are assigned their
// files. Hard cases stand behind production.
#include "AssignmentRun.h"
#include "HardCases.h"
#include "Measure.h"
#include "Production.h"
#include "Workspace.h"

namespace {

void apply(benchmark::State& state, const std::filesystem::path& folder)
{
    const auto options = optionsFor(ZoNTrellanUpdater::COMPARE_VERSIONS, folder);
    for ([[maybe_unused]] auto iteration : state) {
        appliedUpdater(options);
    }
    const MemoryPeak peak;
    appliedUpdater(options);
    state.counters["peak_mb"] = peak.growth() / megabyte;
}

void apply(benchmark::State& state, Size size, const Case& data)
{
    const TempDir folder;
    folder.write("archive.json", textOf(descriptionOf(size.files, data.members)));
    folder.write("target.json", textOf(targetOf(size.elements, data)));
    apply(state, folder.path());
}

void applyProduction(benchmark::State& state)
{
    apply(state, productionFolder(sizeOf(state)));
}

void applyFourLists(benchmark::State& state)
{
    apply(state, {sizeOf(state), sizeOf(state)}, fourLists(10));
}

void applyManyTypesAndIds(benchmark::State& state)
{
    apply(state, {1, sizeOf(state)}, manyBoardTypesAndVersions(sizeOf(state)));
}

void applyManyBoardsAndIds(benchmark::State& state)
{
    apply(state, {1, 2 * sizeOf(state)}, manyBoardsAndVersions(sizeOf(state)));
}

void applyOneKeyForAll(benchmark::State& state)
{
    apply(state, {sizeOf(state), sizeOf(state)}, oneKeyForAll(sizeOf(state)));
}

constexpr auto sizes = {1000, 10000};

const auto* const plain = measure("apply", applyProduction, {1000, 10000, 100000});
const auto* const lists = measure("apply-four-lists-of-10", applyFourLists, sizes);
const auto* const types = measure("apply-many-types-and-ids", applyManyTypesAndIds, sizes);
const auto* const boards = measure("apply-many-boards-and-ids", applyManyBoardsAndIds, sizes);
const auto* const oneKey = measure("apply-one-key-for-all", applyOneKeyForAll, sizes);

}  // namespace
