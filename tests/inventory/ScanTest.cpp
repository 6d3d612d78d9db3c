// Reading the inventory: the scan, what a failed one leaves behind, and the processing nodes that are noted.
#include "inventory/InventoryFixture.h"
#include "simulation/base/Resources.h"
#include "support/PlatformText.h"

namespace {

using Scan = InventoryFixture;
using nlohmann::ordered_json;

std::string hcnAddress(const ZoCUpdateInventory& inventory)
{
    ZoCInventoryAddress address;
    return inventory.getHcnAddress(address) ? str(address.toString()) : "none";
}

std::string cnAddress(const ZoCUpdateInventory& inventory)
{
    ZoCInventoryAddress address;
    return inventory.getCnAddress(address) ? str(address.toString()) : "none";
}

TEST_F(Scan, ReadsTheElementsAndGivesTheTreeBack)
{
    const int treesBefore = TrellanSimulation::resources().inventoryTrees;
    EXPECT_EQ(read({board("NETC", {}, {named(1, "A"), named(2, "B")})}), 1);
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(TrellanSimulation::resources().inventoryTrees, treesBefore);
}

TEST_F(Scan, AFailedScanKeepsTheElementsAndReportsTheScansErrors)
{
    ASSERT_EQ(read({board("HCN", {}, {named(1, "A")})}), 1);
    const unsigned errorsBefore = errors.count();
    ordered_json document = target({board("CN", {}, {named(1, "B")})});
    document["script"]["scan"] = {{{"result", 5}, {"errors", {{{"code", 77}, {"text", "no answer"}}}}}};
    EXPECT_EQ(readTarget(document), 0);
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
    EXPECT_EQ(hcnAddress(inventory()), "/ROOT/HCN");
    EXPECT_EQ(cnAddress(inventory()), "none");
    ASSERT_EQ(errors.count(), errorsBefore + 1);
    EXPECT_EQ(errors.code(errorsBefore), 77u);
    EXPECT_EQ(errors.text(errorsBefore), "no answer");
}

TEST_F(Scan, AScanResultDecidesAlsoWithoutAnyError)
{
    ordered_json document = target({board("NETC", {}, {named(1, "A")})});
    document["script"]["scan"] = {{{"result", 1}}};
    EXPECT_EQ(readTarget(document), 0);
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(errors.count(), 0u);
    EXPECT_EQ(printed(), "");
}

TEST_F(Scan, ErrorsOfASuccessfulScanStopNothing)
{
    ordered_json document = target({board("NETC", {}, {named(1, "A")})});
    document["script"]["scan"] = {{{"errors", {{{"code", 1}, {"text", "noise"}}}}}};
    EXPECT_EQ(readTarget(document), 1);
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
    EXPECT_EQ(errorTexts(), std::vector<std::string>{"noise"});
}

TEST_F(Scan, ErrorsOfTheSearchComeBeforeThoseOfTheRebootSupport)
{
    ordered_json document = target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}}, {named(1, "UserFirmware")},
                                          {board("CN", {{"PRODUCT/ID", "none"}}, {named(1, "A")})})});
    EXPECT_EQ(readTarget(document), 1);
    EXPECT_EQ(errorTexts(),
              (std::vector<std::string>{"Parameter PRODUCT/ID of /ROOT/HCN/CN has another type.",
                                        "Parameter VERSION of /ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT does not exist."}));
}

TEST_F(Scan, ANewSearchForgetsTheElementsAndTheProcessingNodes)
{
    ASSERT_EQ(read({board("HCN", {}, {named(1, "A"), named(2, "B")}), board("CN", {}, {})}), 1);
    ASSERT_EQ(read({board("NETC", {}, {named(1, "C")})}), 1);
    EXPECT_EQ(names(), std::vector<std::string>{"C"});
    EXPECT_EQ(indices(), std::vector<unsigned>{0});
    EXPECT_EQ(hcnAddress(inventory()), "none");
    EXPECT_EQ(cnAddress(inventory()), "none");
}

TEST_F(Scan, ASearchWithoutATreeOnlyForgets)
{
    ASSERT_EQ(read({board("HCN", {}, {named(1, "A")})}), 1);
    inventory().searchUpdateElements(errors, nullptr, nullptr, true);
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(hcnAddress(inventory()), "none");
}

TEST_F(Scan, NotesTheFirstHcnAndTheFirstCnInTheOrderOfTheWalk)
{
    ASSERT_EQ(read({item("NETC", {}, {item("HCN[4]", {}, {item("CN[2]", {})})}), item("HCN", {}), item("CN", {})}), 1);
    EXPECT_EQ(hcnAddress(inventory()), "/ROOT/NETC/HCN[4]");
    EXPECT_EQ(cnAddress(inventory()), "/ROOT/NETC/HCN[4]/CN[2]");
}

TEST_F(Scan, DoesNotNoteProcessingNodesInHiddenSubtrees)
{
    ASSERT_EQ(read({item("FIRMWARE", {}, {item("HCN", {}), item("CN", {})})}), 1);
    EXPECT_EQ(hcnAddress(inventory()), "none");
    EXPECT_EQ(cnAddress(inventory()), "none");
}

TEST_F(Scan, PrintsNothingWithoutVerbose)
{
    ASSERT_EQ(read({board("HCN", {}, {named(1, "A")}, {board("CN", {}, {named(1, "B")})})}), 1);
    EXPECT_EQ(printed(), "");
}

TEST_F(Scan, PrintsTheProcessingNodesAndTheRebootSupportWithVerbose)
{
    options.verbose = true;
    ASSERT_EQ(
        read({board("HCN", {{"PRODUCT/BOARD_TYPE", "XY"}}, {named(1, "A")}, {item("CN[2]", {})}), item("CN", {})}), 1);
    EXPECT_EQ(printed(),
              "HCN found: /ROOT/HCN\n"
              "CN found: /ROOT/HCN/CN[2]\n"
              "Reboot support status: 3\n");
}

TEST_F(Scan, PrintsTheRebootSupportAlsoWithoutProcessingNodes)
{
    options.verbose = true;
    ASSERT_EQ(read({}), 1);
    EXPECT_EQ(printed(), "Reboot support status: 4\n");
}

}  // namespace
