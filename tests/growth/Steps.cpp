#include "growth/Steps.h"

#include "allocations/Allocations.h"

namespace {

std::size_t steps = 0;

constexpr std::size_t bytesOfStep = 64;

}  // namespace

std::size_t stepCount()
{
    return steps + allocationCount() + allocatedBytes() / bytesOfStep;
}

// What the compiler calls, and the functions that the linker puts before those of the C library.
extern "C" {

void __sanitizer_cov_trace_pc();
void __sanitizer_cov_trace_pc()
{
    ++steps;
}

// COUNTED(RESULT, NAME, (PARAMETERS), (ARGUMENTS)): of `size` bytes.
#define COUNTED(result, name, parameters, arguments) \
    result __real_##name parameters;                 \
    result __wrap_##name parameters;                 \
    result __wrap_##name parameters                  \
    {                                                \
        steps += size / bytesOfStep + 1;             \
        return __real_##name arguments;              \
    }

COUNTED(void*, memcpy, (void* to, const void* from, std::size_t size), (to, from, size))
COUNTED(void*, memmove, (void* to, const void* from, std::size_t size), (to, from, size))
COUNTED(void*, memset, (void* to, int value, std::size_t size), (to, value, size))
COUNTED(int, memcmp, (const void* a, const void* b, std::size_t size), (a, b, size))
}
