// The table of installed versions, to the character.
#include "inventory/InventoryFixture.h"

namespace {

using nlohmann::ordered_json;

class InstalledVersionsTest : public InventoryFixture {
protected:
    // What is printed for a target with these items.
    std::string table(const std::vector<Json>& items)
    {
        EXPECT_EQ(read(items), 1);
        const std::size_t before = printed().size();
        inventory().printVersions();
        return printed().substr(before);
    }
};

ordered_json boardNamed(const std::string& id, const std::string& name, std::vector<ordered_json> elements,
                        ordered_json parameters = ordered_json::object())
{
    parameters["PRODUCT/NAME"] = name;
    return board(id, parameters, elements);
}

TEST_F(InstalledVersionsTest, ShowsTheVersionsOfAllElements)
{
    EXPECT_EQ(table({boardNamed(
                  "HCN", "Board",
                  {named(1, "UserFirmware", {{"VERSION", "23.2a12"}}), named(2, "UserFpga", {{"VERSION", "1.0"}})})}),
              "Update element  | Version\n"
              "-------------------------\n"
              "Board, Firmware | 23.2a12\n"
              "Board, FPGA     | 1.0    \n");
}

TEST_F(InstalledVersionsTest, AMissingOrEmptyVersionIsShownByDashes)
{
    EXPECT_EQ(
        table({boardNamed("HCN", "Board",
                          {named(1, "A"), named(2, "B", {{"VERSION", "0.0"}}), named(3, "C", {{"VERSION", "0.1"}})})}),
        "Update element | Version\n"
        "------------------------\n"
        "Board, A       | ---    \n"
        "Board, B       | ---    \n"
        "Board, C       | 0.1    \n");
}

TEST_F(InstalledVersionsTest, MarksInvalidAndInactiveElements)
{
    EXPECT_EQ(table({boardNamed("HCN", "Board",
                                {named(1, "A", {{"VERSION", "1.0"}}), named(2, "B", {{"VERSION", "1.0"}, {"VALID", 0}}),
                                 named(3, "C", {{"VERSION", "1.0"}, {"ACTIVE", 0}}),
                                 named(4, "D", {{"VERSION", "1.0"}, {"VALID", 0}, {"ACTIVE", 0}})})}),
              "Update element | Version |           \n"
              "-------------------------------------\n"
              "Board, A       | 1.0     |           \n"
              "Board, B       | 1.0     | [INVALID] \n"
              "Board, C       | 1.0     | [INACTIVE]\n"
              "Board, D       | 1.0     | [INVALID] \n");
}

TEST_F(InstalledVersionsTest, AnInactiveFileIsNotMarkedAndAnInvalidOneIs)
{
    EXPECT_EQ(table({boardNamed(
                  "HCN", "Board",
                  {fileElement(1, {{"NAME", "A"}, {"ACTIVE", 0}}), fileElement(2, {{"NAME", "B"}, {"VALID", 0}})})}),
              "Update element | Version |          \n"
              "------------------------------------\n"
              "Board, A       | ---     |          \n"
              "Board, B       | ---     | [INVALID]\n");
}

TEST_F(InstalledVersionsTest, ShowsDisabledElementsToo)
{
    options.disableCustomElements = true;
    EXPECT_EQ(table({boardNamed("HCN", "Board", {named(1, "A", {{"CUSTOM", 1}})})}),
              "Update element | Version\n"
              "------------------------\n"
              "Board, A       | ---    \n");
}

TEST_F(InstalledVersionsTest, WithoutElementsThereIsOnlyTheHeader)
{
    EXPECT_EQ(table({}),
              "Update element | Version\n"
              "------------------------\n");
}

TEST_F(InstalledVersionsTest, WithoutVerboseUnitsAreNotShown)
{
    EXPECT_EQ(table({boardNamed("NETC", "Board", {named(1, "A")}, {{"PRODUCT/UNITNAME", "Box"}}),
                     boardNamed("NETC[2]", "Board", {named(1, "B")}, {{"PRODUCT/UNITNAME", "Rack"}})}),
              "Update element | Version\n"
              "------------------------\n"
              "Board, A       | ---    \n"
              "Board, B       | ---    \n");
}

TEST_F(InstalledVersionsTest, WithVerboseEveryUnitHasAHeadingAndATable)
{
    options.verbose = true;
    EXPECT_EQ(table({boardNamed("NETC", "Board", {named(1, "A", {{"VERSION", "1.0"}}), named(2, "B")},
                                {{"PRODUCT/UNITNAME", "Box"}, {"UNITNAME", "One"}}),
                     boardNamed("NETC[2]", "Other", {named(1, "C", {{"VALID", 0}})}, {{"PRODUCT/UNITNAME", "Shelf"}})}),
              "\n"
              "************\n"
              "* Box: One *\n"
              "************\n"
              "Update element | Version\n"
              "------------------------\n"
              "Board, A       | 1.0    \n"
              "Board, B       | ---    \n"
              "\n"
              "*********\n"
              "* Shelf *\n"
              "*********\n"
              "Update element | Version |          \n"
              "------------------------------------\n"
              "Other, C       | ---     | [INVALID]\n");
}

TEST_F(InstalledVersionsTest, AHeadingNamesTheRackToo)
{
    options.verbose = true;
    EXPECT_EQ(
        table({boardNamed("NETC", "Board", {named(1, "A")},
                          {{"PRODUCT/UNITNAME", "Box"}, {"UNITNAME", "One"}, {"RACKNAME", "Rack 7"}}),
               boardNamed("NETC[2]", "Board", {named(1, "B")}, {{"PRODUCT/UNITNAME", "Box"}, {"RACKNAME", "Rack 7"}})}),
        "\n"
        "*********************\n"
        "* Box: Rack 7 / One *\n"
        "*********************\n"
        "Update element | Version\n"
        "------------------------\n"
        "Board, A       | ---    \n"
        "\n"
        "***************\n"
        "* Box: Rack 7 *\n"
        "***************\n"
        "Update element | Version\n"
        "------------------------\n"
        "Board, B       | ---    \n");
}

TEST_F(InstalledVersionsTest, UnitsWithTheSameTitleShareATable)
{
    options.verbose = true;
    EXPECT_EQ(table({boardNamed("NETC", "Board", {named(1, "A")}, {{"PRODUCT/UNITNAME", "Box"}}),
                     boardNamed("NETC[2]", "Board", {named(1, "B")}, {{"PRODUCT/UNITNAME", "Box"}})}),
              "\n"
              "*******\n"
              "* Box *\n"
              "*******\n"
              "Update element | Version\n"
              "------------------------\n"
              "Board, A       | ---    \n"
              "Board, B       | ---    \n");
}

TEST_F(InstalledVersionsTest, WithVerboseElementsBeforeTheFirstTitleHaveNoHeader)
{
    options.verbose = true;
    EXPECT_EQ(table({boardNamed("NETC", "Board", {named(1, "A"), named(2, "Longer", {{"VERSION", "1.0"}})}),
                     boardNamed("NETC[2]", "Board", {named(1, "B")}, {{"PRODUCT/UNITNAME", "Box"}})}),
              "Board, A      | ---\n"
              "-------------------\n"
              "Board, Longer | 1.0\n"
              "\n"
              "*******\n"
              "* Box *\n"
              "*******\n"
              "Update element | Version\n"
              "------------------------\n"
              "Board, B       | ---    \n");
}

TEST_F(InstalledVersionsTest, WithVerboseASingleElementBeforeTheFirstTitleHasNoHeaderEither)
{
    options.verbose = true;
    EXPECT_EQ(table({boardNamed("NETC", "Board", {named(1, "A")}),
                     boardNamed("NETC[2]", "Board", {named(1, "B")}, {{"PRODUCT/UNITNAME", "Box"}})}),
              "Board, A | ---\n"
              "--------------\n"
              "\n"
              "*******\n"
              "* Box *\n"
              "*******\n"
              "Update element | Version\n"
              "------------------------\n"
              "Board, B       | ---    \n");
}

TEST_F(InstalledVersionsTest, WithVerboseUntitledElementsBehindATitleHaveAnEmptyHeading)
{
    options.verbose = true;
    EXPECT_EQ(table({boardNamed("NETC", "Board", {named(1, "A")}, {{"PRODUCT/UNITNAME", "Box"}}),
                     boardNamed("NETC[2]", "Board", {named(1, "B")})}),
              "\n"
              "*******\n"
              "* Box *\n"
              "*******\n"
              "Update element | Version\n"
              "------------------------\n"
              "Board, A       | ---    \n"
              "\n"
              "****\n"
              "*  *\n"
              "****\n"
              "Update element | Version\n"
              "------------------------\n"
              "Board, B       | ---    \n");
}

TEST_F(InstalledVersionsTest, WithVerboseAndNoElementsNothingIsPrinted)
{
    options.verbose = true;
    EXPECT_EQ(table({}), "");
}

TEST_F(InstalledVersionsTest, AUnitWithoutAProductNameStillHasATitle)
{
    options.verbose = true;
    EXPECT_EQ(table({boardNamed("NETC", "Board", {named(1, "A")}, {{"PRODUCT/UNITNAME", ""}, {"UNITNAME", "One"}})}),
              "\n"
              "*********\n"
              "* : One *\n"
              "*********\n"
              "Update element | Version\n"
              "------------------------\n"
              "Board, A       | ---    \n");
}

}  // namespace
