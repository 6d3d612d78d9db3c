// The places at which a program asks the system for something that it may refuse: its allocations, and its calls of the
// operating system. One of them is chosen and fails; whatever comes before and after it goes as usual.
//
// A program that is linked with FaultyAllocations.cpp and FaultyCalls.cpp has these stand before those of the C
// library, for itself and for all libraries that it loads.
#pragma once

#include <initializer_list>

namespace FaultPoints {

enum class Kind { none, allocation, call };

// Lets the point `number`, from 1 on and counted from now on, fail. A call can fail in several ways: `way`, from 0 on,
// is the one that is taken.
void choose(Kind kind, unsigned long number, unsigned way = 0);

// Nothing fails from now on.
void chooseNone();

// What has failed since choose(): the name of the call, or "allocation"; null when nothing has. In how many ways this
// call can fail, and whether it was a signal that has interrupted it.
const char* failed();
unsigned ways();
bool isInterrupted();

// For those that stand before the C library's: counts a point. True for the allocation that is to fail.
bool isFailingAllocation();

// The one of `errors` that this call is to fail with; 0: it goes as usual.
int errorOf(const char* call, std::initializer_list<int> errors);

// For those again: notes an allocation, 1, or that one was given back, -1. And how many have not been given back.
void noteAllocation(int change);
long allocationsHeld();

}  // namespace FaultPoints
