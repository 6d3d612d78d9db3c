// Steps: what the library does for an input, counted and not timed.
//
// This program holds a library of its own that is compiled to tell of each piece of straight code that it goes through:
// a piece is a step. So are 64 bytes that it copies, compares, clears or asks for, begun ones included.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>

// The steps of this process up to now.
std::size_t stepCount();

// The steps while `action` runs.
template <class Action>
std::size_t stepsOf(Action action)
{
    const std::size_t before = stepCount();
    action();
    return stepCount() - before;
}

// Expects that twice the input takes at most 2.2 times the steps, where `stepsFor(count)` tells those for an input of
// this size. Sorting is allowed for, and what is added to a table that grows.
template <class StepsFor>
void expectTwiceTheStepsAtMost(unsigned count, StepsFor stepsFor)
{
    const std::size_t once = stepsFor(count);
    const std::size_t twice = stepsFor(2 * count);
    EXPECT_GT(once, count) << "steps, fewer than there is input";
    EXPECT_LE(twice, once * 22 / 10) << "steps for " << 2 * count << ", and " << once << " for " << count;
}
