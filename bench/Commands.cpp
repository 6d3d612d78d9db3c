// Whole commands of the tool: the processor time of their processes, and beside it that of bare parsers which read the
// same documents and do nothing with them.
#include <simdjson.h>

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "Measure.h"
#include "Production.h"
#include "support/TempDir.h"

namespace {

struct Used {
    double seconds = 0;
    double peak = 0;    // bytes
    double writes = 0;  // calls of the system
};

// The path of a program that lies beside this one.
std::string program(const char* name)
{
    return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / name).string();
}

// Runs a program, which must succeed, in a process of its own.
Used run(const std::string& commandLine)
{
    std::FILE* const output = ::popen((program("measured-run") + " " + commandLine).c_str(), "r");
    Used used;
    const int values = std::fscanf(output, "%lf %lf %lf", &used.seconds, &used.peak, &used.writes);
    if (::pclose(output) != 0 || values != 3) {
        throw std::runtime_error("cannot measure " + commandLine);
    }
    return used;
}

void measureRuns(benchmark::State& state, const std::string& commandLine)
{
    Used used;
    for ([[maybe_unused]] auto iteration : state) {
        used = run(commandLine);
        state.SetIterationTime(used.seconds);
    }
    state.counters["peak_mb"] = used.peak / megabyte;
    state.counters["writes"] = used.writes;
}

std::string pathOf(const benchmark::State& state, const char* name)
{
    return (productionFolder(sizeOf(state)) / name).string();
}

template <unsigned elementsOfBoard>
void compare(benchmark::State& state)
{
    const std::string folder = productionFolder(sizeOf(state), elementsOfBoard).string();
    measureRuns(state, program("trellan-update") + " compare " + folder + " --target " + folder + "/target.json");
}

template <unsigned elementsOfBoard>
void compareBySimdjson(benchmark::State& state)
{
    const std::filesystem::path& folder = productionFolder(sizeOf(state), elementsOfBoard);
    for ([[maybe_unused]] auto iteration : state) {
        for (const char* const name : {"archive.json", "target.json"}) {
            simdjson::dom::parser parser;
            benchmark::DoNotOptimize(parser.load((folder / name).string()).value().is_object());
        }
    }
}

void installed(benchmark::State& state)
{
    measureRuns(state, program("trellan-update") + " installed --target " + pathOf(state, "target.json"));
}

void installedByNlohmann(benchmark::State& state)
{
    for ([[maybe_unused]] auto iteration : state) {
        std::ifstream file(pathOf(state, "target.json"));
        benchmark::DoNotOptimize(nlohmann::json::parse(file).is_object());
    }
}

// Each run updates all again, on a virtual clock.
void update(benchmark::State& state)
{
    const std::string folder = productionOfDeviceFolder(sizeOf(state)).string();
    measureRuns(state,
                program("trellan-update") + " update " + folder + " --force --target " + folder + "/target.json");
}

void version(benchmark::State& state)
{
    measureRuns(state, program("trellan-update") + " version");
}

void nothing(benchmark::State& state)
{
    measureRuns(state, program("nothing"));
}

// Targets of 96 elements each, for an archive of a thousand entries.
void coverage(benchmark::State& state)
{
    const TempDir targets;
    for (unsigned i = 0; i < sizeOf(state); ++i) {
        targets.write(numbered("target-", i) + ".json", textOf(targetOf(96, production(), i * 8 % 904)));
    }
    measureRuns(state, program("trellan-update") + " coverage " + productionFolder(1000).string() + " " +
                           targets.path().string());
}

constexpr auto sizes = {1000, 10000, 100000};

constexpr auto ends = {1000, 100000};

const auto* const compared = measure("compare", compare<8>, sizes) -> UseManualTime();
const auto* const comparedBySimdjson = measure("compare-simdjson", compareBySimdjson<8>, sizes);
const auto* const comparedFours = measure("compare-boards-of-4", compare<4>, ends) -> UseManualTime();
const auto* const comparedFoursBySimdjson = measure("compare-boards-of-4-simdjson", compareBySimdjson<4>, ends);
const auto* const comparedOnes = measure("compare-boards-of-1", compare<1>, ends) -> UseManualTime();
const auto* const comparedOnesBySimdjson = measure("compare-boards-of-1-simdjson", compareBySimdjson<1>, ends);
const auto* const installedOnes = measure("installed", installed, sizes) -> UseManualTime();
const auto* const installedOnesByNlohmann = measure("installed-nlohmann", installedByNlohmann, sizes);
const auto* const updated = measure("update", update, sizes) -> UseManualTime();
const auto* const started = measure("version", version, {}) -> UseManualTime();
const auto* const startedNothing = measure("version-program-that-does-nothing", nothing, {}) -> UseManualTime();
const auto* const covered = measure("coverage", coverage, {50, 500}) -> UseManualTime();

}  // namespace
