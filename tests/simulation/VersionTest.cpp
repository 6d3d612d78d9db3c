#include <gtest/gtest.h>

#include <array>

#include "libZoCompositeFactory/ZoCVersion.h"

namespace {

std::string textOf(const ZoCVersion& version)
{
    return version.getAsString().c_str();
}

// What a text is read as: its components, or "empty".
std::string componentsOf(const char* text)
{
    const ZoCVersion version(text);
    if (version.getAsULong64() == 0) {
        return "empty";
    }
    std::string components;
    for (const unsigned component :
         {unsigned{version.getMar()}, unsigned{version.getMir()}, unsigned{version.getMai()},
          unsigned{version.getSpb()}, unsigned{version.getSpn()}, unsigned{version.getPlv()}}) {
        components += (components.empty() ? "" : " ") + std::to_string(component);
    }
    return components;
}

}  // namespace

TEST(Version, IsEmptyUnlessAnythingElseIsSaid)
{
    EXPECT_EQ(ZoCVersion().getAsULong64(), 0u);
    EXPECT_EQ(textOf(ZoCVersion()), "0.0");
}

TEST(Version, HoldsItsComponentsFromTheTopBitDown)
{
    const ZoCVersion version(0x11, 0x22, 0x33, 0x44, 0x5566, 0x7788);
    EXPECT_EQ(version.getAsULong64(), 0x1122334455667788u);
}

TEST(Version, GivesTheComponentsOfItsValue)
{
    ZoCVersion version;
    version.setByULong64(0xFEDCBA9876543210u);
    EXPECT_EQ(version.getMar(), 0xFE);
    EXPECT_EQ(version.getMir(), 0xDC);
    EXPECT_EQ(version.getMai(), 0xBA);
    EXPECT_EQ(version.getSpb(), 0x98);
    EXPECT_EQ(version.getSpn(), 0x7654);
    EXPECT_EQ(version.getPlv(), 0x3210);
    EXPECT_EQ(version.getAsULong64(), 0xFEDCBA9876543210u);
}

TEST(Version, IsWrittenWithoutWhatIsZero)
{
    EXPECT_EQ(textOf({1, 0, 0, 0, 0, 0}), "1.0");
    EXPECT_EQ(textOf({23, 2, 1, 0, 0, 0}), "23.2.1");
    EXPECT_EQ(textOf({255, 255, 255, 255, 65535, 65535}), "255.255.255s255.65535p65535");
}

TEST(Version, IsWrittenWithTheLetterOfItsStage)
{
    EXPECT_EQ(textOf({1, 0, 0, 0, 3, 1}), "1.0r3p1");
    EXPECT_EQ(textOf({23, 2, 0, 1, 12, 0}), "23.2a12");
    EXPECT_EQ(textOf({23, 2, 0, 1, 0, 0}), "23.2a0");
    EXPECT_EQ(textOf({23, 2, 4, 2, 1, 0}), "23.2.4b1");
    EXPECT_EQ(textOf({5, 0, 0, 3, 7, 0}), "5.0s3.7");
    EXPECT_EQ(textOf({5, 0, 0, 0, 0, 9}), "5.0p9");
}

TEST(Version, ConvertsToItsText)
{
    const ZoCString text = ZoCVersion(23, 2, 0, 1, 12, 0);
    EXPECT_STREQ(text.c_str(), "23.2a12");
}

TEST(Version, IsReadFromEachOfItsForms)
{
    EXPECT_EQ(componentsOf("23.2"), "23 2 0 0 0 0");
    EXPECT_EQ(componentsOf("23.2.1"), "23 2 1 0 0 0");
    EXPECT_EQ(componentsOf("1.0r3p1"), "1 0 0 0 3 1");
    EXPECT_EQ(componentsOf("23.2a12"), "23 2 0 1 12 0");
    EXPECT_EQ(componentsOf("23.2.4b1p2"), "23 2 4 2 1 2");
    EXPECT_EQ(componentsOf("5.0s3.7"), "5 0 0 3 7 0");
    EXPECT_EQ(componentsOf("5.0p9"), "5 0 0 0 0 9");
    EXPECT_EQ(componentsOf("255.255.255s255.65535p65535"), "255 255 255 255 65535 65535");
}

TEST(Version, MayBeALoneMajorNumber)
{
    EXPECT_EQ(componentsOf("23"), "23 0 0 0 0 0");
}

TEST(Version, MayHaveLeadingAndWrittenZeros)
{
    EXPECT_EQ(componentsOf("0023.0002a0000000000012"), "23 2 0 1 12 0");
    EXPECT_EQ(componentsOf("1.2.0"), "1 2 0 0 0 0");
    EXPECT_EQ(componentsOf("1.2.0r0p0"), "1 2 0 0 0 0");
}

TEST(Version, IsEmptyWhenTheTextIsNoVersion)
{
    for (const char* text : {"",     " ",     "abc",  "1.",      ".1",      "1..2",    "1.2.",  "1.2.3.4", "1.2 ",
                             " 1.2", "1.2\n", "v1.2", "+1.2",    "-1.2",    "1,2",     "0x1.2", "1.2c3",   "1.2A3",
                             "1.2a", "1.2r",  "1.2p", "1.2a1b2", "1.2p1a1", "1.2a1.3", "1a1",   "1p1",     "1r1"}) {
        EXPECT_EQ(componentsOf(text), "empty") << '"' << text << '"';
    }
    EXPECT_EQ(componentsOf(nullptr), "empty");
}

TEST(Version, TakesOtherStagesFromThreeOn)
{
    EXPECT_EQ(componentsOf("1.2s0.1"), "empty");
    EXPECT_EQ(componentsOf("1.2s2.1"), "empty");
    EXPECT_EQ(componentsOf("1.2s3.0"), "1 2 0 3 0 0");
    EXPECT_EQ(componentsOf("1.2s3"), "empty");
    EXPECT_EQ(componentsOf("1.2s3."), "empty");
    EXPECT_EQ(componentsOf("1.2s.3"), "empty");
}

TEST(Version, IsEmptyWhenANumberIsBeyondItsWidth)
{
    for (const char* text : {"256", "256.0", "1.256", "1.2.256", "1.2a65536", "1.2r65536", "1.2s256.1", "1.2s3.65536",
                             "1.2p65536", "4294967297.1", "18446744073709551617.1"}) {
        EXPECT_EQ(componentsOf(text), "empty") << text;
    }
}

TEST(Version, IsReadBackFromItsText)
{
    for (const ZoCVersion& version :
         {ZoCVersion(0, 0, 0, 0, 0, 1), ZoCVersion(0, 0, 0, 1, 0, 0), ZoCVersion(1, 2, 3, 0, 4, 5),
          ZoCVersion(1, 0, 0, 2, 65535, 0), ZoCVersion(1, 0, 255, 3, 0, 0), ZoCVersion(255, 0, 0, 200, 7, 65535)}) {
        const ZoCString text = version.getAsString();
        EXPECT_EQ(ZoCVersion(text.c_str()).getAsULong64(), version.getAsULong64()) << text.c_str();
    }
}

TEST(Version, AReleaseIsLaterThanItsAlphas)
{
    EXPECT_LT(ZoCVersion("23.2a12"), ZoCVersion("23.2"));
    EXPECT_GT(ZoCVersion("23.2"), ZoCVersion("23.2a12"));
    EXPECT_LT(ZoCVersion("23.2a65535p65535"), ZoCVersion("23.2"));
}

TEST(Version, IsOrderedByItsNumbersThenItsStage)
{
    const std::array ascending = {"0.1",    "22.9.9",   "23.1.200", "23.2a1",   "23.2a12",    "23.2a12p1", "23.2b1",
                                  "23.2b2", "23.2s3.1", "23.2s3.9", "23.2s4.0", "23.2s255.0", "23.2",      "23.2p1",
                                  "23.2r1", "23.2r1p1", "23.2r2",   "23.2.1a1", "23.2.1",     "23.3a1",    "24.0a1"};
    for (std::size_t left = 0; left < ascending.size(); ++left) {
        for (std::size_t right = 0; right < ascending.size(); ++right) {
            SCOPED_TRACE(std::string(ascending[left]) + " and " + ascending[right]);
            EXPECT_EQ(ZoCVersion(ascending[left]) < ZoCVersion(ascending[right]), left < right);
            EXPECT_EQ(ZoCVersion(ascending[left]) > ZoCVersion(ascending[right]), left > right);
        }
    }
}

TEST(Version, IsEqualWhenAllComponentsAre)
{
    EXPECT_TRUE(ZoCVersion("1.2.0") == ZoCVersion("01.2"));
    EXPECT_FALSE(ZoCVersion("1.2.0") != ZoCVersion("01.2"));
    EXPECT_FALSE(ZoCVersion("1.2") == ZoCVersion("1.2p1"));
    EXPECT_TRUE(ZoCVersion("1.2") != ZoCVersion("1.2p1"));
}
