// Which of those that write a file comes first of those that one after them shares a board with.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "assignment/MatchCriteria.h"

namespace ZoNUpdateInspection {

class AcceptedLists;

// What boards somebody writes to: those that have a value of each list of AcceptedLists.
using WrittenBoards = std::array<const std::vector<std::uint64_t>*, ZoNUpdateAssignment::listedCriteria.size()>;

// Writers of a file, and those with whom they are compared; both in their order.
struct WriterRows {
    std::vector<WrittenBoards> writers;
    std::vector<WrittenBoards> others;
    std::vector<std::uint32_t> before;  // for each writer, how many of the others come before it; ascending

    bool operator==(const WriterRows&) const = default;
};

// For each writer the position of the first one, of the others before it, that writes to a board which it writes to.
// The lists are those of `lists`. Takes a time that grows with the lists and with those that share a value of a
// property with a writer, of that property of which the fewest do.
std::vector<std::optional<std::uint32_t>> firstInCommon(const WriterRows& rows, AcceptedLists& lists);

}  // namespace ZoNUpdateInspection
