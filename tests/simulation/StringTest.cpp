#include <gtest/gtest.h>

#include <limits>

#include "allocations/Allocations.h"
#include "libZoComposite/ZoCString.h"

TEST(String, IsEmptyUnlessAnythingElseIsSaid)
{
    const ZoCString text;
    EXPECT_TRUE(text.isEmpty());
    EXPECT_EQ(text.length(), 0u);
    EXPECT_STREQ(text.c_str(), "");
}

TEST(String, HoldsTheCharactersUpToTheNul)
{
    const ZoCString text("Processor board");
    EXPECT_FALSE(text.isEmpty());
    EXPECT_EQ(text.length(), 15u);
    EXPECT_STREQ(text.c_str(), "Processor board");
}

TEST(String, IsEmptyWhenMadeOfNull)
{
    const char* nothing = nullptr;
    EXPECT_TRUE(ZoCString(nothing).isEmpty());
    EXPECT_TRUE(ZoCString(nothing, 0).isEmpty());
}

TEST(String, HoldsNulsWhenTheLengthIsGiven)
{
    const ZoCString text("a\0b", 3);
    EXPECT_EQ(text.length(), 3u);
    EXPECT_EQ(std::string(text.c_str(), text.length()), std::string("a\0b", 3));
    EXPECT_NE(text, ZoCString("a"));
}

TEST(String, OfANumberIsItsDecimalDigits)
{
    EXPECT_STREQ(ZoCString(0u).c_str(), "0");
    EXPECT_STREQ(ZoCString(16777232u).c_str(), "16777232");
    EXPECT_STREQ(ZoCString(std::numeric_limits<unsigned>::max()).c_str(), "4294967295");
}

TEST(String, GrowsByAnother)
{
    ZoCString text("KR");
    text += ZoCString(5120u);
    EXPECT_STREQ(text.c_str(), "KR5120");
    text += text;
    EXPECT_STREQ(text.c_str(), "KR5120KR5120");
}

TEST(String, IsComparedBytewiseAndCaseSensitively)
{
    EXPECT_TRUE(ZoCString("HCN") == ZoCString("HCN"));
    EXPECT_FALSE(ZoCString("HCN") != ZoCString("HCN"));
    EXPECT_FALSE(ZoCString("HCN") == ZoCString("hcn"));
    EXPECT_TRUE(ZoCString("HCN") != ZoCString("HCN "));
}

TEST(String, HasTheSameEndWhateverItsLength)
{
    for (const std::size_t length : {0u, 14u, 15u, 16u, 1000u}) {
        const ZoCString text(std::string(length, 'x').c_str());
        EXPECT_EQ(text.length(), length);
        EXPECT_EQ(std::string(text.c_str()), std::string(length, 'x'));
    }
}

TEST(String, GrowsFromAShortTextIntoALongOneAndOn)
{
    ZoCString text("0123456");
    text += text;
    EXPECT_STREQ(text.c_str(), "01234560123456");
    text += text;
    EXPECT_STREQ(text.c_str(), "0123456012345601234560123456");
    text += ZoCString("\0x", 2);
    EXPECT_EQ(std::string(text.c_str(), text.length()), std::string("0123456012345601234560123456\0x", 30));
    text = "short";
    EXPECT_STREQ(text.c_str(), "short");
    EXPECT_EQ(text, ZoCString("short"));
    EXPECT_NE(text, ZoCString("a text that is longer than others"));
}

TEST(String, AsksForNoMemoryForAShortTextNorForACopyOfALongOne)
{
    const ZoCString longText("a text that is longer than others");
    ZoCString moved;
    EXPECT_EQ(allocationsOf([&] {
                  const ZoCString shortText("Processor board");
                  ZoCString copy = longText;
                  moved = std::move(copy);
              }),
              0u);
    EXPECT_EQ(moved, longText);
    EXPECT_STREQ(moved.c_str(), "a text that is longer than others");
}

TEST(String, DoesNotChangeWithItsCopies)
{
    const ZoCString original("one");
    ZoCString copy = original;
    copy += ZoCString(" two");
    EXPECT_STREQ(original.c_str(), "one");
    EXPECT_STREQ(copy.c_str(), "one two");

    const ZoCString longText("a text that is longer than others");
    ZoCString longCopy = longText;
    longCopy += ZoCString("!");
    EXPECT_STREQ(longText.c_str(), "a text that is longer than others");
    EXPECT_STREQ(longCopy.c_str(), "a text that is longer than others!");
}
