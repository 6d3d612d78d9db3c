// FindingOrder: which finding comes when, in the order of their places, in eight bytes for each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>

namespace TrellanTool {

class FindingOrder {
public:
    std::size_t size() const { return findings.size(); }

    // Adds the finding `number`, whose place is not known yet. Throws std::bad_alloc for a number that cannot be held.
    void add(std::size_t number);

    // Sets where the finding that was added at `position` begins, in bytes from the beginning of the text. Throws
    // std::bad_alloc for an offset that cannot be held.
    void setOffset(std::size_t position, std::size_t offset);

    // From now on a position is one in the order of the offsets, then of the numbers, those without an offset at the
    // end.
    void sort();

    std::size_t number(std::size_t position) const;
    std::optional<std::size_t> offset(std::size_t position) const;

private:
    std::deque<std::uint64_t> findings;  // the offset, and below it the number; never in need of twice the memory
};

}  // namespace TrellanTool
