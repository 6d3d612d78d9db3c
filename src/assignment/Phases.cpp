// The order of the updates: a phase for each distinct sequence number.
#include <algorithm>

#include "assignment/ZoCUpdateAssignment.h"
#include "base/Pointers.h"
#include "base/PositionIndex.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace {

bool isToBeUpdated(const ZoSUpdateElement& element)
{
    return element.updateFileIndex != -1 && !element.disabled;
}

}  // namespace

bool ZoCUpdateAssignment::lowerThen(SortElemType a, SortElemType b)
{
    return a.sequence < b.sequence;
}

void ZoCUpdateAssignment::computeUpdatePhase()
{
    computePhasesOf(pointersTo(updateElements));
}

void ZoCUpdateAssignment::computePhasesOf(const ElementPointers& elements)
{
    // At first the elements' phases are numbers of their sequences, in the order in which these turn up.
    std::vector<SortElemType> firsts;  // of each sequence
    PositionIndex numbers;
    for (ZoSUpdateElement* const element : elements) {
        if (!isToBeUpdated(*element)) {
            continue;
        }
        const std::uint32_t sequence = fileOf(*element)->sequence;
        const std::uint64_t hash = combinedHash(0, sequence);
        auto number = numbers.find(hash, [&](std::uint32_t at) { return firsts[at].sequence == sequence; });
        if (!number) {
            number = static_cast<std::uint32_t>(firsts.size());
            numbers.add(hash, *number);
            firsts.push_back({element, sequence});
        }
        element->phase = *number;
    }

    std::stable_sort(firsts.begin(), firsts.end(), lowerThen);
    numberOfUpdatePhases = static_cast<std::uint32_t>(firsts.size());
    std::vector<std::uint32_t> phases(firsts.size());  // by number
    for (std::uint32_t phase = 0; phase < numberOfUpdatePhases; ++phase) {
        phases[firsts[phase].element->phase] = phase;
    }
    for (ZoSUpdateElement* const element : elements) {
        if (isToBeUpdated(*element)) {
            element->phase = phases[element->phase];
        }
    }
    if (options.verbose) {
        updater.print("The update process takes %u phases!\n", numberOfUpdatePhases);
    }
}
