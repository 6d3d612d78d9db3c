// ElementGroups: which elements are alike to all files.
//
// Elements that have the same of everything that a file may ask are one group. The groups of a board type and id, or
// target path, are a target.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/NumberRow.h"
#include "base/PositionIndex.h"
#include "inventory/ZoSUpdateElement.h"

namespace ZoNUpdateAssignment {

using ZoNUpdateBase::Number;
using ZoNUpdateBase::NumberRow;

class Numberings;

// By the criteria of which a file has one value for an element (targetCriteria).
constexpr std::size_t targetProperties = 4;
using Concern = std::uint32_t;                           // a bit for each that concerns an element
using TargetRow = std::array<Number, targetProperties>;  // 0 for what does not concern it

// So many elements, or offers of files, are looked at before any of them is looked up. The processor fetches meanwhile
// what the look-ups need: of many elements it does not have all at hand.
inline constexpr std::size_t atOnce = 16;

using Position = std::uint32_t;
inline constexpr Position noGroup = 0xFFFFFFFF;

struct Target {
    Concern concern;
    TargetRow numbers;
    Position firstOpen = noGroup;  // of the groups that have no file, each of which tells the next
    std::uint32_t openCount = 0;
};

struct Group {
    Position target;
    NumberRow listed;
    Position nextOpen;
    std::optional<std::uint32_t> file;  // the first that fits, of those that were tried
};

class ElementGroups {
public:
    // Keeps a reference to the numberings, and adds to them what the elements have.
    ElementGroups(std::span<const ZoNUpdateInventory::ZoSUpdateElement* const> elements, Numberings& numberings);

    // All that there are.
    const std::vector<Concern>& getConcerns() const { return concerns; }

    std::vector<Target>& getTargets() { return targets; }
    std::vector<Group>& getGroups() { return groups; }

    // Of each element, in their order.
    const std::vector<Position>& getGroupsOfElements() const { return groupsOfElements; }

    // Nothing when no element is in it.
    std::optional<Position> findTarget(Concern concern, const TargetRow& numbers) const;

    // Has the processor fetch, without waiting for it, what findTarget() looks at first.
    void fetchTargetAhead(Concern concern, const TargetRow& numbers) const;

    // For a target that has had several groups. Nothing when no element is in it.
    std::optional<Position> findGroup(Position target, const NumberRow& listed) const;

private:
    // What an element has.
    struct Row {
        Concern concern;
        TargetRow target;
        NumberRow listed;
    };

    void add(std::span<const ZoNUpdateInventory::ZoSUpdateElement* const> elements);
    Row rowOf(const ZoNUpdateInventory::ZoSUpdateElement& element);
    Position targetWith(Concern concern, const TargetRow& numbers);
    Position groupWith(Position target, const NumberRow& listed);
    Position addGroup(Position target, const NumberRow& listed);

    Numberings& numberings;
    std::vector<Concern> concerns;
    std::vector<Target> targets;
    ZoNUpdateBase::PositionIndex targetIndex;
    std::vector<Group> groups;
    ZoNUpdateBase::PositionIndex groupIndex;  // without those that are the only one of their target, as most are
    std::vector<Position> groupsOfElements;
};

}  // namespace ZoNUpdateAssignment
