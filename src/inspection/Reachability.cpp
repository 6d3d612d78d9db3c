// An entry with an id fits, for each board type that it names, a box of elements: the product of what it accepts of
// each other property. Elements of one board type and id are given to the first entry whose box they are in. Board
// types and ids with the same row of boxes are looked at once.
#include "inspection/Reachability.h"

#include <algorithm>
#include <compare>
#include <deque>
#include <map>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "inspection/Demands.h"
#include "inspection/Takers.h"

using ZoNTrellanInspector::ZoTKeys;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateAssignment::MatchValue;

namespace ZoNUpdateInspection {
namespace {

// A board type and an id.
struct ElementKind {
    std::string boardType;
    std::uint32_t id;

    bool operator==(const ElementKind&) const = default;
};

struct ElementKindHash {
    std::size_t operator()(const ElementKind& kind) const
    {
        return std::hash<std::string>()(kind.boardType) * 31 + kind.id;
    }
};

// What one board object of an entry asks for, in numbers.
struct EntryBox {
    std::size_t entry;
    std::uint32_t alike;  // position of the first one of the entry that asks for the same
    Box box;
};

// Gives each value of a property a number, in the order in which they come.
class Numbers {
public:
    std::uint32_t of(const MatchValue& value)
    {
        const auto [place, isNew] = numbers.try_emplace(value, static_cast<std::uint32_t>(values.size()));
        if (isNew) {
            values.push_back(&place->first);
        }
        return place->second;
    }

    const MatchValue& valueOf(std::uint32_t number) const { return *values[number]; }

private:
    std::unordered_map<MatchValue, std::uint32_t> numbers;
    std::vector<const MatchValue*> values;
};

void makeUnique(std::vector<std::size_t>& positions)
{
    std::sort(positions.begin(), positions.end());
    positions.erase(std::unique(positions.begin(), positions.end()), positions.end());
}

class Reaching {
public:
    explicit Reaching(std::size_t entries) : reaches(entries), mostTakers(entries, 16) {}

    void addEntry(std::size_t entry, const ZoSUpdateFile& file)
    {
        if (file.hasTargetPath) {
            reaches[entry].isReached = true;
            return;
        }
        PositionsByBox boxesOfEntry;
        forEachDemand(file, [&](const Demand& demand) {
            if (demand.id) {
                addDemand(entry, demand, boxesOfEntry);
            }
        });
    }

    std::vector<Reach> finish()
    {
        for (const KindRow* const each : differentRows()) {
            lookAt(each->second, each->first);
        }
        for (Reach& reach : reaches) {
            makeUnique(reach.takers);
        }
        return std::move(reaches);
    }

private:
    using Row = std::vector<std::uint32_t>;  // positions of boxes
    using KindRow = std::pair<const ElementKind, Row>;

    using PositionsByBox = std::map<Box, std::uint32_t>;

    void addDemand(std::size_t entry, const Demand& demand, PositionsByBox& ofEntry)
    {
        const auto position = static_cast<std::uint32_t>(boxes.size());
        const StatedLists stated = statedLists(*demand.file, *demand.object);
        Box box;
        for (std::size_t side = 0; side < boxSides; ++side) {
            box[side] = &sideOf(side, stated[side]);
        }
        boxes.push_back({entry, ofEntry.try_emplace(box, position).first->second, box});
        for (const std::string& type : demand.boardTypes) {
            rows[{type, *demand.id}].push_back(position);
        }
    }

    // The numbers of what is stated, which is read once.
    const BoxSide& sideOf(std::size_t side, const ZoNJson::json* stated)
    {
        const auto [place, isNew] = sides[side].try_emplace(stated);
        if (isNew) {
            const std::vector<MatchValue> values = acceptedValues(stated);
            place->second.reserve(values.size());
            for (const MatchValue& value : values) {
                place->second.push_back(numbers[side].of(value));
            }
            std::sort(place->second.begin(), place->second.end());
        }
        return place->second;
    }

    // The rows that there are, each with the first of its kinds: whatever the order of the hash table is. Rows are one
    // where their entries ask for the same, by whichever board objects. Boxes of one row have one id.
    std::vector<const KindRow*> differentRows() const
    {
        std::vector<const KindRow*> found;
        found.reserve(rows.size());
        for (const KindRow& each : rows) {
            found.push_back(&each);
        }
        const auto isBefore = [](const KindRow* a, const KindRow* b) {
            return std::tie(a->second, a->first.boardType) < std::tie(b->second, b->first.boardType);
        };
        std::sort(found.begin(), found.end(), [&](const KindRow* a, const KindRow* b) {
            const auto order = compare(a->second, b->second);
            return order != 0 ? order < 0 : isBefore(a, b);
        });
        const auto haveOneRow = [this](const KindRow* a, const KindRow* b) {
            return compare(a->second, b->second) == 0;
        };
        found.erase(std::unique(found.begin(), found.end(), haveOneRow), found.end());
        std::sort(found.begin(), found.end(), isBefore);
        return found;
    }

    // By what is asked for.
    std::strong_ordering compare(const Row& a, const Row& b) const
    {
        return std::lexicographical_compare_three_way(
            a.begin(), a.end(), b.begin(), b.end(),
            [this](std::uint32_t i, std::uint32_t j) { return boxes[i].alike <=> boxes[j].alike; });
    }

    void lookAt(const Row& row, const ElementKind& kind)
    {
        Takers takers;
        for (const std::uint32_t position : row) {
            const BoxContent content = takers.add(boxes[position].box);
            Reach& reach = reaches[boxes[position].entry];
            reach.isReached = reach.isReached || content.leavesSome;
            for (const std::uint32_t taker : content.takers) {
                reach.takers.push_back(boxes[row[taker]].entry);
            }
            // Another row has most of them again.
            if (reach.takers.size() > mostTakers[boxes[position].entry]) {
                makeUnique(reach.takers);
                mostTakers[boxes[position].entry] = 2 * reach.takers.size();
            }
            if (content.taken) {
                noteExample(reach, kind, boxes[row[content.taken->taker]].entry, content.taken->numbers);
            }
        }
    }

    void noteExample(Reach& reach, const ElementKind& kind, std::size_t taker,
                     const std::array<std::uint32_t, boxSides>& chosen) const
    {
        if (reach.taken && reach.taken->taker <= taker) {
            return;
        }
        ZoTKeys keys{};
        keys.boardType = kind.boardType;
        keys.id = kind.id;
        const MatchValue& variant = numbers[0].valueOf(chosen[0]);
        keys.hasBoardVariant = std::holds_alternative<std::string>(variant);
        keys.boardVariant = keys.hasBoardVariant ? std::get<std::string>(variant) : std::string();
        keys.boardId = numberOf(1, chosen);
        keys.hwCompatibilityId = numberOf(2, chosen);
        keys.swCompatibilityId = numberOf(3, chosen);
        reach.taken = std::make_unique<Reach::Example>(Reach::Example{taker, std::move(keys)});
    }

    std::uint32_t numberOf(std::size_t side, const std::array<std::uint32_t, boxSides>& chosen) const
    {
        return static_cast<std::uint32_t>(std::get<unsigned long long>(numbers[side].valueOf(chosen[side])));
    }

    std::vector<Reach> reaches;
    std::vector<std::size_t> mostTakers;                                  // by entry: more are made unique
    std::array<std::map<const ZoNJson::json*, BoxSide>, boxSides> sides;  // by property
    std::deque<EntryBox> boxes;
    std::unordered_map<ElementKind, Row, ElementKindHash> rows;
    std::array<Numbers, boxSides> numbers;  // by side, in the order of listedCriteria
};

}  // namespace

std::vector<Reach> reachOf(const std::vector<const ZoSUpdateFile*>& files)
{
    Reaching reaching(files.size());
    for (std::size_t i = 0; i < files.size(); ++i) {
        reaching.addEntry(i, *files[i]);
    }
    return reaching.finish();
}

}  // namespace ZoNUpdateInspection
