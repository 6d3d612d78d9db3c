// For as many offers at a time as a set holds, each number gets the set of the offers that accept it; a row is for the
// first offer that is in the sets of all its numbers.
#include "assignment/ListSearch.h"

#include <algorithm>

#include "assignment/PositionSet.h"

namespace ZoNUpdateAssignment {

// The numbers that rows have for one property, and which of the offers accept them.
class ListSearch::Column {
public:
    explicit Column(std::uint32_t end) : places(end, 0), accepting(1) {}

    // Before the first offer: the row has this number. Returns where its set is.
    std::uint32_t addRow(std::uint32_t number)
    {
        if (places[number] == 0) {
            places[number] = static_cast<std::uint32_t>(accepting.size());
            accepting.emplace_back();
            numbers.push_back(number);
        }
        return places[number];
    }

    void addOffer(std::span<const std::uint32_t> list, std::size_t offer)
    {
        constexpr std::size_t stepsOfSearch = 16;  // roughly
        if (list.size() <= stepsOfSearch * numbers.size()) {
            for (const std::uint32_t number : list) {
                add(places[number], offer);
            }
            return;
        }
        for (const std::uint32_t number : numbers) {
            if (std::binary_search(list.begin(), list.end(), number)) {
                add(places[number], offer);
            }
        }
    }

    const PositionSet& operator[](std::uint32_t place) const { return accepting[place]; }

    void removeOffers()
    {
        for (const std::uint32_t place : changed) {
            accepting[place].clear();
        }
        changed.clear();
    }

    void removeRows()
    {
        for (const std::uint32_t number : numbers) {
            places[number] = 0;
        }
        numbers.clear();
        accepting.resize(1);
    }

private:
    void add(std::uint32_t place, std::size_t offer)
    {
        if (place != 0) {
            accepting[place].add(offer);
            changed.push_back(place);
        }
    }

    std::vector<std::uint32_t> places;   // in `accepting`, of each number; 0 for a number that no row has
    std::vector<std::uint32_t> numbers;  // that rows have
    std::vector<PositionSet> accepting;
    std::vector<std::uint32_t> changed;  // places
};

// A row that may still get an earlier offer.
struct ListSearch::OpenRow {
    SoughtRow* row;
    std::array<std::uint32_t, listedProperties> places;
};

ListSearch::ListSearch(const NumberRow& ends) : columns(ends.begin(), ends.end()) {}

ListSearch::~ListSearch() = default;

void ListSearch::search(std::span<SoughtRow> rows, std::span<const ListOffer> offers)
{
    std::vector<OpenRow> openRows;
    for (SoughtRow& row : rows) {
        OpenRow& open = openRows.emplace_back(OpenRow{&row, {}});
        for (std::size_t property = 0; property < listedProperties; ++property) {
            open.places[property] = columns[property].addRow(row.numbers[property]);
        }
    }
    while (!offers.empty() && !openRows.empty()) {
        const auto block = offers.first(std::min(offers.size(), PositionSet::capacity));
        searchBlock(openRows, block);
        offers = offers.subspan(block.size());
    }
    for (Column& column : columns) {
        column.removeRows();
    }
}

void ListSearch::searchBlock(std::vector<OpenRow>& openRows, std::span<const ListOffer> block)
{
    for (std::size_t property = 0; property < listedProperties; ++property) {
        for (std::size_t i = 0; i < block.size(); ++i) {
            columns[property].addOffer(block[i].accepted[property], i);
        }
    }
    static_assert(listedProperties == 4);
    std::erase_if(openRows, [&](const OpenRow& open) {
        const auto setOf = [&](std::size_t property) -> const PositionSet& {
            return columns[property][open.places[property]];
        };
        PositionSet fitting = setOf(0);
        fitting.intersect(setOf(1), setOf(2), setOf(3));
        std::optional<std::uint32_t>& position = open.row->position;
        if (const std::size_t first = fitting.first(); first != PositionSet::capacity) {
            position = std::min(block[first].position, position.value_or(block[first].position));
        }
        return position && *position <= block.back().position;
    });
    for (Column& column : columns) {
        column.removeOffers();
    }
}

}  // namespace ZoNUpdateAssignment
