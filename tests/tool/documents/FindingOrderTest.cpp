// The order of findings, in few bytes each.
#include <gtest/gtest.h>

#include <new>
#include <string>

#include "tool/documents/FindingOrder.h"

using TrellanTool::FindingOrder;

TEST(FindingOrders, AreByPlaceAndThenByNumberAndEndWithThoseWithoutAPlace)
{
    FindingOrder order;
    for (const std::size_t number : {4U, 0U, 1U, 3U, 2U}) {
        order.add(number);
    }
    order.setOffset(0, 17'179'869'182);
    order.setOffset(2, 5);
    order.setOffset(4, 5);
    order.sort();
    std::string sorted;
    for (std::size_t i = 0; i < order.size(); ++i) {
        const auto offset = order.offset(i);
        sorted += std::to_string(order.number(i)) + "@" + (offset ? std::to_string(*offset) : "-") + " ";
    }
    EXPECT_EQ(sorted, "1@5 2@5 4@17179869182 0@- 3@- ");
}

TEST(FindingOrders, HoldNoMoreFindingsAndNoLongerTextThanTheirBitsDo)
{
    FindingOrder order;
    order.add(1'073'741'823);
    EXPECT_THROW(order.add(1'073'741'824), std::bad_alloc);
    EXPECT_THROW(order.setOffset(0, 17'179'869'183), std::bad_alloc);
    ASSERT_EQ(order.size(), 1U);
    EXPECT_EQ(order.number(0), 1'073'741'823U);
    EXPECT_FALSE(order.offset(0));
}
