// How often this program asks for memory, and what it does when there is none left.
#pragma once

#include <cstddef>

// Requests for memory of this process up to now.
std::size_t allocationCount();

// Requests for memory while `action` runs.
template <class Action>
std::size_t allocationsOf(Action action)
{
    const std::size_t before = allocationCount();
    action();
    return allocationCount() - before;
}

// How many bytes this process has asked for up to now, given back or not.
std::size_t allocatedBytes();

// How many bytes are asked for while `action` runs.
template <class Action>
std::size_t bytesOf(Action action)
{
    const std::size_t before = allocatedBytes();
    action();
    return allocatedBytes() - before;
}

// Lets the request `number`, from 1 on, from now on fail for once; 0: none.
void failAllocation(std::size_t number);
