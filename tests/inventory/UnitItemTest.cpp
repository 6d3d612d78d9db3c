// Which item names the unit that a board sits in, and where the unit's names come from.
#include "inventory/InventoryFixture.h"
#include "support/PlatformText.h"

namespace {

using UnitItem = InventoryFixture;
using nlohmann::ordered_json;

ordered_json backplane(const std::string& id, const std::string& unitName)
{
    return item(id, {{"PRODUCT/UNITNAME", unitName}});
}

TEST_F(UnitItem, AnItemWithAUnitNameIsAUnit)
{
    ASSERT_EQ(
        read({board("NETC", {{"PRODUCT/UNITNAME", "Box"}, {"PRODUCT/PACKAGE_NAME", "Package"}}, {named(1, "A")})}), 1);
    EXPECT_EQ(str(element().unitProductName), "Box");
}

TEST_F(UnitItem, AnItemWithAPackageNameIsAUnitToo)
{
    ASSERT_EQ(read({board("NETC", {{"PRODUCT/PACKAGE_NAME", "Package"}}, {named(1, "A")})}), 1);
    EXPECT_EQ(str(element().unitProductName), "Package");
}

TEST_F(UnitItem, AnEmptyUnitNameGoesBeforeThePackageName)
{
    ASSERT_EQ(read({board("NETC", {{"PRODUCT/UNITNAME", ""}, {"PRODUCT/PACKAGE_NAME", "Package"}}, {named(1, "A")})}),
              1);
    EXPECT_EQ(str(element().unitProductName), "");
}

TEST_F(UnitItem, AnUpdateElementMayBeAUnitOfItsOwn)
{
    ASSERT_EQ(read({board("NETC", {{"PRODUCT/UNITNAME", "Box"}},
                          {named(1, "A"), named(2, "B", {{"PRODUCT/UNITNAME", "Element"}}), named(3, "C")})}),
              1);
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "C", "B"}));
    EXPECT_EQ(str(element(1).unitProductName), "Box");
    EXPECT_EQ(str(element(2).unitProductName), "Element");
}

TEST_F(UnitItem, TheUnitHoldsForEverythingBelowUpToTheNextUnit)
{
    ASSERT_EQ(read({board("NETC", {{"PRODUCT/UNITNAME", "Outer"}}, {named(1, "A")},
                          {board("IOMODULE", {}, {named(1, "B")},
                                 {board("ION", {{"PRODUCT/UNITNAME", "Inner"}}, {named(1, "C")})})})}),
              1);
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "B", "C"}));
    EXPECT_EQ(str(element(0).unitProductName), "Outer");
    EXPECT_EQ(str(element(1).unitProductName), "Outer");
    EXPECT_EQ(element(0).unitItem, element(1).unitItem);
    EXPECT_EQ(str(element(2).unitProductName), "Inner");
}

TEST_F(UnitItem, ABoardOutsideOfAllUnitsHasNoUnit)
{
    ASSERT_EQ(read({board("NETC", {{"UNITNAME", "Box 1"}, {"RACKNAME", "Rack 1"}}, {named(1, "A")})}), 1);
    EXPECT_EQ(element().unitItem, nullptr);
    EXPECT_TRUE(element().unitProductName.isEmpty());
    EXPECT_TRUE(element().unitName.isEmpty());
    EXPECT_TRUE(element().rackName.isEmpty());
}

TEST_F(UnitItem, AnHcnTakesTheFirstBackplaneOfItsFirstCn)
{
    ASSERT_EQ(read({board("HCN", {}, {named(1, "A")},
                          {backplane("BACKPLANE", "own"),
                           item("CN", {}, {backplane("BACKPLANE[2]", "first"), backplane("BACKPLANE", "second")}),
                           item("CN[2]", {}, {backplane("BACKPLANE", "other")})})}),
              1);
    EXPECT_EQ(str(element().unitProductName), "first");
}

TEST_F(UnitItem, TheFirstCnOfAnHcnMayHaveAnyIndex)
{
    ASSERT_EQ(read({board("HCN", {}, {named(1, "A")},
                          {backplane("BACKPLANE", "own"), item("CN[2]", {}, {backplane("BACKPLANE", "of the only")})}),
                    board("HCN[2]", {}, {named(1, "B")},
                          {item("CN[2]", {}, {backplane("BACKPLANE", "first")}),
                           item("CN", {}, {backplane("BACKPLANE", "second")})})}),
              1);
    EXPECT_EQ(str(element(0).unitProductName), "of the only");
    EXPECT_EQ(str(element(1).unitProductName), "first");
}

TEST_F(UnitItem, AnHcnWithoutACnTakesItsOwnFirstBackplane)
{
    ASSERT_EQ(read({board("HCN[2]", {}, {named(1, "A")},
                          {item("IOMODULE", {}), backplane("BACKPLANE[3]", "own"), backplane("BACKPLANE", "other")})}),
              1);
    EXPECT_EQ(str(element().unitProductName), "own");
}

TEST_F(UnitItem, OnlyTheFirstCnIsLookedAt)
{
    ASSERT_EQ(read({board("HCN", {}, {named(1, "A")},
                          {backplane("BACKPLANE", "own"), item("CN", {}),
                           item("CN[2]", {}, {backplane("BACKPLANE", "other")})})}),
              1);
    EXPECT_EQ(element().unitItem, nullptr);
}

TEST_F(UnitItem, OnlyTheFirstBackplaneIsLookedAt)
{
    ASSERT_EQ(
        read({item(
            "NETC", {{"PRODUCT/UNITNAME", "Outer"}},
            {board("HCN", {}, {named(1, "A")},
                   {item("BACKPLANE", {{"PRODUCT/PACKAGE_NAME", "Package"}}), backplane("BACKPLANE[2]", "second")})})}),
        1);
    EXPECT_EQ(str(element().unitProductName), "Outer");
}

TEST_F(UnitItem, ABackplaneDeeperDownIsNotTaken)
{
    ASSERT_EQ(read({board("HCN", {}, {named(1, "A")}, {item("SUB_BOARDS", {}, {backplane("BACKPLANE", "deep")})})}), 1);
    EXPECT_EQ(element().unitItem, nullptr);
}

TEST_F(UnitItem, AnHcnsOwnUnitNameGoesBeforeItsBackplane)
{
    ASSERT_EQ(
        read({board("HCN", {{"PRODUCT/PACKAGE_NAME", "Package"}}, {named(1, "A")}, {backplane("BACKPLANE", "own")})}),
        1);
    EXPECT_EQ(str(element().unitProductName), "Package");
}

TEST_F(UnitItem, AnIoRouterTakesItsOwnBackplaneAndNotACns)
{
    ASSERT_EQ(read({board("IOROUTER[2]", {}, {named(1, "A")},
                          {item("CN", {}, {backplane("BACKPLANE", "of the node")}), backplane("BACKPLANE", "own")})}),
              1);
    EXPECT_EQ(str(element().unitProductName), "own");
}

TEST_F(UnitItem, OtherBoardsTakeNoBackplane)
{
    ASSERT_EQ(read({board("CN", {}, {named(1, "A")}, {backplane("BACKPLANE", "own")}),
                    board("ION", {}, {named(1, "B")}, {backplane("BACKPLANE", "own")})}),
              1);
    EXPECT_EQ(element(0).unitItem, nullptr);
    EXPECT_EQ(element(1).unitItem, nullptr);
}

TEST_F(UnitItem, TheBackplanesUnitHoldsBelowTheHcn)
{
    ASSERT_EQ(
        read({board(
            "HCN", {}, {named(1, "A")},
            {board("CN", {}, {named(1, "B")},
                   {board("BACKPLANE", {{"PRODUCT/UNITNAME", "Box"}, {"UNITNAME", "Box 1"}, {"RACKNAME", "Rack 1"}},
                          {named(1, "C")})}),
             board("IOMODULE", {}, {named(1, "D")})})}),
        1);
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "B", "C", "D"}));
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(element(i).unitItem, element(0).unitItem);
        EXPECT_EQ(str(element(i).unitProductName), "Box");
        EXPECT_EQ(str(element(i).unitName), "Box 1");
        EXPECT_EQ(str(element(i).rackName), "Rack 1");
    }
}

TEST_F(UnitItem, AUnitGivesItsOwnNames)
{
    ASSERT_EQ(read({board("NETC", {{"PRODUCT/UNITNAME", "Box"}, {"UNITNAME", "Box 1"}, {"RACKNAME", "Rack 1"}},
                          {named(1, "A")})}),
              1);
    EXPECT_EQ(str(element().unitName), "Box 1");
    EXPECT_EQ(str(element().rackName), "Rack 1");
}

TEST_F(UnitItem, AUnitGivesItsNamesToEachOfItsElementsAndToNoOther)
{
    const auto unit = [](const std::string& id, const std::string& name) {
        return board(id, {{"PRODUCT/UNITNAME", "Box"}, {"UNITNAME", name}, {"RACKNAME", "Rack of " + name}},
                     {named(1, "A"), named(2, "B")});
    };
    ASSERT_EQ(read({unit("NETC[1]", "Box 1"), unit("NETC[2]", "Box 2"), board("ION", {}, {named(1, "C")})}), 1);
    for (const std::size_t position : {0, 1, 2, 3}) {
        const std::string name = position < 2 ? "Box 1" : "Box 2";
        EXPECT_EQ(str(element(position).unitProductName), "Box");
        EXPECT_EQ(str(element(position).unitName), name);
        EXPECT_EQ(str(element(position).rackName), "Rack of " + name);
    }
    EXPECT_EQ(str(element(4).unitProductName), "");
    EXPECT_EQ(str(element(4).unitName), "");
}

TEST_F(UnitItem, WhatIsWrongWithAUnitIsToldForEachOfItsElements)
{
    ASSERT_EQ(read({board("NETC", {{"PRODUCT/UNITNAME", "Box"}, {"UNITNAME", 1}}, {named(1, "A"), named(2, "B")})}), 1);
    EXPECT_EQ(errors.count(), 2u);
}

TEST_F(UnitItem, AUnitWithoutAUnitNameGivesItsRackName)
{
    ASSERT_EQ(read({board("NETC", {{"PRODUCT/UNITNAME", "Box"}, {"RACKNAME", "Rack 1"}}, {named(1, "A")})}), 1);
    EXPECT_EQ(str(element().unitName), "");
    EXPECT_EQ(str(element().rackName), "Rack 1");
}

// An IOROUTER unit with `parameters` that refers to the items of its NETWORK.
std::vector<ordered_json> routerUnit(ordered_json parameters)
{
    parameters["PRODUCT/UNITNAME"] = "Router";
    return {board(
        "IOROUTER", parameters, {named(1, "A")},
        {item("NETWORK", {},
              {item("ION[16]", {{"UNITNAME", "Node 16"}, {"RACKNAME", "Rack 16"}}),
               item("ION[17]", {{"RACKNAME", "Rack 17"}}), item("ION[8388624]", {{"UNITNAME", "Node 8388624"}})})})};
}

TEST_F(UnitItem, AnIoRouterUnitIsNamedByTheNetworkItemOfItsSerialNumber)
{
    ASSERT_EQ(read(routerUnit({{"PRODUCT/SERIAL_NUMBER", 16}, {"RACKNAME", "own rack"}})), 1);
    EXPECT_EQ(str(element().unitProductName), "Router");
    EXPECT_EQ(str(element().unitName), "Node 16");
    EXPECT_EQ(str(element().rackName), "Rack 16");
}

TEST_F(UnitItem, OnlyTheLow24BitsOfTheSerialNumberNameTheNetworkItem)
{
    ASSERT_EQ(read(routerUnit({{"PRODUCT/SERIAL_NUMBER", 0xFF000010u}})), 1);
    EXPECT_EQ(str(element().unitName), "Node 16");
    ASSERT_EQ(read(routerUnit({{"PRODUCT/SERIAL_NUMBER", 0xFF800010u}})), 1);
    EXPECT_EQ(str(element().unitName), "Node 8388624");
}

TEST_F(UnitItem, ANetworkItemWithoutAUnitNameStillNamesTheRouter)
{
    ASSERT_EQ(read(routerUnit({{"PRODUCT/SERIAL_NUMBER", 17}, {"RACKNAME", "own rack"}})), 1);
    EXPECT_EQ(str(element().unitName), "");
    EXPECT_EQ(str(element().rackName), "Rack 17");
}

TEST_F(UnitItem, AnIoRouterUnitWithANameOfItsOwnKeepsIt)
{
    ASSERT_EQ(read(routerUnit({{"PRODUCT/SERIAL_NUMBER", 16}, {"UNITNAME", "own name"}})), 1);
    EXPECT_EQ(str(element().unitName), "own name");
    EXPECT_EQ(str(element().rackName), "");
}

TEST_F(UnitItem, AnIoRouterUnitWithoutANetworkItemNamesItself)
{
    ASSERT_EQ(read(routerUnit({{"PRODUCT/SERIAL_NUMBER", 18}, {"RACKNAME", "own rack"}})), 1);
    EXPECT_EQ(str(element().unitName), "");
    EXPECT_EQ(str(element().rackName), "own rack");
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(UnitItem, AnIoRouterUnitWithoutASerialNumberNamesItselfAndTheReadErrorIsReported)
{
    ASSERT_EQ(read(routerUnit({{"RACKNAME", "own rack"}})), 1);
    EXPECT_EQ(str(element().rackName), "own rack");
    EXPECT_EQ(errorTexts(),
              std::vector<std::string>{"Parameter PRODUCT/SERIAL_NUMBER of /ROOT/IOROUTER does not exist."});
}

TEST_F(UnitItem, AnyIoRouterIndexIsLookedUpInTheNetwork)
{
    std::vector<ordered_json> items = routerUnit({{"PRODUCT/SERIAL_NUMBER", 16}});
    items[0]["id"] = "IOROUTER[9]";
    ASSERT_EQ(read(items), 1);
    EXPECT_EQ(str(element().unitName), "Node 16");
}

TEST_F(UnitItem, OtherUnitsAreNotLookedUpInTheNetwork)
{
    std::vector<ordered_json> items = routerUnit({{"PRODUCT/SERIAL_NUMBER", 16}});
    items[0]["id"] = "HCN";
    ASSERT_EQ(read(items), 1);
    EXPECT_EQ(str(element().unitName), "");
    EXPECT_EQ(str(element().rackName), "");
}

}  // namespace
