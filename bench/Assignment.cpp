// Assigning update files to update elements, beside a walk over all files for each element; and the phases.
#include "AssignmentRun.h"
#include "HardCases.h"
#include "Measure.h"
#include "Production.h"
#include "Workspace.h"
#include "assignment/ZoCUpdateAssignment.h"

namespace {

void assignProduction(benchmark::State& state)
{
    Workspace workspace;
    workspace.readArchive(productionFolder(sizeOf(state)) / "archive.json");
    workspace.makeElements(sizeOf(state), production().change);
    measureAssignment(state, workspace);
}

// The first file that matches, of all files one after the other.
void assignByPlainWalk(benchmark::State& state)
{
    Workspace workspace;
    workspace.readArchive(productionFolder(sizeOf(state)) / "archive.json");
    workspace.makeElements(sizeOf(state), production().change);
    const auto& files = workspace.updater().getArchive().getUpdateFileList();
    std::size_t assigned = 0;
    for ([[maybe_unused]] auto iteration : state) {
        assigned = 0;
        for (const auto& element : workspace.updater().getInventory().getUpdateElementList()) {
            for (const auto& file : files) {
                std::string targetPath;
                if (ZoCUpdateAssignment::matches(element, file, targetPath)) {
                    ++assigned;
                    break;
                }
            }
        }
    }
    state.counters["assigned"] = static_cast<double>(assigned);
}

void assignManyBoardTypes(benchmark::State& state)
{
    measureAssignment(state, manyBoardTypes());
}

void assignManyIdsOfOneBoardType(benchmark::State& state)
{
    measureAssignment(state, {[](unsigned i) {
                                  return Json{{"boardType", "T"}, {"id", i}};
                              },
                              [](Element& element, unsigned i) { element.id = i; }});
}

void assignManyTargetPaths(benchmark::State& state)
{
    measureAssignment(state, {[](unsigned i) {
                                  return Json{{"boardType", "T"}, {"targetPath", numbered("/data/", i)}};
                              },
                              [](Element& element, unsigned i) {
                                  element.isFileSystemElement = true;
                                  element.location = ZoCString(numbered("/data/", i).c_str());
                              }});
}

// Files that differ in nothing but the variant.
void assignManyVariants(benchmark::State& state)
{
    measureAssignment(state,
                      {[](unsigned i) {
                           return Json{{"boardType", "T"}, {"id", 1}, {"boardVariant", numbered("V", i)}};
                       },
                       [](Element& element, unsigned i) { element.variant = ZoCString(numbered("V", i).c_str()); }});
}

void computePhases(benchmark::State& state)
{
    const unsigned count = sizeOf(state);
    Workspace workspace;
    // 7919 is prime and no size is a multiple of it: every sequence occurs once, in no order.
    workspace.readArchive(count, [=](unsigned i) {
        return Json{{"boardType", "T"}, {"id", i}, {"sequence", 7919ull * i % count}};
    });
    workspace.makeElements(count, [](Element& element, unsigned i) { element.id = i; });
    ZoCUpdateAssignment& assignment = workspace.updater().getAssignment();
    assignment.makeAssignment();
    for ([[maybe_unused]] auto iteration : state) {
        assignment.computeUpdatePhase();
    }
    state.counters["phases"] = assignment.getNumberOfUpdatePhases();
}

constexpr auto sizes = {1000, 10000, 30000};

const auto* const plain = measure("assign", assignProduction, {1000, 3000, 10000, 30000, 100000});
const auto* const plainWalk = measure("assign-plain-walk", assignByPlainWalk, {300, 1000, 3000});
const auto* const boardTypes = measure("assign-many-board-types", assignManyBoardTypes, sizes);
const auto* const ids = measure("assign-many-ids", assignManyIdsOfOneBoardType, sizes);
const auto* const targetPaths = measure("assign-many-target-paths", assignManyTargetPaths, sizes);
const auto* const variants = measure("assign-many-variants", assignManyVariants, sizes);
const auto* const phases = measure("phases", computePhases, sizes);

}  // namespace
