// Takers: which of a row of boxes is the first to hold what is in a box.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "assignment/MatchCriteria.h"
#include "base/SparsePositions.h"

namespace ZoNUpdateInspection {

inline constexpr std::size_t boxSides = ZoNUpdateAssignment::listedCriteria.size();

using BoxSide = std::vector<std::uint32_t>;  // ascending, each number once

// All combinations of one number of each side; a box with an empty side has nothing in it. Boxes may share sides.
using Box = std::array<const BoxSide*, boxSides>;

// What becomes of the content of a box.
struct BoxContent {
    // Something that one of the boxes before it took.
    struct Example {
        std::uint32_t taker;
        std::array<std::uint32_t, boxSides> numbers;
    };

    bool leavesSome = false;            // for the box itself
    std::vector<std::uint32_t> takers;  // ascending; positions in the row
    std::optional<Example> taken;       // of the first taker's
};

// A row of boxes to which one after the other is added.
class Takers {
public:
    // Adds a box and tells who has its content. What is in several boxes is the first one's. Exact; takes a time that
    // grows with a 64th of the boxes before it that have a number in common with it and, where these differ in each
    // number of its sides, with the product of the sides.
    BoxContent add(const Box& box);

private:
    class Walk;

    ZoNUpdateBase::SparsePositions candidatesFor(const Box& box);
    ZoNUpdateBase::SparsePositions unite(const std::vector<const ZoNUpdateBase::SparsePositions*>& sets);

    std::uint32_t count = 0;                                                                          // of boxes
    std::array<std::unordered_map<std::uint32_t, ZoNUpdateBase::SparsePositions>, boxSides> holders;  // by number
    std::vector<std::uint64_t> united;  // all 0 while nothing is united
};

}  // namespace ZoNUpdateInspection
