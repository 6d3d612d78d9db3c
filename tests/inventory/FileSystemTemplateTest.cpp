// The record from which elements are made for files that are not on the target yet.
#include "inventory/InventoryFixture.h"
#include "support/PlatformText.h"

namespace {

using FileSystemTemplate = InventoryFixture;
using nlohmann::ordered_json;

ordered_json processorBoard()
{
    return {{"PRODUCT/BOARD_TYPE", "KR5120"},
            {"PRODUCT/VARIANT", "V1"},
            {"PRODUCT/ID", 11},
            {"PRODUCT/SERIAL_NUMBER", 16777232},
            {"PRODUCT/SLOT_COUNT", 1},
            {"SLOT", 3},
            {"PRODUCT/NAME", "Processor board"},
            {"PRODUCT/UNITNAME", "Box"},
            {"UNITNAME", "Box 1"},
            {"RACKNAME", "Rack 1"}};
}

ordered_json firmware()
{
    return named(1, "UserFirmware",
                 {{"HW_COMPATIBILITY_ID", 3},
                  {"SW_COMPATIBILITY_ID", 4},
                  {"TYPE_ID", 5},
                  {"CUSTOM", 1},
                  {"LOCATION", "somewhere"},
                  {"VERSION", "1.0"},
                  {"CHECKSUM_CRC32", 7},
                  {"VERSION_HISTORY", "0.9"}});
}

TEST_F(FileSystemTemplate, TakesTheBoardAndTheUnitOfTheFirstElement)
{
    ASSERT_EQ(read({board("HCN[2]", processorBoard(), {firmware()})}), 1);
    const Element* record = inventory().getFileSystemElementTemplate();
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(str(record->boardAddress.toString()), "/ROOT/HCN[2]");
    EXPECT_EQ(str(record->boardType), "KR5120");
    EXPECT_EQ(str(record->variant), "V1");
    EXPECT_EQ(record->productId, 11u);
    EXPECT_EQ(record->serialNumber, 16777232u);
    EXPECT_EQ(record->slot, 3u);
    EXPECT_EQ(record->slotCount, 1u);
    EXPECT_EQ(str(record->boardName), "Processor board (V1)");
    EXPECT_EQ(str(record->unitProductName), "Box");
    EXPECT_EQ(str(record->unitName), "Box 1");
    EXPECT_EQ(str(record->rackName), "Rack 1");
    EXPECT_EQ(record->hwCompatibilityId, 3u);
    EXPECT_EQ(record->swCompatibilityId, 4u);
}

TEST_F(FileSystemTemplate, StandsForAnyFile)
{
    ASSERT_EQ(read({board("HCN", processorBoard(), {firmware()})}), 1);
    const Element* record = inventory().getFileSystemElementTemplate();
    ASSERT_NE(record, nullptr);
    EXPECT_TRUE(record->isFileSystemElement);
    EXPECT_EQ(str(record->location), "*");
    EXPECT_FALSE(record->configuration);
    EXPECT_EQ(str(record->name), "Updatable file");
    EXPECT_EQ(str(record->displayType), "Updatable file");
    EXPECT_EQ(str(record->displayName), "Processor board (V1), SN 16(1), Updatable file");
}

TEST_F(FileSystemTemplate, TakesNothingElseOfTheElement)
{
    ASSERT_EQ(read({board("HCN", processorBoard(), {firmware()})}), 1);
    const Element* record = inventory().getFileSystemElementTemplate();
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->unitItem, nullptr);
    EXPECT_EQ(record->address, ZoCInventoryAddress());
    EXPECT_EQ(record->id, 0u);
    EXPECT_EQ(record->typeId, 0u);
    EXPECT_EQ(record->custom, 0u);
    EXPECT_FALSE(record->valid);
    EXPECT_FALSE(record->active);
    EXPECT_FALSE(record->hasChecksum);
    EXPECT_EQ(record->checksumCrc32, 0u);
    EXPECT_EQ(record->version.getAsULong64(), 0u);
    EXPECT_TRUE(record->versionHistory.isEmpty());
    EXPECT_EQ(record->updateFileIndex, -1);
    EXPECT_EQ(record->statusErrorList, nullptr);
    EXPECT_EQ(record->resultErrorList, nullptr);
}

TEST_F(FileSystemTemplate, IsNotInTheList)
{
    ASSERT_EQ(read({board("HCN", processorBoard(), {firmware()})}), 1);
    EXPECT_NE(inventory().getFileSystemElementTemplate(), nullptr);
    EXPECT_EQ(names(), std::vector<std::string>{"UserFirmware"});
}

TEST_F(FileSystemTemplate, ACnIsEnough)
{
    ASSERT_EQ(read({board("CN", processorBoard(), {firmware()})}), 1);
    ASSERT_NE(inventory().getFileSystemElementTemplate(), nullptr);
    EXPECT_EQ(str(inventory().getFileSystemElementTemplate()->boardAddress.toString()), "/ROOT/CN");
}

TEST_F(FileSystemTemplate, ThereIsNoneInAConfigurationRun)
{
    options.configuration = true;
    ASSERT_EQ(read({board("HCN", processorBoard(), {named(1, "UserFirmware", {{"CONFIGURATION", 1}})})}), 1);
    EXPECT_EQ(names().size(), 1u);
    EXPECT_EQ(inventory().getFileSystemElementTemplate(), nullptr);
}

TEST_F(FileSystemTemplate, ThereIsNoneWithoutAProcessingNode)
{
    options.verbose = true;
    ASSERT_EQ(read({board("NETC", processorBoard(), {firmware()})}), 1);
    EXPECT_EQ(inventory().getFileSystemElementTemplate(), nullptr);
    EXPECT_EQ(printed().find("WARNING"), std::string::npos) << printed();
}

TEST_F(FileSystemTemplate, ThatOfAnEarlierReadIsForgotten)
{
    ASSERT_EQ(read({board("HCN", processorBoard(), {firmware()})}), 1);
    ASSERT_NE(inventory().getFileSystemElementTemplate(), nullptr);
    ASSERT_EQ(read({board("NETC", processorBoard(), {firmware()})}), 1);
    EXPECT_EQ(inventory().getFileSystemElementTemplate(), nullptr);
}

TEST_F(FileSystemTemplate, ThereIsNoneWithoutAnyElement)
{
    options.verbose = true;
    options.elementNames = "Other";
    ASSERT_EQ(read({board("HCN", processorBoard(), {firmware()})}), 1);
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(inventory().getFileSystemElementTemplate(), nullptr);
    EXPECT_EQ(printed().find("WARNING"), std::string::npos) << printed();
}

TEST_F(FileSystemTemplate, ThereIsNoneWhenTheFirstElementIsOnAnotherBoard)
{
    ASSERT_EQ(read({board("NETC[2]", {}, {named(1, "A")}), board("HCN", processorBoard(), {firmware()})}), 1);
    EXPECT_EQ(inventory().getFileSystemElementTemplate(), nullptr);
    EXPECT_EQ(printed(), "");
}

TEST_F(FileSystemTemplate, WithVerboseTheOtherBoardIsWarnedOf)
{
    options.verbose = true;
    ASSERT_EQ(read({board("NETC[2]", {}, {named(1, "A")}), board("HCN", processorBoard(), {firmware()})}), 1);
    EXPECT_EQ(inventory().getFileSystemElementTemplate(), nullptr);
    EXPECT_EQ(printed(),
              "HCN found: /ROOT/HCN\n"
              "WARNING: Cannot initialize file system element template. Unexpected HCN address (/ROOT/NETC[2]).\n"
              "Reboot support status: 3\n");
}

}  // namespace
