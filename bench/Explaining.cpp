// Explaining why elements get their entries or none: each element is held against the entries.
#include <memory>

#include "HardCases.h"
#include "Measure.h"
#include "Production.h"
#include "Workspace.h"
#include "ZoITrellanInspector.h"
#include "archive/ZoCUpdateArchive.h"
#include "inspection/Explanation.h"

namespace {

// By the inspector, as a host asks it.
void explainProduction(benchmark::State& state)
{
    const auto folder = productionFolder(sizeOf(state));
    const auto updater = appliedUpdater(optionsFor(ZoNTrellanUpdater::COMPARE_VERSIONS, folder));
    for ([[maybe_unused]] auto iteration : state) {
        const std::unique_ptr<ZoITrellanInspector> inspector(ZoITrellanInspector::createInstance(*updater));
        for (unsigned i = 0; i < sizeOf(state); ++i) {
            benchmark::DoNotOptimize(inspector->explainElement(i));
        }
    }
}

// As many elements as entries, half of them of board types that no entry is for; `change`: what tells them apart
// besides.
void explain(benchmark::State& state, const Change& change)
{
    Workspace workspace;
    workspace.readArchive(sizeOf(state), manyBoardTypes().members);
    const auto changeAll = [&](Element& element, unsigned i) {
        element.boardType = ZoCString(numbered(i % 2 == 0 ? "T" : "FOREIGN", i).c_str());
        change(element, i);
    };
    for ([[maybe_unused]] auto iteration : state) {
        ZoNUpdateInspection::Explanation explanation(workspace.updater().getArchive().getUpdateFileList());
        for (unsigned i = 0; i < sizeOf(state); ++i) {
            ZoNUpdateInventory::ZoSUpdateElement element;
            static_cast<Element&>(element) = elementOf(i, changeAll);
            benchmark::DoNotOptimize(explanation.compare(element));
        }
    }
}

void explainForeignTypes(benchmark::State& state)
{
    explain(state, [](Element&, unsigned) {});
}

void explainForeignTypesAndVersions(benchmark::State& state)
{
    explain(state, [](Element& element, unsigned i) { element.hwCompatibilityId = i % 20; });
}

constexpr auto sizes = {1000, 10000};

const auto* const plain = measure("explain", explainProduction, {300, 1000, 3000});
const auto* const foreign = measure("explain-foreign-types", explainForeignTypes, sizes);
const auto* const versions = measure("explain-foreign-types-and-versions", explainForeignTypesAndVersions, sizes);

}  // namespace
