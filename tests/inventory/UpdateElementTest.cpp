// The record of an update element: what it holds before anything was read, and whose its error lists are.
#include <utility>

#include "inventory/InventoryFixture.h"
#include "libZoInventoryTree/ZoNInventoryIDs.h"
#include "simulation/base/Resources.h"
#include "support/PlatformText.h"

namespace {

using Element = ZoNUpdateInventory::ZoSUpdateElement;
using TrellanSimulation::resources;

TEST(UpdateElement, ANewRecordHasNoFileAndNoErrorLists)
{
    const Element element;
    EXPECT_EQ(element.updateFileIndex, -1);
    EXPECT_EQ(element.statusErrorList, nullptr);
    EXPECT_EQ(element.resultErrorList, nullptr);
    EXPECT_EQ(element.unitItem, nullptr);
}

TEST(UpdateElement, ANewRecordIsAConfigurationElementAndHasNoOtherFlagSet)
{
    const Element element;
    EXPECT_TRUE(element.configuration);
    EXPECT_FALSE(element.isFileSystemElement);
    EXPECT_FALSE(element.valid);
    EXPECT_FALSE(element.active);
    EXPECT_FALSE(element.hasChecksum);
    EXPECT_FALSE(element.notRequired);
    EXPECT_FALSE(element.disabled);
}

TEST(UpdateElement, StatesHaveTheAgreedNumbers)
{
    EXPECT_EQ(unsigned(ZoNUpdateInventory::NOTHING_TO_DO), 0u);
    EXPECT_EQ(unsigned(ZoNUpdateInventory::PENDING), 1u);
    EXPECT_EQ(unsigned(ZoNUpdateInventory::RUNNING), 2u);
    EXPECT_EQ(unsigned(ZoNUpdateInventory::FAILED), 3u);
    EXPECT_EQ(unsigned(ZoNUpdateInventory::CANCELLED), 4u);
    EXPECT_EQ(unsigned(ZoNUpdateInventory::FINISHED), 5u);
}

TEST(UpdateElement, ANewRecordsNumbersAreZero)
{
    const Element element;
    EXPECT_EQ(element.productId, 0u);
    EXPECT_EQ(element.serialNumber, 0u);
    EXPECT_EQ(element.slot, 0u);
    EXPECT_EQ(element.slotCount, 0u);
    EXPECT_EQ(element.index, 0u);
    EXPECT_EQ(element.id, 0u);
    EXPECT_EQ(element.hwCompatibilityId, 0u);
    EXPECT_EQ(element.swCompatibilityId, 0u);
    EXPECT_EQ(element.typeId, 0u);
    EXPECT_EQ(element.custom, 0u);
    EXPECT_EQ(element.checksumCrc32, 0u);
    EXPECT_EQ(element.phase, 0u);
    EXPECT_EQ(element.updateState, ZoNUpdateInventory::NOTHING_TO_DO);
    EXPECT_EQ(element.statusErrorCount, 0u);
    EXPECT_EQ(element.version.getAsULong64(), 0u);
}

TEST(UpdateElement, ANewRecordsStringsAndAddressesAreEmpty)
{
    const Element element;
    for (const ZoCString* text : {&element.boardType, &element.variant, &element.boardName, &element.unitProductName,
                                  &element.unitName, &element.rackName, &element.location, &element.name,
                                  &element.versionHistory, &element.displayName, &element.displayType}) {
        EXPECT_TRUE(text->isEmpty());
    }
    EXPECT_EQ(element.boardAddress, ZoCInventoryAddress());
    EXPECT_EQ(element.address, ZoCInventoryAddress());
}

TEST(UpdateElement, AnElementHasTwoIndependentErrorListsAndDeletesThem)
{
    const int before = resources().errorLists;
    {
        Element element;
        element.createErrorLists();
        ASSERT_NE(element.statusErrorList, nullptr);
        ASSERT_NE(element.resultErrorList, nullptr);
        EXPECT_NE(element.statusErrorList, element.resultErrorList);
        EXPECT_EQ(resources().errorLists, before + 2);
        element.statusErrorList->addError(ZoSErrorRecord{});
        EXPECT_EQ(element.resultErrorList->getErrorCount(), 0u);
    }
    EXPECT_EQ(resources().errorLists, before);
}

TEST(UpdateElement, DestroyingARecordWithoutErrorListsDeletesNothing)
{
    const int before = resources().errorLists;
    {
        const Element element;
    }
    EXPECT_EQ(resources().errorLists, before);
}

TEST(UpdateElement, MovingARecordTakesItsErrorListsOver)
{
    const int before = resources().errorLists;
    {
        Element source;
        source.createErrorLists();
        source.name = ZoCString("UserFirmware");
        source.updateFileIndex = 4;
        ZoCErrorList* const status = source.statusErrorList.get();
        ZoCErrorList* const result = source.resultErrorList.get();
        const Element moved(std::move(source));
        EXPECT_EQ(moved.statusErrorList.get(), status);
        EXPECT_EQ(moved.resultErrorList.get(), result);
        EXPECT_EQ(str(moved.name), "UserFirmware");
        EXPECT_EQ(moved.updateFileIndex, 4);
        EXPECT_EQ(resources().errorLists, before + 2);
    }
    EXPECT_EQ(resources().errorLists, before);
}

using InventoryObject = InventoryFixture;

TEST_F(InventoryObject, IsEmptyBeforeAnythingWasRead)
{
    EXPECT_TRUE(inventory().getUpdateElementList().empty());
    EXPECT_EQ(inventory().getFileSystemElementTemplate(), nullptr);
    EXPECT_EQ(inventory().getRebootSupportState(), 1u);
}

TEST_F(InventoryObject, LeavesTheCallersAddressAloneWhenThereIsNoProcessingNode)
{
    ASSERT_EQ(read({board("NETC", {}, {named(1, "UserFirmware")})}), 1);
    const ZoCInventoryAddress mine = ZoNInventoryIDs::IOMODULE[7];
    ZoCInventoryAddress address = mine;
    EXPECT_FALSE(inventory().getHcnAddress(address));
    EXPECT_EQ(address, mine);
    EXPECT_FALSE(inventory().getCnAddress(address));
    EXPECT_EQ(address, mine);
}

TEST_F(InventoryObject, DeletesTheElementsErrorListsWithTheUpdater)
{
    const int before = resources().errorLists;
    {
        const SimulatedTarget simulated(target({board("HCN", {}, {named(1, "A"), named(2, "B")})}));
        OpenUpdater updater{ZoNTrellanUpdater::ZoTOptions()};
        ASSERT_EQ(updater.getInventory().getInventory(errors), 1);
        EXPECT_EQ(resources().errorLists, before + 4);
    }
    EXPECT_EQ(resources().errorLists, before);
}

}  // namespace
