#include "assignment/ElementGroups.h"

#include <algorithm>
#include <utility>

#include "assignment/MatchCriteria.h"
#include "assignment/MatchNumbers.h"

using namespace ZoNUpdateBase;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace ZoNUpdateAssignment {
namespace {

static_assert(targetProperties == targetCriteria.size() && ZoNUpdateBase::listedProperties == listedCriteria.size());
static_assert(targetCriteria.size() + listedCriteria.size() == MatchCriterion::count);

// Of a target by its concern, and of a group by its target.
template <std::size_t size>
std::uint64_t hashOf(std::uint32_t first, const std::array<Number, size>& numbers)
{
    std::uint64_t hash = combinedHash(0, first);
    for (const Number number : numbers) {
        hash = combinedHash(hash, number);
    }
    return hash;
}

// What a file may ask of an element stands within its first three lines of the processor's cache.
void fetchAhead(const ZoSUpdateElement& element)
{
    constexpr std::size_t line = 64;  // bytes
    for (std::size_t offset = 0; offset < 3 * line; offset += line) {
        __builtin_prefetch(reinterpret_cast<const char*>(&element) + offset);
    }
}

}  // namespace

ElementGroups::ElementGroups(std::span<const ZoSUpdateElement* const> elements, Numberings& numberings)
    : numberings(numberings)
{
    targets.reserve(elements.size());
    targetIndex.reserve(elements.size());
    groups.reserve(elements.size());
    groupsOfElements.reserve(elements.size());
    while (!elements.empty()) {
        const auto some = elements.first(std::min(elements.size(), atOnce));
        add(some);
        elements = elements.subspan(some.size());
    }
}

void ElementGroups::add(std::span<const ZoSUpdateElement* const> elements)
{
    for (const ZoSUpdateElement* const element : elements) {
        fetchAhead(*element);
    }
    std::array<Row, atOnce> rows;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        rows[i] = rowOf(*elements[i]);
        fetchTargetAhead(rows[i].concern, rows[i].target);
    }
    for (std::size_t i = 0; i < elements.size(); ++i) {
        groupsOfElements.push_back(groupWith(targetWith(rows[i].concern, rows[i].target), rows[i].listed));
    }
}

ElementGroups::Row ElementGroups::rowOf(const ZoSUpdateElement& element)
{
    Row row{};
    for (std::size_t i = 0; i < row.target.size(); ++i) {
        if (auto value = matchCriteria[targetCriteria[i]].actual(element)) {
            row.concern |= 1U << i;
            row.target[i] = numberings.add(targetCriteria[i], *std::move(value));
        }
    }
    std::transform(listedCriteria.begin(), listedCriteria.end(), row.listed.begin(), [&](std::size_t criterion) {
        return numberings.add(criterion, *matchCriteria[criterion].actual(element));
    });
    return row;
}

Position ElementGroups::targetWith(Concern concern, const TargetRow& numbers)
{
    if (const auto found = findTarget(concern, numbers)) {
        return *found;
    }
    const auto position = static_cast<Position>(targets.size());
    targetIndex.add(hashOf(concern, numbers), position);
    targets.push_back({concern, numbers});
    if (std::find(concerns.begin(), concerns.end(), concern) == concerns.end()) {
        concerns.push_back(concern);
    }
    return position;
}

std::optional<Position> ElementGroups::findTarget(Concern concern, const TargetRow& numbers) const
{
    return targetIndex.find(hashOf(concern, numbers), [&](Position at) {
        return targets[at].concern == concern && targets[at].numbers == numbers;
    });
}

void ElementGroups::fetchTargetAhead(Concern concern, const TargetRow& numbers) const
{
    targetIndex.fetchAhead(hashOf(concern, numbers));
}

Position ElementGroups::groupWith(Position position, const NumberRow& listed)
{
    const Target& target = targets[position];
    if (target.openCount == 1) {
        const Position only = target.firstOpen;
        if (groups[only].listed == listed) {
            return only;
        }
        groupIndex.add(hashOf(position, groups[only].listed), only);
    } else if (target.openCount > 1) {
        if (const auto found = findGroup(position, listed)) {
            return *found;
        }
    }
    return addGroup(position, listed);
}

Position ElementGroups::addGroup(Position position, const NumberRow& listed)
{
    Target& target = targets[position];
    const auto group = static_cast<Position>(groups.size());
    if (target.openCount != 0) {
        groupIndex.add(hashOf(position, listed), group);
    }
    groups.push_back({position, listed, target.firstOpen, std::nullopt});
    target.firstOpen = group;
    ++target.openCount;
    return group;
}

std::optional<Position> ElementGroups::findGroup(Position target, const NumberRow& listed) const
{
    return groupIndex.find(hashOf(target, listed),
                           [&](Position at) { return groups[at].target == target && groups[at].listed == listed; });
}

}  // namespace ZoNUpdateAssignment
