// The content of a box is walked side by side. With each number that is chosen, fewer of the boxes before it remain
// that hold what was chosen up to then; numbers for which the same ones remain are one branch. A branch ends where the
// first of those that remain holds all that is left of the box, and where it can tell nothing new.
#include "inspection/Takers.h"

#include <algorithm>
#include <bit>
#include <map>
#include <utility>

namespace ZoNUpdateInspection {

using namespace ZoNUpdateBase;
namespace {

using Mask = std::vector<std::uint64_t>;  // bits of the candidates' words
using Word = Mask::value_type;
constexpr std::size_t wordBits = PositionWord::size;

void setBit(Mask& mask, std::size_t position)
{
    mask[position / wordBits] |= Word(1) << position % wordBits;
}

bool hasBit(const Mask& mask, std::size_t position)
{
    return (mask[position / wordBits] >> position % wordBits & 1) != 0;
}

std::optional<std::size_t> firstBit(const Mask& mask)
{
    for (std::size_t i = 0; i < mask.size(); ++i) {
        if (mask[i] != 0) {
            return i * wordBits + static_cast<std::size_t>(std::countr_zero(mask[i]));
        }
    }
    return std::nullopt;
}

bool isSubset(const Mask& part, const Mask& whole)
{
    for (std::size_t i = 0; i < part.size(); ++i) {
        if ((part[i] & ~whole[i]) != 0) {
            return false;
        }
    }
    return true;
}

// Clears the bits behind `last`.
void cutBehind(Mask& mask, std::size_t last)
{
    mask[last / wordBits] &= ~Word(0) >> (wordBits - 1 - last % wordBits);
    std::fill(mask.begin() + static_cast<std::ptrdiff_t>(last / wordBits) + 1, mask.end(), Word(0));
}

}  // namespace

class Takers::Walk {
public:
    // `candidates` are those that have something in common with the box.
    Walk(const Takers& row, const Box& box, const SparsePositions& candidates)
        : candidates(candidates), found(words()), full(boxSides)
    {
        Mask all;
        for (const PositionWord& part : candidates) {
            all.push_back(part.bits);
        }
        remaining.fill(words());
        remaining[0] = all;
        for (std::size_t side = boxSides; side-- > 0;) {
            full[side] = side + 1 < boxSides ? full[side + 1] : all;
            addSide(row, box, side);
        }
    }

    BoxContent walk()
    {
        if (const auto wholeTaker = firstBit(full[0])) {
            cutBehind(remaining[0], *wholeTaker);  // what is behind it gets nothing
        }
        descend(0);
        for (std::size_t i = 0; i < found.size(); ++i) {
            for (Word rest = found[i]; rest != 0; rest &= rest - 1) {
                content.takers.push_back(positionOf(i * wordBits + static_cast<std::size_t>(std::countr_zero(rest))));
            }
        }
        return std::move(content);
    }

private:
    // Numbers of a side that the same candidates hold.
    struct Branch {
        std::uint32_t number;  // one of them
        Mask holders;
    };

    Mask words() const { return Mask(candidates.size()); }

    // In the row, of a bit.
    std::uint32_t positionOf(std::size_t bit) const
    {
        return candidates[bit / wordBits].number * PositionWord::size + static_cast<std::uint32_t>(bit % wordBits);
    }

    void addSide(const Takers& row, const Box& box, std::size_t side)
    {
        std::map<Mask, std::uint32_t> numbers;
        for (const std::uint32_t number : *box[side]) {
            Mask mask = holdersOf(row, side, number);
            for (std::size_t i = 0; i < mask.size(); ++i) {
                full[side][i] &= mask[i];
            }
            numbers.try_emplace(std::move(mask), number);
        }
        while (!numbers.empty()) {
            auto branch = numbers.extract(numbers.begin());
            branches[side].push_back({branch.mapped(), std::move(branch.key())});
        }
    }

    // The candidates that hold `number`.
    Mask holdersOf(const Takers& row, std::size_t side, std::uint32_t number) const
    {
        Mask mask = words();
        const auto holders = row.holders[side].find(number);
        if (holders == row.holders[side].end()) {
            return mask;
        }
        forCommonWords(candidates, holders->second, [&](std::size_t i, Word bits) { mask[i] = bits; });
        return mask;
    }

    void descend(std::size_t side)
    {
        const Mask& mask = remaining[side];
        const auto first = firstBit(mask);
        if (!first) {
            content.leavesSome = true;
        } else if (side == boxSides || hasBit(full[side], *first)) {
            take(*first, side);
        } else if (!content.leavesSome || !isSubset(mask, found)) {
            for (const Branch& branch : branches[side]) {
                chosen[side] = branch.number;
                for (std::size_t i = 0; i < mask.size(); ++i) {
                    remaining[side + 1][i] = mask[i] & branch.holders[i];
                }
                descend(side + 1);
            }
        }
    }

    // Those sides that are not chosen yet, the candidate holds whole.
    void take(std::size_t candidate, std::size_t chosenSides)
    {
        if (hasBit(found, candidate)) {
            return;
        }
        setBit(found, candidate);
        const std::uint32_t position = positionOf(candidate);
        if (content.taken && content.taken->taker < position) {
            return;
        }
        content.taken = {position, chosen};
        for (std::size_t side = chosenSides; side < boxSides; ++side) {
            content.taken->numbers[side] = branches[side].front().number;
        }
    }

    const SparsePositions& candidates;
    Mask found;              // those that take something
    std::vector<Mask> full;  // by side: those that hold all of it and of those behind it
    std::array<std::vector<Branch>, boxSides> branches;
    std::array<Mask, boxSides + 1> remaining;  // by number of sides chosen: who holds all that is chosen
    std::array<std::uint32_t, boxSides> chosen{};
    BoxContent content;
};

BoxContent Takers::add(const Box& box)
{
    BoxContent content;
    const bool isEmpty = std::any_of(box.begin(), box.end(), [](const BoxSide* side) { return side->empty(); });
    if (!isEmpty) {
        const SparsePositions candidates = candidatesFor(box);
        if (candidates.empty()) {
            content.leavesSome = true;
        } else {
            content = Walk(*this, box, candidates).walk();
        }
    }
    // What has nothing left for itself takes nothing from those behind it either.
    for (std::size_t side = 0; content.leavesSome && side < boxSides; ++side) {
        for (const std::uint32_t number : *box[side]) {
            append(holders[side][number], count);
        }
    }
    ++count;
    return content;
}

// Those that have something in common with the box: those that hold a number of the side that the fewest hold, and of
// each other side.
SparsePositions Takers::candidatesFor(const Box& box)
{
    std::array<std::vector<const SparsePositions*>, boxSides> sets;
    std::array<std::size_t, boxSides> sizes{};
    for (std::size_t side = 0; side < boxSides; ++side) {
        for (const std::uint32_t number : *box[side]) {
            if (const auto found = holders[side].find(number); found != holders[side].end()) {
                sets[side].push_back(&found->second);
                sizes[side] += found->second.size();
            }
        }
    }
    const auto fewest = static_cast<std::size_t>(std::min_element(sizes.begin(), sizes.end()) - sizes.begin());
    SparsePositions candidates = unite(sets[fewest]);
    for (std::size_t side = 0; side < boxSides; ++side) {
        if (side != fewest) {
            Mask kept(candidates.size());
            for (const SparsePositions* const set : sets[side]) {
                forCommonWords(candidates, *set, [&](std::size_t i, Word bits) { kept[i] |= bits; });
            }
            for (std::size_t i = 0; i < kept.size(); ++i) {
                candidates[i].bits = kept[i];
            }
            std::erase_if(candidates, [](const PositionWord& word) { return word.bits == 0; });
        }
    }
    return candidates;
}

SparsePositions Takers::unite(const std::vector<const SparsePositions*>& sets)
{
    if (sets.size() == 1) {
        return *sets.front();
    }
    united.resize(count / wordBits + 1);
    std::vector<std::uint32_t> numbers;
    for (const SparsePositions* const set : sets) {
        for (const PositionWord& word : *set) {
            if (united[word.number] == 0) {
                numbers.push_back(word.number);
            }
            united[word.number] |= word.bits;
        }
    }
    std::sort(numbers.begin(), numbers.end());
    SparsePositions all;
    for (const std::uint32_t number : numbers) {
        all.push_back({number, std::exchange(united[number], Word(0))});
    }
    return all;
}

}  // namespace ZoNUpdateInspection
