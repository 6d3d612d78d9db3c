// In which order findings are told, and what members are kept as until then, however many there are.
#include <gtest/gtest.h>

#include "tool/documents/FindingOrder.h"
#include "tool/documents/FoundMembers.h"

namespace TrellanTool {

TEST(FindingOrder, GoesByOffsetsThenByNumbersAndThoseWithoutAnOffsetComeLast)
{
    FindingOrder order;
    order.add(0, std::nullopt);
    order.add(1, 17179869183);
    order.add(3, 7);
    order.add(2, 7);
    order.add(4, std::nullopt);
    order.add(5, 0);
    ASSERT_EQ(order.size(), 6u);
    const std::vector<std::size_t> numbers = {5, 2, 3, 1, 0, 4};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        EXPECT_EQ(order.at(i).number, numbers[i]) << i;
    }
    EXPECT_EQ(order.at(0).offset, 0u);
    EXPECT_EQ(order.at(3).offset, 17179869183u);
    EXPECT_EQ(order.at(4).offset, std::nullopt);
}

TEST(FindingOrder, IsTheSameInWhateverOrderManyAreAdded)
{
    constexpr std::size_t count = 100003;  // a prime: each offset comes once
    FindingOrder order;
    for (std::size_t i = 0; i < count; ++i) {
        order.add(i, i * 7919 % count);
    }
    ASSERT_EQ(order.size(), count);
    for (std::size_t i = 0; i < count; ++i) {
        const FindingOrder::Placed placed = order.at(i);
        ASSERT_EQ(placed.offset, i);
        ASSERT_EQ(placed.number * 7919 % count, i);
    }
    EXPECT_EQ(order.at(0).number, 0u);
    EXPECT_EQ(order.at(99999).offset, 99999u);
    EXPECT_EQ(order.at(7919).number, 1u);
}

TEST(FoundMembers, AreFoundAgainInAnyOrder)
{
    FoundMembers members;
    for (std::size_t i = 0; i < 1000; ++i) {
        members.add(1000000 - 10 * i, "/files/" + std::to_string(i / 3));
    }
    ASSERT_EQ(members.size(), 1000u);
    EXPECT_EQ(members.offset(999), 990010u);
    EXPECT_EQ(members.object(999), "/files/333");
    EXPECT_EQ(members.object(998), "/files/332");
    EXPECT_EQ(members.offset(64), 999360u);
    EXPECT_EQ(members.object(64), "/files/21");
    EXPECT_EQ(members.object(63), "/files/21");
    EXPECT_EQ(members.object(62), "/files/20");
    EXPECT_EQ(members.offset(0), 1000000u);
    EXPECT_EQ(members.object(0), "/files/0");
}

TEST(FoundMembers, TakeThoseOfOthers)
{
    FoundMembers members, others, none;
    members.add(1, "");
    for (std::size_t i = 0; i < 200; ++i) {
        others.add(2 + i, "/info");
    }
    members.take(others);
    members.take(none);
    EXPECT_EQ(others.size(), 0u);
    ASSERT_EQ(members.size(), 201u);
    EXPECT_EQ(members.object(0), "");
    EXPECT_EQ(members.object(1), "/info");
    EXPECT_EQ(members.offset(1), 2u);
    EXPECT_EQ(members.offset(200), 201u);
    none.take(members);
    EXPECT_EQ(none.size(), 201u);
    EXPECT_EQ(none.offset(200), 201u);
    none.add(300, "/files");
    EXPECT_EQ(none.object(201), "/files");
    EXPECT_EQ(none.offset(201), 300u);
}

}  // namespace TrellanTool
