// PositionSet: a set of small numbers, intersected a word at a time.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace ZoNUpdateAssignment {

class PositionSet {
public:
    // It holds numbers below this one: as many as fit a line of the processor's cache.
    static constexpr std::size_t capacity = 512;

    void add(std::size_t position) { words[position / bits] |= Word(1) << position % bits; }
    void clear() { words.fill(0); }

    // Keeps the numbers that all of these have too.
    template <class... Sets>
    PositionSet& intersect(const Sets&... others)
    {
        for (std::size_t i = 0; i < words.size(); ++i) {
            words[i] &= (others.words[i] & ...);
        }
        return *this;
    }

    // The smallest number; `capacity` when there is none.
    std::size_t first() const
    {
        for (std::size_t i = 0; i < words.size(); ++i) {
            if (words[i] != 0) {
                return i * bits + static_cast<std::size_t>(std::countr_zero(words[i]));
            }
        }
        return capacity;
    }

private:
    using Word = std::uint64_t;
    static constexpr std::size_t bits = 64;

    alignas(capacity / 8) std::array<Word, capacity / bits> words{};
};

}  // namespace ZoNUpdateAssignment
