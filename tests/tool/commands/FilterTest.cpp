// What the names of a filter mean among what there is to select.
#include <gtest/gtest.h>

#include "tool/commands/Filter.h"

using TrellanTool::Filter;

namespace {

void noteNames(Filter& filter)
{
    filter.note("UserFirmware", "Firmware");
    filter.note("UserFpga", "FPGA");
    filter.note("CnFirmware", "Firmware");
    filter.note("Calibration", "Calibration");
}

}  // namespace

TEST(Filter, OfNamesThatAreValuesIsExplained)
{
    Filter filter("element name", "UserFpga, CnFirmware");
    noteNames(filter);
    EXPECT_TRUE(filter.isExplained(false));
    EXPECT_EQ(filter.complaints(), std::vector<std::string>());
    EXPECT_EQ(filter.withDisplayedMeant(), "UserFpga, CnFirmware");
}

TEST(Filter, MayMeanOthersWhereAValueIsDisplayedAsItself)
{
    Filter filter("element name", "Calibration");
    noteNames(filter);
    EXPECT_FALSE(filter.isExplained(false));
    EXPECT_TRUE(filter.isExplained(true));
}

TEST(Filter, TakesAllThatIsDisplayedAsAName)
{
    Filter filter("element name", "Firmware,Calibration");
    noteNames(filter);
    EXPECT_FALSE(filter.isExplained(false));
    EXPECT_EQ(filter.withDisplayedMeant(), "Firmware,Calibration,UserFirmware,CnFirmware");
    EXPECT_EQ(filter.complaints(), std::vector<std::string>());
}

TEST(Filter, NamesOnceWhatSelectsNothingWithWhatThereIs)
{
    Filter filter("serial number", "16 4711,16");
    filter.note("16777232", "16(1)");
    filter.note("4711", "4711");
    filter.note("815", "815");
    filter.note("4711", "4711");
    EXPECT_FALSE(filter.isExplained(true));
    EXPECT_EQ(filter.complaints(),
              std::vector<std::string>{"nothing has serial number 16; there are 16777232 (16(1)), 4711, 815"});
}

TEST(Filter, NamesWhatSelectsNothingWhereThereIsLittle)
{
    Filter none("board type", "X");
    EXPECT_EQ(none.complaints(), std::vector<std::string>{"nothing has board type X; there is none"});
    Filter one("board type", "X");
    one.note("KR5120", "");
    EXPECT_EQ(one.complaints(), std::vector<std::string>{"nothing has board type X; there is KR5120"});
}

TEST(Filter, SelectsByWhatStandsForNoneAndDoesNotNameIt)
{
    Filter filter("serial number", "7");
    filter.noteNone("0");
    EXPECT_EQ(filter.complaints(), std::vector<std::string>{"nothing has serial number 7; there is none"});
    filter.note("4711", "4711");
    filter.noteNone("0");
    EXPECT_EQ(filter.complaints(), std::vector<std::string>{"nothing has serial number 7; there is 4711"});

    Filter zero("serial number", "0");
    zero.noteNone("0");
    EXPECT_TRUE(zero.isExplained(true));
    EXPECT_EQ(zero.complaints(), std::vector<std::string>());
}

TEST(Filter, MatchesANameWithBlanksAsAWhole)
{
    Filter filter("element name", "Site settings, site");
    filter.note("Site settings", "Site settings");
    EXPECT_EQ(filter.complaints(), std::vector<std::string>{"nothing has element name site; there is Site settings"});
    Filter part("element name", "Site settingsX");
    part.note("Site settings", "Site settings");
    EXPECT_EQ(part.complaints().size(), 2);
}

TEST(Filter, OfSeparatorsAloneSelectsNothingAndNamesNothing)
{
    Filter filter("board type", " , ");
    filter.note("KR5120", "");
    EXPECT_FALSE(filter.isOff());
    EXPECT_TRUE(filter.isExplained(true));
    EXPECT_TRUE(filter.complaints().empty());
}
