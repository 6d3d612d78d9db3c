#include <gtest/gtest.h>

#include "Device.h"
#include "simulation/base/Resources.h"
#include "simulation/libZoInventoryTree/TreeItem.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"

using namespace ZoNInventoryIDs;
using nlohmann::ordered_json;

namespace {

ordered_json twoBoards()
{
    return target({board("HCN", {{"PRODUCT/NAME", "Processor board"}}, {updateElement(1, {}), updateElement(2, {})}),
                   item("NETWORK", {}, {item("ION[9]", {{"UNITNAME", "Pump"}}), item("ION[8]", {})})});
}

// What reading the parameter ID of the HCN gives when it is written as `value`.
template <class T>
struct Reading {
    explicit Reading(const ordered_json& value)
    {
        const SimulatedTarget device(target({item("HCN", {{"ID", value}})}));
        const Scan scan;
        ErrorPool errors;
        result = scan.item(HCN).getValue<T>(errors, ID);
        count = errors.count();
        code = count == 0 ? 0 : errors.code(0);
        text = count == 0 ? "" : errors.text(0);
    }

    T result{};
    unsigned count = 0;
    unsigned code = 0;
    std::string text;
};

template <class T>
void expectOtherType(const ordered_json& value)
{
    const Reading<T> reading(value);
    EXPECT_EQ(reading.count, 1U) << value;
    EXPECT_EQ(reading.code, 0x26300002U) << value;
    EXPECT_EQ(reading.text, "Parameter ID of /ROOT/HCN has another type.") << value;
    EXPECT_TRUE(reading.result == T{}) << value;
}

}  // namespace

TEST(InventoryItem, IsWalkedInTheOrderOfTheFile)
{
    const SimulatedTarget device(twoBoards());
    const Scan scan;
    ASSERT_EQ(scan.result, 0);
    EXPECT_EQ(scan.tree->getID(), ROOT);
    EXPECT_EQ(scan.tree->getParent(), nullptr);
    EXPECT_EQ(scan.tree->getNext(), nullptr);

    const ZoCInventoryItem* hcn = scan.tree->getFirstSubItem();
    EXPECT_EQ(hcn->getID(), HCN);
    EXPECT_EQ(hcn->getParent(), scan.tree);
    const ZoCInventoryItem* network = hcn->getNext();
    EXPECT_EQ(network->getID(), NETWORK);
    EXPECT_EQ(network->getNext(), nullptr);
    EXPECT_EQ(network->getFirstSubItem()->getID(), ION[9]);
    EXPECT_EQ(network->getFirstSubItem()->getNext()->getID(), ION[8]);
    EXPECT_EQ(network->getFirstSubItem()->getFirstSubItem(), nullptr);
}

TEST(InventoryItem, KnowsItsAddressFromTheRoot)
{
    const SimulatedTarget device(twoBoards());
    const Scan scan;
    const ZoCInventoryItem& element = scan.item(HCN / UPDATE_INFO / UPDATE_ELEMENT[2]);
    EXPECT_STREQ(element.getAddress().toString().c_str(), "/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT[2]");
    EXPECT_STREQ(element.getID().toString().c_str(), "/UPDATE_ELEMENT[2]");
}

TEST(InventoryItem, IsFoundByItsAddress)
{
    const SimulatedTarget device(twoBoards());
    const Scan scan;
    EXPECT_EQ(scan.tree->getItem(NETWORK / ION[8]), scan.tree->getItem(NETWORK)->getItem(ION[8]));
    EXPECT_EQ(scan.tree->getItem(NETWORK / ION[8])->getID(), ION[8]);
    EXPECT_EQ(scan.tree->getItem(NETWORK / ION), nullptr);
    EXPECT_EQ(scan.tree->getItem(UPDATE_INFO), nullptr);
    EXPECT_EQ(scan.tree->getItem(HCN / ION[8]), nullptr);
    EXPECT_EQ(scan.tree->getItem(ZoCInventoryAddress()), nullptr);
}

TEST(InventoryItem, IsFoundAmongManyAsTheFirstWithItsIdHoweverOftenItIsSearched)
{
    std::vector<ordered_json> boards;
    for (unsigned position = 0; position < 40; ++position) {
        boards.push_back(item("IOMODULE[" + std::to_string(position % 20 + 1) + "]", {{"SLOT", position}}));
    }
    const SimulatedTarget device(target(boards));
    const Scan scan;
    ErrorPool errors;
    for (unsigned round = 0; round < 3; ++round) {
        EXPECT_EQ(scan.item(IOMODULE[1]).getValue<unsigned>(errors, SLOT), 0U);
        EXPECT_EQ(scan.item(IOMODULE[20]).getValue<unsigned>(errors, SLOT), 19U);
        EXPECT_EQ(scan.tree->getItem(IOMODULE[21]), nullptr);
    }
}

TEST(InventoryItem, HasManyParametersAsItsNeighbourHasThem)
{
    constexpr unsigned end = 1000;  // of the indices
    ordered_json parameters;
    for (unsigned index = 2; index < end; ++index) {
        parameters["PRODUCT/HW_COMPATIBILITY_ID[" + std::to_string(index) + "]"] = index + 7;
    }
    const SimulatedTarget device(target({item("HCN", parameters), item("CN", parameters)}));
    const Scan scan;
    ErrorPool errors;
    for (unsigned index = 2; index < end; ++index) {
        const auto address = PRODUCT / HW_COMPATIBILITY_ID[index];
        EXPECT_EQ(scan.item(HCN).getValue<unsigned>(errors, address), index + 7);
        EXPECT_EQ(scan.item(CN).getValue<unsigned>(errors, address), index + 7);
    }
    EXPECT_EQ(errors.count(), 0U);
    EXPECT_EQ(scan.item(CN).getParameter(PRODUCT / HW_COMPATIBILITY_ID[end]), nullptr);
    EXPECT_EQ(scan.item(CN).getParameter(HW_COMPATIBILITY_ID[2]), nullptr);
}

TEST(InventoryItem, TellsWhichParametersItHas)
{
    const SimulatedTarget device(twoBoards());
    const Scan scan;
    EXPECT_NE(scan.item(HCN).getParameter(PRODUCT / NAME), nullptr);
    EXPECT_EQ(scan.item(HCN).getParameter(NAME), nullptr);
    EXPECT_EQ(scan.item(HCN).getParameter(PRODUCT), nullptr);
    EXPECT_EQ(scan.item(HCN).getParameter(ZoCInventoryAddress()), nullptr);
}

TEST(InventoryItem, ReadsValuesOfEveryType)
{
    EXPECT_EQ(Reading<unsigned>(0U).result, 0U);
    EXPECT_EQ(Reading<unsigned>(4294967295U).result, 4294967295U);
    EXPECT_EQ(Reading<unsigned char>(255U).result, 255);
    EXPECT_STREQ(Reading<ZoCString>("Processor board").result.c_str(), "Processor board");
    EXPECT_STREQ(Reading<ZoCVersion>("23.2a12").result.getAsString().c_str(), "23.2a12");
    EXPECT_EQ(Reading<ZoCVersion>("23.2a12").count, 0U);
}

TEST(InventoryItem, HasTheValueThatAParameterWasGivenLast)
{
    TrellanSimulation::TreeItem item(HCN);
    item.setParameter(ID, std::uint64_t{1});
    item.setParameter(NAME, std::string("first"));
    item.setParameter(ID, std::uint64_t{2});
    item.setParameter(NAME, std::string("second"));
    ErrorPool errors;
    EXPECT_EQ(item.getValue<unsigned>(errors, ID), 2U);
    EXPECT_STREQ(item.getValue<ZoCString>(errors, NAME).c_str(), "second");
    EXPECT_EQ(errors.count(), 0U);
}

TEST(InventoryItem, ReadsATextThatIsNoVersionAsTheEmptyVersion)
{
    const Reading<ZoCVersion> reading("as built");
    EXPECT_EQ(reading.result.getAsULong64(), 0U);
    EXPECT_EQ(reading.count, 0U);
}

TEST(InventoryItem, ReadsAVersionWithANulAsTheEmptyVersion)
{
    for (const std::string& text :
         {std::string("23.1\0junk", 9), std::string("23.1\0", 5), std::string("\00023.1", 5)}) {
        const Reading<ZoCVersion> reading(text);
        EXPECT_EQ(reading.result.getAsULong64(), 0U);
        EXPECT_EQ(reading.count, 0U);
    }
    EXPECT_EQ(Reading<ZoCString>(std::string("23.1\0junk", 9)).result.length(), 9U);
}

TEST(InventoryItem, RefusesNumbersThatTheTypeCannotHold)
{
    for (const ordered_json& value : std::vector<ordered_json>{-1, 1.5, 4294967296ULL, 1e30, "7", ""}) {
        expectOtherType<unsigned>(value);
    }
    for (const ordered_json& value : std::vector<ordered_json>{-1, 1.5, 256, "7"}) {
        expectOtherType<unsigned char>(value);
    }
}

TEST(InventoryItem, RefusesNumbersWhereTextIsAsked)
{
    for (const ordered_json& value : std::vector<ordered_json>{0, 23.1, -1}) {
        expectOtherType<ZoCString>(value);
        expectOtherType<ZoCVersion>(value);
    }
}

TEST(InventoryItem, ReportsAMissingParameterByItsAddress)
{
    const SimulatedTarget device(twoBoards());
    const Scan scan;
    ErrorPool errors;
    EXPECT_EQ(scan.item(HCN / UPDATE_INFO).getValue<unsigned>(errors, PRODUCT / SERIAL_NUMBER), 0U);
    ASSERT_EQ(errors.count(), 1U);
    EXPECT_EQ(errors.code(0), 0x26300001U);
    EXPECT_EQ(errors.text(0), "Parameter PRODUCT/SERIAL_NUMBER of /ROOT/HCN/UPDATE_INFO does not exist.");
    EXPECT_EQ(errors.get().getOriginNode(0), 0U);
    EXPECT_EQ(errors.get().getTimeStamp(0), 0U);
    EXPECT_EQ(errors.get().getMainModuleNumber(0), 0U);
    EXPECT_STREQ(errors.get().getFunctionName(0), "");
}

TEST(InventoryItem, AddsScriptedErrorsAtEveryReadOfAValue)
{
    ordered_json document = twoBoards();
    document["script"]["values"]["/ROOT/HCN:PRODUCT/NAME"] =
        ordered_json::array({{{"code", 2}, {"text", "cannot read"}}, {{"code", 3}, {"text", "at all"}}});
    document["script"]["values"]["/ROOT/HCN:PRODUCT/ID"] = ordered_json::array({{{"code", 4}, {"text", "lost"}}});
    document["script"]["values"]["/ROOT/NETWORK/ION[9]:UNITNAME"] = ordered_json::array();
    const SimulatedTarget device(document);
    const Scan scan;
    ErrorPool errors;
    EXPECT_TRUE(scan.item(HCN).getValue<ZoCString>(errors, PRODUCT / NAME).isEmpty());
    EXPECT_EQ(scan.item(HCN).getValue<unsigned>(errors, PRODUCT / NAME), 0U);
    ASSERT_EQ(errors.count(), 4U);
    EXPECT_EQ(errors.text(0), "cannot read");
    EXPECT_EQ(errors.text(3), "at all");

    scan.item(HCN).getValue<unsigned>(errors, PRODUCT / ID);
    ASSERT_EQ(errors.count(), 5U);
    EXPECT_EQ(errors.text(4), "lost");

    EXPECT_STREQ(scan.item(NETWORK / ION[9]).getValue<ZoCString>(errors, UNITNAME).c_str(), "Pump");
    EXPECT_EQ(errors.count(), 5U);
}

TEST(InventoryItem, IsFoundQuicklyAmongThousands)
{
    std::vector<ordered_json> nodes;
    for (unsigned index = 1; index <= 20000; ++index) {
        nodes.push_back(item("ION[" + std::to_string(index) + "]", {}));
    }
    const SimulatedTarget device(target({item("NETWORK", {}, nodes)}));
    const Scan scan;
    const ZoCInventoryItem& network = scan.item(NETWORK);
    for (unsigned index = 1; index <= 20000; ++index) {
        ASSERT_EQ(network.getItem(ION[index])->getID(), ION[index]);
    }
    EXPECT_EQ(network.getItem(ION[20001]), nullptr);
}

TEST(InventoryTree, IsCountedUntilItIsReleased)
{
    const SimulatedTarget device(twoBoards());
    const int before = TrellanSimulation::resources().inventoryTrees;
    {
        const Scan first;
        const Scan second;
        EXPECT_EQ(TrellanSimulation::resources().inventoryTrees, before + 2);
    }
    EXPECT_EQ(TrellanSimulation::resources().inventoryTrees, before);
    ZoCInventoryManager::getInstance()->deleteInventoryTree(nullptr);
    EXPECT_EQ(TrellanSimulation::resources().inventoryTrees, before);
}
