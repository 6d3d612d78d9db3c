// Measures assigning the files of a case to its elements.
#pragma once

#include <benchmark/benchmark.h>

#include "Inputs.h"
#include "Workspace.h"

struct Size {
    unsigned files;
    unsigned elements;
};

// All of the assignment, phases included, for the archive and the elements that the workspace has.
void measureAssignment(benchmark::State& state, Workspace& workspace);

// The same for so many files and elements of a case.
void measureAssignment(benchmark::State& state, Size size, const Case& data);

// The same with as many files and elements as the benchmark's size says.
void measureAssignment(benchmark::State& state, const Case& data);
