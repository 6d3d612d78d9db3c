// Explaining elements that no entry is for.
#include <benchmark/benchmark.h>

#include <stdexcept>
#include <vector>

#include "Cases.h"
#include "Workspace.h"
#include "archive/ZoCUpdateArchive.h"
#include "inspection/Explanation.h"

namespace {

// As many elements as entries, half of them of board types that no entry is for; `change`: what tells them apart
// besides.
void explain(benchmark::State& state, const Change& change)
{
    const auto count = static_cast<unsigned>(state.range(0));
    Workspace workspace;
    const std::string path = workspace.write("archive.json", descriptionOf(entriesOf(count, manyBoardTypes())));
    ZoCUpdateArchive& archive = workspace.updater().getArchive();
    if (!archive.readDescriptionFileJson(workspace.errors(), path)) {
        throw std::runtime_error("the archive description is not valid");
    }
    const Case data{{}, [&](Element& element, unsigned i) {
                        element.boardType = ZoCString(numbered(i % 2 == 0 ? "T" : "FOREIGN", i).c_str());
                        change(element, i);
                    }};
    for ([[maybe_unused]] auto iteration : state) {
        ZoNUpdateInspection::Explanation explanation(archive.getUpdateFileList());
        for (unsigned i = 0; i < count; ++i) {
            ZoNUpdateInventory::ZoSUpdateElement element;
            static_cast<Element&>(element) = elementOf(i, data);
            benchmark::DoNotOptimize(explanation.compare(element));
        }
    }
    state.SetComplexityN(state.range(0));
}

void explainForeignBoardTypes(benchmark::State& state)
{
    explain(state, [](Element&, unsigned) {});
}

void explainForeignBoardTypesWithTenHardwareVersions(benchmark::State& state)
{
    explain(state, [](Element& element, unsigned i) { element.hwCompatibilityId = i % 20; });
}

}  // namespace

BENCHMARK(explainForeignBoardTypes)->Arg(10000)->Arg(20000)->Unit(benchmark::kMillisecond);
BENCHMARK(explainForeignBoardTypesWithTenHardwareVersions)->Arg(10000)->Arg(20000)->Unit(benchmark::kMillisecond);
