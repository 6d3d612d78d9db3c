// Allocations that fail when they are told to. Under the sanitizers, which have a malloc() of their own, those of C++
// alone.
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <new>

#include "faults/FaultPoints.h"

namespace {

// `allocate` does it, and gives null when it cannot.
template <class Allocate>
void* allocateUnlessChosen(Allocate allocate)
{
    void* const memory = FaultPoints::isFailingAllocation() ? nullptr : allocate();
    if (memory == nullptr) {
        errno = ENOMEM;
        return nullptr;
    }
    FaultPoints::noteAllocation(1);
    return memory;
}

void noteGivenBack(const void* memory)
{
    if (memory != nullptr) {
        FaultPoints::noteAllocation(-1);
    }
}

}  // namespace

#if defined(__SANITIZE_ADDRESS__)

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allocateUnlessChosen([size] { return std::malloc(size != 0 ? size : 1); });
}

void* operator new(std::size_t size)
{
    void* const memory = operator new(size, std::nothrow);
    return memory != nullptr ? memory : throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    noteGivenBack(memory);
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    operator delete(memory);
}

#else

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void __libc_free(void* memory);

void* faultyMalloc(std::size_t size) asm("malloc");
void* faultyCalloc(std::size_t count, std::size_t size) asm("calloc");
void* faultyRealloc(void* memory, std::size_t size) asm("realloc");
void faultyFree(void* memory) asm("free");

void* faultyMalloc(std::size_t size)
{
    return allocateUnlessChosen([size] { return __libc_malloc(size); });
}

void* faultyCalloc(std::size_t count, std::size_t size)
{
    return allocateUnlessChosen([count, size] { return __libc_calloc(count, size); });
}

void* faultyRealloc(void* memory, std::size_t size)
{
    void* const moved = allocateUnlessChosen([memory, size] { return __libc_realloc(memory, size); });
    if (moved != nullptr) {
        noteGivenBack(memory);
    }
    return moved;
}

void faultyFree(void* memory)
{
    noteGivenBack(memory);
    __libc_free(memory);
}

}  // extern "C"

#endif
