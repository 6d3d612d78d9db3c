// Lists of names in the options: separated by commas and blanks, matched as whole names.
#include "inventory/InventoryFixture.h"

namespace {

bool contains(const std::string& list, const std::string& name)
{
    return ZoCUpdateInventory::stringListContains(list, name);
}

TEST(OptionList, ContainsItsNames)
{
    EXPECT_TRUE(contains("B", "B"));
    EXPECT_TRUE(contains("A,B C", "A"));
    EXPECT_TRUE(contains("A,B C", "B"));
    EXPECT_TRUE(contains("A,B C", "C"));
    EXPECT_TRUE(contains(" , B, ", "B"));
}

TEST(OptionList, ContainsNoPartsOfNames)
{
    EXPECT_FALSE(contains("AB", "B"));
    EXPECT_FALSE(contains("BA", "B"));
    EXPECT_FALSE(contains("ABA", "B"));
    EXPECT_FALSE(contains("B", "BB"));
}

TEST(OptionList, FindsANameBehindNamesThatContainIt)
{
    EXPECT_TRUE(contains("AB,BA,B", "B"));
    EXPECT_TRUE(contains("BB B", "B"));
    EXPECT_TRUE(contains("aaab,aab,ab", "ab"));
    EXPECT_FALSE(contains("AB,BA,BB", "B"));
}

TEST(OptionList, FindsANameThatOverlapsItself)
{
    EXPECT_TRUE(contains("xABA ABA", "ABA"));
    EXPECT_TRUE(contains("xA A A", "A A"));
    EXPECT_FALSE(contains("ABABA", "ABA"));
}

TEST(OptionList, OnlyCommasAndBlanksSeparate)
{
    EXPECT_FALSE(contains("A;B", "B"));
    EXPECT_FALSE(contains("A\tB", "B"));
    EXPECT_FALSE(contains("A\nB", "A"));
}

TEST(OptionList, IsCaseSensitive)
{
    EXPECT_FALSE(contains("a", "A"));
}

TEST(OptionList, EveryListContainsTheEmptyName)
{
    EXPECT_TRUE(contains("", ""));
    EXPECT_TRUE(contains("A", ""));
}

TEST(OptionList, AnEmptyListContainsNothingElse)
{
    EXPECT_FALSE(contains("", "A"));
}

TEST(OptionList, ANameWithSeparatorsIsMatchedAsItStands)
{
    EXPECT_TRUE(contains("A,B C", "A,B"));
    EXPECT_TRUE(contains("A,B C", "B C"));
    EXPECT_FALSE(contains("A,B CD", "B C"));
}

}  // namespace
