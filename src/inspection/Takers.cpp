// The content of a box is walked side by side. With each number that is chosen, fewer of the boxes before it remain
// that hold what was chosen up to then; numbers for which the same ones remain are one branch. A branch ends where the
// first of those that remain holds all that is left of the box, and where it can tell nothing new.
#include "inspection/Takers.h"

#include <algorithm>
#include <bit>
#include <map>

#include "inspection/SortedLists.h"

namespace ZoNUpdateInspection {
namespace {

using Word = std::uint64_t;
using Mask = std::vector<Word>;  // one bit for each candidate
constexpr std::size_t wordBits = 64;

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

bool holds(const std::vector<std::uint32_t>& side, std::uint32_t number)
{
    return std::binary_search(side.begin(), side.end(), number);
}

}  // namespace

class Takers::Walk {
public:
    // `candidates` are positions of boxes, ascending.
    Walk(const Takers& row, const Box& box, const std::vector<std::uint32_t>& candidates)
        : candidates(candidates), found(words()), full(boxSides)
    {
        Mask all = words();
        for (std::size_t i = 0; i < candidates.size(); ++i) {
            setBit(all, i);
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
        for (std::size_t i = 0; i < candidates.size(); ++i) {
            if (hasBit(found, i)) {
                content.takers.push_back(candidates[i]);
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

    Mask words() const { return Mask((candidates.size() + wordBits - 1) / wordBits); }

    void addSide(const Takers& row, const Box& box, std::size_t side)
    {
        std::map<Mask, std::uint32_t> numbers;
        for (const std::uint32_t number : box[side]) {
            const Mask mask = holdersOf(row, side, number);
            for (std::size_t i = 0; i < mask.size(); ++i) {
                full[side][i] &= mask[i];
            }
            numbers.try_emplace(mask, number);
        }
        for (const auto& [mask, number] : numbers) {
            branches[side].push_back({number, mask});
        }
    }

    // The candidates that hold `number`: from the shorter of the two lists.
    Mask holdersOf(const Takers& row, std::size_t side, std::uint32_t number) const
    {
        Mask mask = words();
        const auto found = row.holders[side].find(number);
        if (found == row.holders[side].end()) {
            return mask;
        }
        if (found->second.size() < candidates.size()) {
            for (const std::uint32_t holder : found->second) {
                const auto place = std::lower_bound(candidates.begin(), candidates.end(), holder);
                if (place != candidates.end() && *place == holder) {
                    setBit(mask, static_cast<std::size_t>(place - candidates.begin()));
                }
            }
        } else {
            for (std::size_t i = 0; i < candidates.size(); ++i) {
                if (holds((*row.boxes[candidates[i]])[side], number)) {
                    setBit(mask, i);
                }
            }
        }
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
        if (content.taken && content.taken->taker < candidates[candidate]) {
            return;
        }
        content.taken = {candidates[candidate], chosen};
        for (std::size_t side = chosenSides; side < boxSides; ++side) {
            content.taken->numbers[side] = branches[side].front().number;
        }
    }

    const std::vector<std::uint32_t>& candidates;
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
    const bool isEmpty = std::any_of(box.begin(), box.end(), [](const auto& side) { return side.empty(); });
    if (!isEmpty) {
        const std::vector<std::uint32_t> candidates = candidatesFor(box);
        if (candidates.empty()) {
            content.leavesSome = true;
        } else {
            content = Walk(*this, box, candidates).walk();
        }
    }
    // What has nothing left for itself takes nothing from those behind it either.
    for (std::size_t side = 0; content.leavesSome && side < boxSides; ++side) {
        for (const std::uint32_t number : box[side]) {
            holders[side][number].push_back(static_cast<std::uint32_t>(boxes.size()));
        }
    }
    boxes.push_back(&box);
    return content;
}

// Those that have something in common with the box: looked for among the holders of the side that the fewest hold.
std::vector<std::uint32_t> Takers::candidatesFor(const Box& box) const
{
    std::vector<const std::vector<std::uint32_t>*> fewest;
    std::optional<std::size_t> fewestCount;
    for (std::size_t side = 0; side < boxSides; ++side) {
        std::vector<const std::vector<std::uint32_t>*> lists;
        std::size_t count = 0;
        for (const std::uint32_t number : box[side]) {
            if (const auto found = holders[side].find(number); found != holders[side].end()) {
                lists.push_back(&found->second);
                count += found->second.size();
            }
        }
        if (!fewestCount || count < *fewestCount) {
            fewestCount = count;
            fewest = std::move(lists);
        }
    }
    std::vector<std::uint32_t> candidates;
    for (const auto* const list : fewest) {
        candidates.insert(candidates.end(), list->begin(), list->end());
    }
    if (fewest.size() > 1) {
        std::sort(candidates.begin(), candidates.end());
        candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
    }
    std::erase_if(candidates, [&](std::uint32_t candidate) {
        return !std::equal(box.begin(), box.end(), boxes[candidate]->begin(), intersect<std::uint32_t>);
    });
    return candidates;
}

}  // namespace ZoNUpdateInspection
