// Lists of names in the options: separated by commas and blanks, matched as whole names.
#include "inventory/InventoryFixture.h"

namespace {

bool contains(const std::string& list, const std::string& name)
{
    return ZoCUpdateInventory::stringListContains(list, name);
}

TEST(OptionListTest, ContainsItsNames)
{
    EXPECT_TRUE(contains("B", "B"));
    EXPECT_TRUE(contains("A,B C", "A"));
    EXPECT_TRUE(contains("A,B C", "B"));
    EXPECT_TRUE(contains("A,B C", "C"));
    EXPECT_TRUE(contains(" , B, ", "B"));
}

TEST(OptionListTest, ContainsNoPartsOfNames)
{
    EXPECT_FALSE(contains("AB", "B"));
    EXPECT_FALSE(contains("BA", "B"));
    EXPECT_FALSE(contains("ABA", "B"));
    EXPECT_FALSE(contains("B", "BB"));
}

TEST(OptionListTest, FindsANameBehindNamesThatContainIt)
{
    EXPECT_TRUE(contains("AB,BA,B", "B"));
    EXPECT_TRUE(contains("BB B", "B"));
    EXPECT_TRUE(contains("aaab,aab,ab", "ab"));
    EXPECT_FALSE(contains("AB,BA,BB", "B"));
}

TEST(OptionListTest, FindsANameThatOverlapsItself)
{
    EXPECT_TRUE(contains("xABA ABA", "ABA"));
    EXPECT_TRUE(contains("xA A A", "A A"));
    EXPECT_FALSE(contains("ABABA", "ABA"));
}

TEST(OptionListTest, OnlyCommasAndBlanksSeparate)
{
    EXPECT_FALSE(contains("A;B", "B"));
    EXPECT_FALSE(contains("A\tB", "B"));
    EXPECT_FALSE(contains("A\nB", "A"));
}

TEST(OptionListTest, IsCaseSensitive)
{
    EXPECT_FALSE(contains("a", "A"));
}

TEST(OptionListTest, EveryListContainsTheEmptyName)
{
    EXPECT_TRUE(contains("", ""));
    EXPECT_TRUE(contains("A", ""));
}

TEST(OptionListTest, AnEmptyListContainsNothingElse)
{
    EXPECT_FALSE(contains("", "A"));
}

TEST(OptionListTest, ANameWithSeparatorsIsMatchedAsItStands)
{
    EXPECT_TRUE(contains("A,B C", "A,B"));
    EXPECT_TRUE(contains("A,B C", "B C"));
    EXPECT_FALSE(contains("A,B CD", "B C"));
}

}  // namespace
