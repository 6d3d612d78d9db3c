// The benchmarks' program. With --benchmark_out=FILE the results go to that file alone, and which benchmark has run to
// standard error.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <iostream>
#include <string_view>
#include <vector>

namespace {

using Run = benchmark::BenchmarkReporter::Run;

class Progress : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& /*context*/) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        if (!runs.empty() && runs.front().run_type == Run::RT_Iteration) {
            std::cerr << runs.front().run_name.function_name << "/" << runs.front().run_name.args << std::endl;
        }
    }
};

// Sizes end the names, and the processor time of a benchmark that measures other processes is theirs.
class Results : public benchmark::JSONReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        std::vector<Run> results = runs;
        for (Run& run : results) {
            if (run.run_name.time_type == "manual_time") {
                run.cpu_accumulated_time = run.real_accumulated_time;
                run.run_name.time_type.clear();
            }
        }
        JSONReporter::ReportRuns(results);
    }
};

}  // namespace

int main(int argc, char** argv)
{
    const bool toFile = std::any_of(argv, argv + argc,
                                    [](std::string_view argument) { return argument.starts_with("--benchmark_out="); });
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    Progress progress;
    Results results;
    const std::size_t count =
        toFile ? benchmark::RunSpecifiedBenchmarks(&progress, &results) : benchmark::RunSpecifiedBenchmarks();
    return count == 0 ? 1 : 0;
}
