// A host's choice among the elements: each of them is disabled, one after the other.
#include "Measure.h"
#include "Workspace.h"

namespace {

void disableEveryElement(benchmark::State& state)
{
    Workspace workspace;
    workspace.makeElements(sizeOf(state), [](Element&, unsigned) {});
    for ([[maybe_unused]] auto iteration : state) {
        for (unsigned index = 0; index < sizeOf(state); ++index) {
            workspace.updater().disableUpdateElement(index);
        }
    }
}

const auto* const registered = measure("disable-every-element", disableEveryElement, {1000, 10000, 100000});

}  // namespace
