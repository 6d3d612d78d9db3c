// The tables of the commands that print one, without writing them anywhere.
#include "Measure.h"
#include "Production.h"
#include "Workspace.h"

namespace {

template <ZoNTrellanUpdater::ZoTCommand command>
void print(benchmark::State& state)
{
    const auto updater = appliedUpdater(optionsFor(command, productionFolder(sizeOf(state))));
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(updater->run());
    }
}

constexpr auto sizes = {1000, 10000, 30000};

const auto* const archive = measure("table-list", print<ZoNTrellanUpdater::PRINT_ARCHIVE>, sizes);
const auto* const installed = measure("table-installed", print<ZoNTrellanUpdater::INSTALLED_VERSIONS>, sizes);
const auto* const comparison = measure("table-compare", print<ZoNTrellanUpdater::COMPARE_VERSIONS>, sizes);

}  // namespace
