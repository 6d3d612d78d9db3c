// The filters of the search: configuration elements, element names, board types and serial numbers.
#include "inventory/InventoryFixture.h"
#include "support/PlatformText.h"

namespace {

using ElementFilters = InventoryFixture;
using nlohmann::ordered_json;
using Names = std::vector<std::string>;

// A board with this type and serial number that carries one element.
ordered_json boardOf(unsigned index, const std::string& type, unsigned serialNumber, const std::string& elementName)
{
    return board("IOMODULE[" + std::to_string(index) + "]",
                 {{"PRODUCT/BOARD_TYPE", type}, {"PRODUCT/SERIAL_NUMBER", serialNumber}}, {named(1, elementName)});
}

std::vector<ordered_json> configurationAndOther()
{
    return {board(
        "NETC", {},
        {named(1, "plain"), named(2, "one", {{"CONFIGURATION", 1}}), named(3, "many", {{"CONFIGURATION", 70000}})})};
}

TEST_F(ElementFilters, ANormalRunLeavesConfigurationElementsOut)
{
    ASSERT_EQ(read(configurationAndOther()), 1);
    EXPECT_EQ(names(), Names{"plain"});
    EXPECT_FALSE(element().configuration);
    EXPECT_EQ(printed(), "");
}

TEST_F(ElementFilters, AConfigurationRunTakesConfigurationElementsOnly)
{
    options.configuration = true;
    ASSERT_EQ(read(configurationAndOther()), 1);
    EXPECT_EQ(names(), (Names{"one", "many"}));
    EXPECT_TRUE(element(0).configuration);
    EXPECT_TRUE(element(1).configuration);
}

TEST_F(ElementFilters, ElementNamesAreMatchedWhole)
{
    options.elementNames = "A, B";
    ASSERT_EQ(read({board("NETC", {}, {named(1, "AB"), named(2, "B"), named(3, "b"), named(4, "A"), named(5, "A;")})}),
              1);
    EXPECT_EQ(names(), (Names{"B", "A"}));
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(ElementFilters, BoardTypesAreMatchedWhole)
{
    options.boardTypes = "KR5120 X7";
    ASSERT_EQ(read({boardOf(1, "KR5120", 1, "A"), boardOf(2, "KR51", 2, "B"), boardOf(3, "X7", 3, "C"),
                    boardOf(4, "KR51200", 4, "D")}),
              1);
    EXPECT_EQ(names(), (Names{"A", "C"}));
}

TEST_F(ElementFilters, SerialNumbersAreComparedAsPlainDecimalNumbers)
{
    options.serialNumbers = "0123,16777232";
    ASSERT_EQ(read({boardOf(1, "T", 123, "leading zero"), boardOf(2, "T", 16777232, "whole number"),
                    boardOf(3, "T", 16, "low bits")}),
              1);
    EXPECT_EQ(names(), Names{"whole number"});
}

TEST_F(ElementFilters, ASerialNumberWithLeadingZerosNeverMatches)
{
    options.serialNumbers = "0123";
    ASSERT_EQ(read({boardOf(1, "T", 123, "A")}), 1);
    EXPECT_TRUE(names().empty());
}

TEST_F(ElementFilters, AllFiltersMustPass)
{
    options.elementNames = "A";
    options.boardTypes = "T";
    options.serialNumbers = "1";
    ASSERT_EQ(
        read({boardOf(1, "T", 1, "A"), boardOf(2, "U", 1, "A"), boardOf(3, "T", 2, "A"), boardOf(4, "T", 1, "B")}), 1);
    ASSERT_EQ(names(), Names{"A"});
    EXPECT_EQ(str(element().boardAddress.toString()), "/ROOT/IOMODULE");
}

TEST_F(ElementFilters, FiltersAFilteredBoardsOwnElementsOnly)
{
    options.boardTypes = "T";
    ASSERT_EQ(read({board("NETC", {{"PRODUCT/BOARD_TYPE", "U"}}, {named(1, "A")}, {boardOf(1, "T", 1, "B")})}), 1);
    EXPECT_EQ(names(), Names{"B"});
}

TEST_F(ElementFilters, AnElementWithoutANamePassesTheNamesAndTheReadErrorIsReported)
{
    options.elementNames = "B";
    ASSERT_EQ(read({board("NETC", {}, {updateElement(1, {})})}), 1);
    EXPECT_EQ(names(), Names{"Update Element"});
    EXPECT_EQ(errorTexts(), Names{"Parameter NAME of /ROOT/NETC/UPDATE_INFO/UPDATE_ELEMENT does not exist."});
}

TEST_F(ElementFilters, ABoardWithoutATypePassesTheTypesAndTheReadErrorIsReported)
{
    options.boardTypes = "T";
    ASSERT_EQ(read({board("NETC", {}, {named(1, "A")})}), 1);
    EXPECT_EQ(names(), Names{"A"});
    EXPECT_EQ(errorTexts(), Names{"Parameter PRODUCT/BOARD_TYPE of /ROOT/NETC does not exist."});
}

TEST_F(ElementFilters, ABoardWithoutASerialNumberHasTheNumberZero)
{
    options.serialNumbers = "0";
    ASSERT_EQ(read({board("NETC", {}, {named(1, "A")})}), 1);
    EXPECT_EQ(names(), Names{"A"});
    EXPECT_EQ(errorTexts(), Names{"Parameter PRODUCT/SERIAL_NUMBER of /ROOT/NETC does not exist."});
}

TEST_F(ElementFilters, TheFirstFilterThatFailsIsTheLastOneRead)
{
    options.elementNames = "B";
    options.boardTypes = "T";
    options.serialNumbers = "1";
    ASSERT_EQ(read({board("NETC", {}, {named(1, "A")})}), 1);
    EXPECT_EQ(errors.count(), 0u);

    ASSERT_EQ(read({board("NETC", {{"PRODUCT/BOARD_TYPE", "U"}}, {named(1, "B")})}), 1);
    EXPECT_EQ(errors.count(), 0u);
    EXPECT_TRUE(names().empty());
}

TEST_F(ElementFilters, ElementsOfTheOtherKindAreNotFiltered)
{
    options.elementNames = "B";
    ASSERT_EQ(read({board("NETC", {}, {updateElement(1, {{"CONFIGURATION", 1}})})}), 1);
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(ElementFilters, FilteredElementsLeaveNoGapInTheIndices)
{
    options.elementNames = "A C";
    ASSERT_EQ(read({board("NETC", {}, {named(1, "A"), named(2, "B"), named(3, "C")})}), 1);
    EXPECT_EQ(names(), (Names{"A", "C"}));
    EXPECT_EQ(indices(), (std::vector<unsigned>{0, 1}));
}

TEST_F(ElementFilters, TheFilesOfElementsThatAreLeftOutAreNoted)
{
    options.elementNames = "A";
    ASSERT_EQ(read({board("NETC", {},
                          {fileElement(1, {{"NAME", "A"}, {"LOCATION", "a.cfg"}}),
                           fileElement(2, {{"NAME", "B"}, {"LOCATION", "b.cfg"}}), fileElement(3, {{"NAME", "B"}}),
                           fileElement(4, {{"NAME", "A"}, {"LOCATION", "c.cfg"}, {"CONFIGURATION", 1}}),
                           fileElement(5, {{"NAME", "B"}, {"LOCATION", 7}}),
                           updateElement(6, {{"NAME", "B"}, {"LOCATION", "no file"}})})}),
              1);
    std::vector<std::string> noted;
    for (const ZoCString& location : inventory().getLeftOutLocations()) {
        noted.emplace_back(location.c_str());
    }
    EXPECT_EQ(noted, (std::vector<std::string>{"b.cfg", "c.cfg", ""}));
    EXPECT_EQ(names(), Names{"A"});
    EXPECT_EQ(errors.count(), 0u);
}

}  // namespace
