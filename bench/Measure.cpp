#include "Measure.h"

#include <malloc.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

namespace {

// A value of this process that the system gives in kilobytes, such as "VmRSS:".
double statusValue(const std::string& name)
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        double kilobytes = 0;
        if (word == name && status >> kilobytes) {
            return kilobytes * 1024;
        }
    }
    throw std::runtime_error("the system does not tell " + name);
}

// The most that is resident is from now on counted from what is.
void forgetPeak()
{
    std::ofstream file("/proc/self/clear_refs");
    file << "5";
    if (!file.flush()) {
        throw std::runtime_error("the system does not let go of the peak of memory");
    }
}

}  // namespace

benchmark::internal::Benchmark* measure(const char* name, Measurement measurement, std::initializer_list<int> sizes)
{
    auto* const registered = benchmark::RegisterBenchmark(name, measurement);
    const bool onlySmallest = std::getenv("TRELLAN_BENCH_SMALLEST") != nullptr;
    for (const int size : sizes) {
        registered->Arg(size);
        if (onlySmallest) {
            break;
        }
    }
    return registered->Unit(benchmark::kMillisecond);
}

unsigned sizeOf(const benchmark::State& state)
{
    return static_cast<unsigned>(state.range(0));
}

MemoryPeak::MemoryPeak()
{
    ::malloc_trim(0);
    before = statusValue("VmRSS:");
    forgetPeak();
}

double MemoryPeak::growth() const
{
    return statusValue("VmHWM:") - before;
}
