#include "Allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> allocations = 0;
std::atomic<std::size_t> bytes = 0;
std::atomic<std::size_t> failingAllocation = 0;  // counted as above; 0: none

}  // namespace

std::size_t allocationCount()
{
    return allocations;
}

std::size_t allocatedBytes()
{
    return bytes;
}

void failAllocation(std::size_t number)
{
    failingAllocation = number == 0 ? 0 : allocations + number;
}

// These take the place of the standard library's for the whole test program.
void* operator new(std::size_t size)
{
    bytes += size;
    if (++allocations == failingAllocation) {
        throw std::bad_alloc();
    }
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}

// The sanitizer's own would not go with the functions below.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
