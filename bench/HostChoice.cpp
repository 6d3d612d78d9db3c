// A host's choice among the elements: each of them is disabled, one after the other.
#include <benchmark/benchmark.h>

#include "Workspace.h"
#include "inventory/ZoCUpdateInventory.h"

namespace {

void disableEveryElement(benchmark::State& state)
{
    const auto count = static_cast<unsigned>(state.range(0));
    Workspace workspace;
    for (unsigned i = 0; i < count; ++i) {
        workspace.updater().getInventory().appendElement();
    }
    for ([[maybe_unused]] auto iteration : state) {
        for (unsigned index = 0; index < count; ++index) {
            workspace.updater().disableUpdateElement(index);
        }
    }
    state.SetComplexityN(state.range(0));
}

}  // namespace

BENCHMARK(disableEveryElement)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Complexity();
