// An update on a virtual clock, where waiting costs nothing: elements on boards of their own are updated in one phase,
// by a device that has finished when it is asked first, and by one that needs a thousand seconds for each.
#include <ctime>
#include <stdexcept>

#include "HardCases.h"
#include "Measure.h"
#include "Workspace.h"
#include "simulation/base/Clock.h"

namespace {

constexpr unsigned imageSize = 1000;  // bytes

void update(benchmark::State& state, unsigned bytesPerSecond)
{
    const TempDir folder;
    const Case data = manyBoardTypes();
    Json target = targetOf(sizeOf(state), data);
    target["clock"] = "virtual";
    target["bytesPerSecond"] = bytesPerSecond;
    folder.write("archive.json", textOf(descriptionOf(sizeOf(state), data.members)));
    folder.write("target.json", textOf(target));
    folder.write("file.bin", std::string(imageSize, 'x'));
    auto options = optionsFor(ZoNTrellanUpdater::UPDATE, folder.path());
    options.force = true;
    const auto updater = appliedUpdater(options);
    const std::uint64_t sleptBefore = TrellanSimulation::now();
    const std::clock_t usedBefore = std::clock();
    for ([[maybe_unused]] auto iteration : state) {
        if (updater->run() != 1) {
            throw std::runtime_error("the update has failed");
        }
    }
    const double used = static_cast<double>(std::clock() - usedBefore) / CLOCKS_PER_SEC;
    const double slept = static_cast<double>(TrellanSimulation::now() - sleptBefore) / 1e6;
    state.counters["percent_of_slept"] = 100 * used / slept;
}

void updateWithFewPolls(benchmark::State& state)
{
    update(state, 10 * imageSize);
}

void updateWithManyPolls(benchmark::State& state)
{
    update(state, imageSize / 1000);
}

const auto* const few = measure("update-few-polls", updateWithFewPolls, {100, 1000, 10000});
const auto* const many = measure("update-many-polls", updateWithManyPolls, {100, 300, 1000});

}  // namespace
