// The order of the updates: a phase for each distinct sequence number.
#include <algorithm>

#include "assignment/ZoCUpdateAssignment.h"
#include "updater/ZoCTrellanUpdater.h"

bool ZoCUpdateAssignment::lowerThen(SortElemType a, SortElemType b)
{
    return a.sequence < b.sequence;
}

void ZoCUpdateAssignment::computeUpdatePhase()
{
    std::vector<SortElemType> order;
    for (auto& element : updateElements) {
        const auto* const file = fileOf(element);
        if (file != nullptr && !element.disabled) {
            order.push_back({&element, file->sequence});
        }
    }
    std::stable_sort(order.begin(), order.end(), lowerThen);

    numberOfUpdatePhases = 0;
    std::uint32_t previousSequence = 0;
    for (const SortElemType& entry : order) {
        if (numberOfUpdatePhases == 0 || entry.sequence > previousSequence) {
            ++numberOfUpdatePhases;
            previousSequence = entry.sequence;
        }
        entry.element->phase = numberOfUpdatePhases - 1;
    }
    if (options.verbose) {
        updater.print("The update process takes %u phases!\n", numberOfUpdatePhases);
    }
}
