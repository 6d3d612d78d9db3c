// The table of installed versions.
#include <sstream>

#include "inventory/InventoryFixture.h"
#include "support/Table.h"

namespace {

using nlohmann::ordered_json;

class InstalledVersions : public InventoryFixture {
protected:
    // What is printed for a target with these items.
    std::string text(const std::vector<Json>& items)
    {
        EXPECT_EQ(read(items), 1);
        const std::size_t before = printed().size();
        inventory().printVersions();
        return printed().substr(before);
    }

    // The rows of the only table.
    TableRows rows(const std::vector<Json>& items) { return tableRows(text(items)); }
};

ordered_json boardNamed(const std::string& id, const std::string& name, std::vector<ordered_json> elements,
                        ordered_json parameters = ordered_json::object())
{
    parameters["PRODUCT/NAME"] = name;
    return board(id, parameters, elements);
}

// The headings of units in `text`, in their frames of stars.
std::vector<std::string> headings(const std::string& text)
{
    std::vector<std::string> found;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("* ")) {
            found.push_back(line);
        }
    }
    return found;
}

// The rows of the table below a unit's heading, up to the next heading.
TableRows rowsBelow(const std::string& heading, const std::string& text)
{
    const std::size_t frame = text.find('\n', text.find(heading)) + 1;
    const std::size_t begin = text.find('\n', frame) + 1;
    return tableRows(text.substr(begin, text.find("\n\n", begin) - begin));
}

TEST_F(InstalledVersions, ShowsTheVersionsOfAllElements)
{
    EXPECT_EQ(text({boardNamed(
                  "HCN", "Board",
                  {named(1, "UserFirmware", {{"VERSION", "23.2a12"}}), named(2, "UserFpga", {{"VERSION", "1.0"}})})}),
              "Update element  | Version\n"
              "-------------------------\n"
              "Board, Firmware | 23.2a12\n"
              "Board, FPGA     | 1.0    \n");
}

TEST_F(InstalledVersions, AMissingOrEmptyVersionIsShownByDashes)
{
    EXPECT_EQ(
        rows({boardNamed("HCN", "Board",
                         {named(1, "A"), named(2, "B", {{"VERSION", "0.0"}}), named(3, "C", {{"VERSION", "0.1"}})})}),
        (TableRows{{"Board, A", "---"}, {"Board, B", "---"}, {"Board, C", "0.1"}}));
}

TEST_F(InstalledVersions, MarksInvalidAndInactiveElements)
{
    EXPECT_EQ(rows({boardNamed("HCN", "Board",
                               {named(1, "A", {{"VERSION", "1.0"}}), named(2, "B", {{"VERSION", "1.0"}, {"VALID", 0}}),
                                named(3, "C", {{"VERSION", "1.0"}, {"ACTIVE", 0}}),
                                named(4, "D", {{"VERSION", "1.0"}, {"VALID", 0}, {"ACTIVE", 0}})})}),
              (TableRows{{"Board, A", "1.0", ""},
                         {"Board, B", "1.0", "[INVALID]"},
                         {"Board, C", "1.0", "[INACTIVE]"},
                         {"Board, D", "1.0", "[INVALID]"}}));
}

TEST_F(InstalledVersions, AnInactiveFileIsNotMarkedAndAnInvalidOneIs)
{
    EXPECT_EQ(rows({boardNamed(
                  "HCN", "Board",
                  {fileElement(1, {{"NAME", "A"}, {"ACTIVE", 0}}), fileElement(2, {{"NAME", "B"}, {"VALID", 0}})})}),
              (TableRows{{"Board, A", "---", ""}, {"Board, B", "---", "[INVALID]"}}));
}

TEST_F(InstalledVersions, ShowsDisabledElementsToo)
{
    options.disableCustomElements = true;
    EXPECT_EQ(rows({boardNamed("HCN", "Board", {named(1, "A", {{"CUSTOM", 1}})})}), (TableRows{{"Board, A", "---"}}));
}

TEST_F(InstalledVersions, WithoutElementsThereIsOnlyTheHeader)
{
    EXPECT_EQ(text({}),
              "Update element | Version\n"
              "------------------------\n");
}

TEST_F(InstalledVersions, WithoutVerboseUnitsAreNotShown)
{
    EXPECT_EQ(rows({boardNamed("NETC", "Board", {named(1, "A")}, {{"PRODUCT/UNITNAME", "Box"}}),
                    boardNamed("NETC[2]", "Board", {named(1, "B")}, {{"PRODUCT/UNITNAME", "Rack"}})}),
              (TableRows{{"Board, A", "---"}, {"Board, B", "---"}}));
}

TEST_F(InstalledVersions, WithVerboseEveryUnitHasAHeadingAndATable)
{
    options.verbose = true;
    EXPECT_EQ(text({boardNamed("NETC", "Board", {named(1, "A", {{"VERSION", "1.0"}}), named(2, "B")},
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

TEST_F(InstalledVersions, AHeadingNamesTheRackToo)
{
    options.verbose = true;
    EXPECT_EQ(headings(text({boardNamed("NETC", "Board", {named(1, "A")},
                                        {{"PRODUCT/UNITNAME", "Box"}, {"UNITNAME", "One"}, {"RACKNAME", "Rack 7"}}),
                             boardNamed("NETC[2]", "Board", {named(1, "B")},
                                        {{"PRODUCT/UNITNAME", "Box"}, {"RACKNAME", "Rack 7"}})})),
              (std::vector<std::string>{"* Box: Rack 7 / One *", "* Box: Rack 7 *"}));
}

TEST_F(InstalledVersions, UnitsWithTheSameTitleShareATable)
{
    options.verbose = true;
    const std::string shown = text({boardNamed("NETC", "Board", {named(1, "A")}, {{"PRODUCT/UNITNAME", "Box"}}),
                                    boardNamed("NETC[2]", "Board", {named(1, "B")}, {{"PRODUCT/UNITNAME", "Box"}})});
    EXPECT_EQ(headings(shown), std::vector<std::string>{"* Box *"});
    EXPECT_EQ(rowsBelow("* Box *", shown), (TableRows{{"Board, A", "---"}, {"Board, B", "---"}}));
}

TEST_F(InstalledVersions, WithVerboseElementsBeforeTheFirstTitleHaveNoHeader)
{
    options.verbose = true;
    const std::string shown =
        text({boardNamed("NETC", "Board", {named(1, "A"), named(2, "Longer", {{"VERSION", "1.0"}})}),
              boardNamed("NETC[2]", "Board", {named(1, "B")}, {{"PRODUCT/UNITNAME", "Box"}})});
    EXPECT_EQ(shown.substr(0, shown.find("\n*")),
              "Board, A      | ---\n"
              "-------------------\n"
              "Board, Longer | 1.0\n");
    EXPECT_EQ(rowsBelow("* Box *", shown), (TableRows{{"Board, B", "---"}}));
}

TEST_F(InstalledVersions, WithVerboseASingleElementBeforeTheFirstTitleHasNoHeaderEither)
{
    options.verbose = true;
    const std::string shown = text({boardNamed("NETC", "Board", {named(1, "A")}),
                                    boardNamed("NETC[2]", "Board", {named(1, "B")}, {{"PRODUCT/UNITNAME", "Box"}})});
    EXPECT_EQ(shown.substr(0, shown.find("\n*")),
              "Board, A | ---\n"
              "--------------\n");
}

TEST_F(InstalledVersions, WithVerboseUntitledElementsBehindATitleHaveAnEmptyHeading)
{
    options.verbose = true;
    const std::string shown = text({boardNamed("NETC", "Board", {named(1, "A")}, {{"PRODUCT/UNITNAME", "Box"}}),
                                    boardNamed("NETC[2]", "Board", {named(1, "B")})});
    EXPECT_EQ(headings(shown), (std::vector<std::string>{"* Box *", "*  *"}));
    EXPECT_EQ(rowsBelow("*  *", shown), (TableRows{{"Board, B", "---"}}));
}

TEST_F(InstalledVersions, WithVerboseAndNoElementsNothingIsPrinted)
{
    options.verbose = true;
    EXPECT_EQ(text({}), "");
}

TEST_F(InstalledVersions, AUnitWithoutAProductNameStillHasATitle)
{
    options.verbose = true;
    EXPECT_EQ(
        headings(text({boardNamed("NETC", "Board", {named(1, "A")}, {{"PRODUCT/UNITNAME", ""}, {"UNITNAME", "One"}})})),
        std::vector<std::string>{"* : One *"});
}

}  // namespace
