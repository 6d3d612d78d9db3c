// How benchmarks are named and registered, and what they measure besides time.
#pragma once

#include <benchmark/benchmark.h>

#include <initializer_list>

using Measurement = void (*)(benchmark::State&);

// Registers the benchmark `name`, once for each size, which ends the name: "assign/1000". The measurement finds the
// size by sizeOf(). With TRELLAN_BENCH_SMALLEST in the environment only the first size is registered. A rival is named
// after what it is measured against, with its own name behind.
//
//   const auto* const registered = measure("assign", assign, {1000, 10000, 100000});
benchmark::internal::Benchmark* measure(const char* name, Measurement measurement, std::initializer_list<int> sizes);

unsigned sizeOf(const benchmark::State& state);

// How far this process's memory grows: the most that is resident, beyond what is when the object is made.
class MemoryPeak {
public:
    MemoryPeak();

    // In bytes, up to now.
    double growth() const;

private:
    double before;
};

constexpr double megabyte = 1e6;
