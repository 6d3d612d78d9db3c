#include "AssignmentRun.h"

#include "Measure.h"
#include "assignment/ZoCUpdateAssignment.h"

void measureAssignment(benchmark::State& state, Workspace& workspace)
{
    for ([[maybe_unused]] auto iteration : state) {
        workspace.updater().getAssignment().makeAssignment();
    }
    state.counters["assigned"] = workspace.assignedElements();
}

void measureAssignment(benchmark::State& state, Size size, const Case& data)
{
    Workspace workspace;
    workspace.readArchive(size.files, data.members);
    workspace.makeElements(size.elements, data.change);
    measureAssignment(state, workspace);
}

void measureAssignment(benchmark::State& state, const Case& data)
{
    measureAssignment(state, {sizeOf(state), sizeOf(state)}, data);
}
