// Reading an archive's description.
#include <benchmark/benchmark.h>

#include <stdexcept>

#include "Workspace.h"
#include "archive/ZoCUpdateArchive.h"

namespace {

nlohmann::json entry(unsigned i)
{
    const std::string number = std::to_string(i);
    if (i % 2 == 0) {
        return entryOf({{"name", "file" + number + ".bin"}, {"boardType", {"T" + number, "T"}}, {"id", i}});
    }
    return entryOf({{"name", "file" + number + ".bin"},
                    {"boards",
                     {{{"boardType", "T" + number}, {"id", i}, {"boardVariant", nullptr}},
                      {{"boardType", "T"}, {"id", i}, {"hwCompatibilityId", {1, 2, 3}}}}}});
}

void readDescription(benchmark::State& state)
{
    Workspace workspace;
    nlohmann::json entries = nlohmann::json::array();
    for (unsigned i = 0; i < static_cast<unsigned>(state.range(0)); ++i) {
        entries.push_back(entry(i));
    }
    const std::string path = workspace.write("archive.json", descriptionOf(entries));
    ZoCUpdateArchive& archive = workspace.updater().getArchive();
    for ([[maybe_unused]] auto iteration : state) {
        if (!archive.readDescriptionFileJson(workspace.errors(), path)) {
            throw std::runtime_error("the archive description is not valid");
        }
    }
    state.counters["files"] = static_cast<double>(archive.getUpdateFileList().size());
    state.SetComplexityN(state.range(0));
}

}  // namespace

BENCHMARK(readDescription)->Arg(1000)->Arg(4000)->Arg(16000)->Arg(64000)->Unit(benchmark::kMillisecond)->Complexity();
