// The first of many offers that accepts a row of numbers, and the sets that it is found with.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "assignment/ListSearch.h"
#include "assignment/PositionSet.h"

namespace {

using ZoNUpdateAssignment::ListOffer;
using ZoNUpdateAssignment::ListSearch;
using ZoNUpdateAssignment::NumberRow;
using ZoNUpdateAssignment::PositionSet;
using ZoNUpdateAssignment::SoughtRow;

using Numbers = std::vector<std::uint32_t>;

// Offers as a test states them.
class Offers {
public:
    void add(std::uint32_t position, const std::vector<Numbers>& lists)
    {
        offers.push_back({position, {}});
        accepted.push_back(lists);
    }

    std::vector<ListOffer> get()
    {
        for (std::size_t i = 0; i < offers.size(); ++i) {
            std::copy(accepted[i].begin(), accepted[i].end(), offers[i].accepted.begin());
        }
        return offers;
    }

private:
    std::vector<std::vector<Numbers>> accepted;
    std::vector<ListOffer> offers;
};

std::optional<std::uint32_t> searchFor(const NumberRow& numbers, Offers& offers,
                                       std::optional<std::uint32_t> position = std::nullopt)
{
    SoughtRow row{numbers, position};
    ListSearch({4, 4, 4, 4}).search({&row, 1}, offers.get());
    return row.position;
}

TEST(ListSearch, FindsTheFirstOfferThatAcceptsAllNumbers)
{
    Offers offers;
    offers.add(3, {{1, 2}, {1, 2}, {1, 2}, {1}});
    offers.add(5, {{1, 2}, {1, 2}, {1, 2}, {2}});
    offers.add(8, {{2}, {2}, {2}, {2}});
    EXPECT_EQ(searchFor({1, 2, 1, 1}, offers), 3);
    EXPECT_EQ(searchFor({2, 2, 2, 2}, offers), 5);
    EXPECT_EQ(searchFor({2, 2, 2, 3}, offers), std::nullopt);
    EXPECT_EQ(searchFor({3, 2, 2, 2}, offers), std::nullopt);
}

TEST(ListSearch, AnEmptyListAcceptsNothing)
{
    Offers offers;
    offers.add(0, {{1}, {}, {1}, {1}});
    EXPECT_EQ(searchFor({1, 1, 1, 1}, offers), std::nullopt);
}

TEST(ListSearch, KeepsAnEarlierOfferThatTheRowHas)
{
    Offers offers;
    offers.add(4, {{1}, {1}, {1}, {1}});
    offers.add(6, {{2}, {1}, {1}, {1}});
    EXPECT_EQ(searchFor({1, 1, 1, 1}, offers, 2), 2);
    EXPECT_EQ(searchFor({2, 1, 1, 1}, offers, 5), 5);
    EXPECT_EQ(searchFor({2, 1, 1, 1}, offers, 7), 6);
    EXPECT_EQ(searchFor({3, 1, 1, 1}, offers, 7), 7);
}

TEST(ListSearch, WithoutOffersOrRowsNothingChanges)
{
    Offers none;
    EXPECT_EQ(searchFor({1, 1, 1, 1}, none), std::nullopt);
    EXPECT_EQ(searchFor({1, 1, 1, 1}, none, 9), 9);
    Offers offers;
    offers.add(0, {{1}, {1}, {1}, {1}});
    ListSearch({4, 4, 4, 4}).search({}, offers.get());
}

TEST(ListSearch, ForgetsTheRowsAndOffersOfTheSearchBefore)
{
    ListSearch listSearch({4, 4, 4, 4});
    Offers offers;
    offers.add(1, {{1, 2}, {1}, {1}, {1}});
    SoughtRow row{{1, 1, 1, 1}, std::nullopt};
    listSearch.search({&row, 1}, offers.get());
    EXPECT_EQ(row.position, 1);
    Offers others;
    others.add(2, {{2}, {1}, {1}, {1}});
    SoughtRow rows[] = {{{2, 1, 1, 1}, std::nullopt}, {{1, 1, 1, 1}, std::nullopt}};
    listSearch.search(rows, others.get());
    EXPECT_EQ(rows[0].position, 2);
    EXPECT_EQ(rows[1].position, std::nullopt);
}

TEST(ListSearch, FindsFewNumbersInLongLists)
{
    Numbers longList(1000);
    std::iota(longList.begin(), longList.end(), 1);
    Offers offers;
    offers.add(1, {longList, {500}, longList, {1}});
    offers.add(2, {longList, longList, longList, longList});
    std::vector<SoughtRow> rows = {{{1000, 500, 1, 1}, std::nullopt}, {{1000, 1000, 1, 1000}, std::nullopt}};
    ListSearch({2000, 2000, 2000, 2000}).search(rows, offers.get());
    EXPECT_EQ(rows[0].position, 1);
    EXPECT_EQ(rows[1].position, 2);
    SoughtRow row{{1001, 500, 1, 1}, std::nullopt};
    ListSearch({2000, 2000, 2000, 2000}).search({&row, 1}, offers.get());
    EXPECT_EQ(row.position, std::nullopt);
}

TEST(ListSearch, FindsOffersBeyondThoseThatOneSetHolds)
{
    Offers offers;
    for (std::uint32_t i = 0; i < 1100; ++i) {
        offers.add(i, {{i}, {i, i + 1}, {7}, {7}});
    }
    std::vector<SoughtRow> rows;
    for (const std::uint32_t number : {0, 63, 64, 511, 512, 513, 1023, 1024, 1099, 1100}) {
        rows.push_back({{number, number, 7, 7}, std::nullopt});
    }
    rows.push_back({{512, 512, 7, 7}, 511});
    rows.push_back({{511, 511, 7, 7}, 512});
    rows.push_back({{600, 600, 7, 7}, 900});
    ListSearch({1101, 1102, 8, 8}).search(rows, offers.get());
    std::vector<std::optional<std::uint32_t>> positions;
    for (const SoughtRow& row : rows) {
        positions.push_back(row.position);
    }
    EXPECT_EQ(positions, (std::vector<std::optional<std::uint32_t>>{0, 63, 64, 511, 512, 513, 1023, 1024, 1099,
                                                                    std::nullopt, 511, 511, 600}));
}

// Lists of numbers below 10, with half of them.
Numbers randomList(std::mt19937& random)
{
    Numbers numbers;
    for (std::uint32_t number = 0; number < 10; ++number) {
        if (random() % 2 == 0) {
            numbers.push_back(number);
        }
    }
    return numbers;
}

TEST(ListSearch, FindsTheSameAsLookingAtEachOffer)
{
    std::mt19937 random(1);
    std::vector<std::vector<Numbers>> lists;
    Offers offers;
    for (std::uint32_t i = 0; i < 1500; ++i) {
        // At first none accepts the numbers from 5 on in the first list, so that many rows find theirs late.
        std::vector<Numbers>& four = lists.emplace_back();
        std::generate_n(std::back_inserter(four), 4, [&] { return randomList(random); });
        if (i < 1400) {
            std::erase_if(four[0], [](std::uint32_t number) { return number >= 5; });
        }
        offers.add(i, four);
    }
    std::vector<SoughtRow> rows;
    for (unsigned i = 0; i < 400; ++i) {
        NumberRow numbers{};
        std::generate(numbers.begin(), numbers.end(), [&] { return static_cast<std::uint32_t>(random() % 11); });
        rows.push_back({numbers, std::nullopt});
    }
    ListSearch({11, 11, 11, 11}).search(rows, offers.get());
    for (const SoughtRow& row : rows) {
        const auto first = std::find_if(lists.begin(), lists.end(), [&](const std::vector<Numbers>& four) {
            return std::equal(four.begin(), four.end(), row.numbers.begin(), [](const Numbers& list, auto number) {
                return std::find(list.begin(), list.end(), number) != list.end();
            });
        });
        const bool isFound = first != lists.end();
        EXPECT_EQ(row.position, isFound ? std::optional<std::uint32_t>(first - lists.begin()) : std::nullopt);
    }
}

TEST(PositionSet, HasTheSmallestOfItsNumbersFirst)
{
    PositionSet set;
    EXPECT_EQ(set.first(), 512u);
    for (const std::size_t number : {511, 128, 300, 127, 64, 63, 1, 0}) {
        set.add(number);
        EXPECT_EQ(set.first(), std::min<std::size_t>(number, number == 300 ? 128 : number));
    }
    set.clear();
    EXPECT_EQ(set.first(), 512u);
}

TEST(PositionSet, IsIntersectedWithOthers)
{
    const auto setOf = [](const std::vector<std::size_t>& numbers) {
        PositionSet set;
        for (const std::size_t number : numbers) {
            set.add(number);
        }
        return set;
    };
    PositionSet set = setOf({3, 70, 200, 511});
    set.intersect(setOf({2, 4, 200, 511}));
    EXPECT_EQ(set.first(), 200u);
    set.intersect(setOf({3, 200, 511}), setOf({3, 70, 511}));
    EXPECT_EQ(set.first(), 511u);
}

}  // namespace
