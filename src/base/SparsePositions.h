// SparsePositions: a set of positions, of which a word of bits stands for 64 that follow one another.
//
// Words without a position are not kept: positions far apart cost a word each, and those that lie close a 64th of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ZoNUpdateBase {

struct PositionWord {
    static constexpr std::uint32_t size = 64;

    std::uint32_t number;  // of the word: its positions begin at number * size
    std::uint64_t bits;    // never 0
};

using SparsePositions = std::vector<PositionWord>;  // ascending

// Adds a position that is not less than any in the set.
inline void append(SparsePositions& set, std::uint32_t position)
{
    const std::uint32_t number = position / PositionWord::size;
    if (set.empty() || set.back().number != number) {
        set.push_back({number, 0});
    }
    set.back().bits |= std::uint64_t(1) << position % PositionWord::size;
}

// Calls action(i, bits) for each word i of `set` that `other` has a word of too, with the positions that both have
// there (perhaps none).
template <class Action>
void forCommonWords(const SparsePositions& set, const SparsePositions& other, Action action)
{
    auto found = other.begin();
    for (std::size_t i = 0; i < set.size(); ++i) {
        while (found != other.end() && found->number < set[i].number) {
            ++found;
        }
        if (found == other.end()) {
            return;
        }
        if (found->number == set[i].number) {
            action(i, set[i].bits & found->bits);
        }
    }
}

}  // namespace ZoNUpdateBase
