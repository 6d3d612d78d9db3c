// What an element's record takes from the element item and from its board.
#include "inventory/InventoryFixture.h"
#include "support/PlatformText.h"

namespace {

using ElementReader = InventoryFixture;
using nlohmann::ordered_json;
using Texts = std::vector<std::string>;

ordered_json fullBoard()
{
    return {{"PRODUCT/BOARD_TYPE", "T100"},      {"PRODUCT/VARIANT", "V2"}, {"PRODUCT/ID", 11},
            {"PRODUCT/SERIAL_NUMBER", 16777232}, {"PRODUCT/SLOT_COUNT", 2}, {"SLOT", 5},
            {"PRODUCT/NAME", "Processor board"}};
}

ordered_json fullElement()
{
    return {{"ID", 42},
            {"LOCATION", "/mnt/data/app.bin"},
            {"HW_COMPATIBILITY_ID", 3},
            {"SW_COMPATIBILITY_ID", 4},
            {"TYPE_ID", 5},
            {"CUSTOM", 1},
            {"VALID", 1},
            {"ACTIVE", 1},
            {"CHECKSUM_CRC32", 4294967295u},
            {"VERSION", "23.2a12"},
            {"NAME", "UserFpga"},
            {"VERSION_HISTORY", "23.1, 23.2a1"}};
}

TEST_F(ElementReader, TakesTheBoardsParameters)
{
    ASSERT_EQ(read({item("NETWORK", {}, {board("ION[3]", fullBoard(), {updateElement(2, fullElement())})})}), 1);
    const Element& record = element();
    EXPECT_EQ(str(record.boardAddress.toString()), "/ROOT/NETWORK/ION[3]");
    EXPECT_EQ(str(record.boardType), "T100");
    EXPECT_EQ(str(record.variant), "V2");
    EXPECT_EQ(record.productId, 11u);
    EXPECT_EQ(record.serialNumber, 16777232u);
    EXPECT_EQ(record.slotCount, 2u);
    EXPECT_EQ(record.slot, 5u);
    EXPECT_EQ(str(record.boardName), "Processor board (V2)");
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(ElementReader, TakesTheBoardsParametersForEachElementOfTheBoard)
{
    ASSERT_EQ(read({board("ION[3]", fullBoard(), {named(1, "A"), named(2, "B")}), board("ION[4]", {}, {named(1, "C")}),
                    board("ION[5]", {{"PRODUCT/BOARD_TYPE", "T5"}}, {named(1, "D"), named(2, "E")})}),
              1);
    for (const std::size_t position : {0, 1}) {
        const Element& record = element(position);
        EXPECT_EQ(str(record.boardAddress.toString()), "/ROOT/ION[3]");
        EXPECT_EQ(str(record.boardType), "T100");
        EXPECT_EQ(str(record.variant), "V2");
        EXPECT_EQ(record.productId, 11u);
        EXPECT_EQ(record.serialNumber, 16777232u);
        EXPECT_EQ(record.slotCount, 2u);
        EXPECT_EQ(record.slot, 5u);
        EXPECT_EQ(str(record.boardName), "Processor board (V2)");
    }
    EXPECT_EQ(str(element(2).boardAddress.toString()), "/ROOT/ION[4]");
    EXPECT_EQ(str(element(2).boardType), "");
    EXPECT_EQ(str(element(3).boardType), "T5");
    EXPECT_EQ(str(element(4).boardType), "T5");
    EXPECT_EQ(element(4).productId, 0u);
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(ElementReader, TellsWhatIsWrongWithABoardForEachOfItsElements)
{
    ASSERT_EQ(read({board("ION[3]", {{"PRODUCT/ID", "eleven"}}, {named(1, "A"), named(2, "B"), named(3, "C")})}), 1);
    EXPECT_EQ(errors.count(), 3u);
}

TEST_F(ElementReader, TakesTheElementsParameters)
{
    ASSERT_EQ(read({board("ION[3]", fullBoard(), {updateElement(2, fullElement())})}), 1);
    const Element& record = element();
    EXPECT_EQ(str(record.address.toString()), "/ROOT/ION[3]/UPDATE_INFO/UPDATE_ELEMENT[2]");
    EXPECT_FALSE(record.isFileSystemElement);
    EXPECT_EQ(record.id, 42u);
    EXPECT_EQ(str(record.location), "/mnt/data/app.bin");
    EXPECT_EQ(record.hwCompatibilityId, 3u);
    EXPECT_EQ(record.swCompatibilityId, 4u);
    EXPECT_EQ(record.typeId, 5u);
    EXPECT_EQ(record.custom, 1u);
    EXPECT_FALSE(record.configuration);
    EXPECT_TRUE(record.valid);
    EXPECT_TRUE(record.active);
    EXPECT_TRUE(record.hasChecksum);
    EXPECT_EQ(record.checksumCrc32, 4294967295u);
    EXPECT_EQ(str(record.version.getAsString()), "23.2a12");
    EXPECT_EQ(str(record.name), "UserFpga");
    EXPECT_EQ(str(record.versionHistory), "23.1, 23.2a1");
    EXPECT_EQ(str(record.displayType), "FPGA");
    EXPECT_EQ(str(record.displayName), "Processor board (V2), SN 16(1), FPGA");
}

TEST_F(ElementReader, LeavesWhatTheAssignmentAndTheOperationWriteAtItsInitialValue)
{
    ASSERT_EQ(read({board("ION", fullBoard(), {updateElement(1, fullElement())})}), 1);
    EXPECT_EQ(element().updateFileIndex, -1);
    EXPECT_EQ(element().phase, 0u);
    EXPECT_FALSE(element().notRequired);
    EXPECT_EQ(element().updateState, ZoNUpdateInventory::NOTHING_TO_DO);
    EXPECT_EQ(element().statusErrorCount, 0u);
}

TEST_F(ElementReader, MissingParametersLeaveTheInitialValuesWithoutAnError)
{
    ASSERT_EQ(read({board("ION", {}, {item("UPDATE_ELEMENT[1]", {{"CONFIGURATION", 0}})})}), 1);
    const Element& record = element();
    EXPECT_TRUE(record.boardType.isEmpty());
    EXPECT_TRUE(record.variant.isEmpty());
    EXPECT_TRUE(record.boardName.isEmpty());
    EXPECT_EQ(record.productId, 0u);
    EXPECT_EQ(record.serialNumber, 0u);
    EXPECT_EQ(record.slotCount, 0u);
    EXPECT_EQ(record.id, 0u);
    EXPECT_TRUE(record.location.isEmpty());
    EXPECT_EQ(record.custom, 0u);
    EXPECT_FALSE(record.valid);
    EXPECT_FALSE(record.active);
    EXPECT_FALSE(record.hasChecksum);
    EXPECT_EQ(record.checksumCrc32, 0u);
    EXPECT_EQ(record.version.getAsULong64(), 0u);
    EXPECT_EQ(str(record.name), "Update Element");
    EXPECT_TRUE(record.versionHistory.isEmpty());
    EXPECT_EQ(str(record.displayName), ", Update Element");
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(ElementReader, ReadsTheSlotOnlyOfABoardThatTakesOne)
{
    ASSERT_EQ(
        read({board("ION", {{"SLOT", 5}}, {named(1, "no count")}),
              board("ION[2]", {{"PRODUCT/SLOT_COUNT", 0}, {"SLOT", 5}}, {named(1, "count 0")}),
              board("ION[3]", {{"PRODUCT/SLOT_COUNT", 1}, {"SLOT", 5}}, {named(1, "count 1")}),
              board("ION[4]", {{"PRODUCT/SLOT_COUNT", 1}}, {named(1, "no slot")}),
              board("ION[5]", {{"PRODUCT/SLOT_COUNT", 1}, {"PRODUCT/SLOT", 5}}, {named(1, "slot of the product")})}),
        1);
    EXPECT_EQ(element(0).slot, 0u);
    EXPECT_EQ(element(1).slot, 0u);
    EXPECT_EQ(element(2).slot, 5u);
    EXPECT_EQ(element(3).slot, 0u);
    EXPECT_EQ(element(4).slot, 0u);
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(ElementReader, NamesABoardWithoutANameAfterItsTypeAndVariant)
{
    ASSERT_EQ(read({board("ION", {{"PRODUCT/BOARD_TYPE", "X"}, {"PRODUCT/VARIANT", "Y"}}, {named(1, "A")}),
                    board("ION[2]", {{"PRODUCT/BOARD_TYPE", "X"}}, {named(1, "A")}),
                    board("ION[3]", {{"PRODUCT/BOARD_TYPE", "X"}, {"PRODUCT/VARIANT", ""}}, {named(1, "A")}),
                    board("ION[4]", {{"PRODUCT/BOARD_TYPE", "X"}, {"PRODUCT/NAME", ""}}, {named(1, "A")})}),
              1);
    EXPECT_EQ(str(element(0).boardName), "X (Y)");
    EXPECT_EQ(str(element(1).boardName), "X");
    EXPECT_EQ(str(element(2).boardName), "X");
    EXPECT_EQ(str(element(3).boardName), "");
    EXPECT_EQ(str(element(3).displayName), "X, A");
}

TEST_F(ElementReader, AnElementWithAnEmptyNameIsCalledUpdateElement)
{
    ASSERT_EQ(read({board("ION", {{"PRODUCT/BOARD_TYPE", "X"}}, {named(1, "")})}), 1);
    EXPECT_EQ(str(element().name), "Update Element");
    EXPECT_EQ(str(element().displayType), "Update Element");
    EXPECT_EQ(str(element().displayName), "X, Update Element");
}

TEST_F(ElementReader, OnlyTheValueOneMeansValidAndActive)
{
    ASSERT_EQ(
        read({board("ION", {},
                    {named(1, "A", {{"VALID", 2}, {"ACTIVE", 255}}), named(2, "B", {{"VALID", 0}, {"ACTIVE", 0}})})}),
        1);
    EXPECT_FALSE(element(0).valid);
    EXPECT_FALSE(element(0).active);
    EXPECT_FALSE(element(1).valid);
    EXPECT_FALSE(element(1).active);
}

TEST_F(ElementReader, ReadsCustomValidAndActiveAsEightBits)
{
    ASSERT_EQ(read({board("ION", {}, {named(1, "A", {{"CUSTOM", 256}, {"VALID", 257}, {"ACTIVE", 257}})})}), 1);
    EXPECT_EQ(element().custom, 0u);
    EXPECT_FALSE(element().valid);
    EXPECT_FALSE(element().active);
    EXPECT_EQ(errorTexts(), (Texts{"Parameter CUSTOM of /ROOT/ION/UPDATE_INFO/UPDATE_ELEMENT has another type.",
                                   "Parameter VALID of /ROOT/ION/UPDATE_INFO/UPDATE_ELEMENT has another type.",
                                   "Parameter ACTIVE of /ROOT/ION/UPDATE_INFO/UPDATE_ELEMENT has another type."}));
}

TEST_F(ElementReader, AChecksumOfZeroIsAChecksum)
{
    ASSERT_EQ(read({board("ION", {}, {named(1, "A", {{"CHECKSUM_CRC32", 0}})})}), 1);
    EXPECT_TRUE(element().hasChecksum);
    EXPECT_EQ(element().checksumCrc32, 0u);
}

TEST_F(ElementReader, AVersionThatIsNoneIsEmptyWithoutAnError)
{
    ASSERT_EQ(read({board("ION", {}, {named(1, "A", {{"VERSION", "new"}})})}), 1);
    EXPECT_EQ(element().version.getAsULong64(), 0u);
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(ElementReader, AFileSystemElementIsMarked)
{
    ASSERT_EQ(read({board("CN", {}, {fileElement(2, {{"LOCATION", "/data/a.bin"}, {"NAME", "File"}})})}), 1);
    EXPECT_TRUE(element().isFileSystemElement);
    EXPECT_EQ(str(element().location), "/data/a.bin");
    EXPECT_EQ(str(element().address.toString()), "/ROOT/CN/UPDATE_INFO/FILESYSTEM_ELEMENT[2]");
}

TEST_F(ElementReader, CustomElementsStartDisabledOnRequest)
{
    options.disableCustomElements = true;
    ASSERT_EQ(
        read({board("ION", {}, {named(1, "A", {{"CUSTOM", 0}}), named(2, "B", {{"CUSTOM", 200}}), named(3, "C")})}), 1);
    EXPECT_FALSE(element(0).disabled);
    EXPECT_TRUE(element(1).disabled);
    EXPECT_FALSE(element(2).disabled);
    EXPECT_EQ(element(1).custom, 200u);
}

TEST_F(ElementReader, CustomElementsStartEnabledOtherwise)
{
    ASSERT_EQ(read({board("ION", {}, {named(1, "A", {{"CUSTOM", 1}})})}), 1);
    EXPECT_EQ(element().custom, 1u);
    EXPECT_FALSE(element().disabled);
}

TEST_F(ElementReader, EveryElementHasErrorListsOfItsOwn)
{
    ASSERT_EQ(read({board("ION", {}, {named(1, "A"), named(2, "B")})}), 1);
    const std::vector<const ZoCErrorList*> lists = {element(0).statusErrorList.get(), element(0).resultErrorList.get(),
                                                    element(1).statusErrorList.get(), element(1).resultErrorList.get()};
    for (std::size_t i = 0; i < lists.size(); ++i) {
        ASSERT_NE(lists[i], nullptr);
        EXPECT_EQ(lists[i]->getErrorCount(), 0u);
        for (std::size_t j = 0; j < i; ++j) {
            EXPECT_NE(lists[i], lists[j]);
        }
    }
}

TEST_F(ElementReader, AReadErrorStopsNothing)
{
    ordered_json document = target({board("ION", {{"PRODUCT/BOARD_TYPE", 7}, {"PRODUCT/ID", "eight"}},
                                          {named(1, "A"), named(2, "B", {{"VERSION", 5}})})});
    ASSERT_EQ(readTarget(document), 1);
    EXPECT_EQ(names(), (Texts{"A", "B"}));
    EXPECT_TRUE(element(0).boardType.isEmpty());
    EXPECT_EQ(element(0).productId, 0u);
    EXPECT_EQ(element(1).version.getAsULong64(), 0u);
    EXPECT_EQ(errorTexts(), (Texts{"Parameter PRODUCT/BOARD_TYPE of /ROOT/ION has another type.",
                                   "Parameter PRODUCT/ID of /ROOT/ION has another type.",
                                   "Parameter PRODUCT/BOARD_TYPE of /ROOT/ION has another type.",
                                   "Parameter PRODUCT/ID of /ROOT/ION has another type.",
                                   "Parameter VERSION of /ROOT/ION/UPDATE_INFO/UPDATE_ELEMENT[2] has another type."}));
}

TEST_F(ElementReader, ReadsInAFixedOrderSoThatErrorsAreReportedInIt)
{
    ordered_json boardParameters = fullBoard();
    boardParameters["PRODUCT/UNITNAME"] = "Box";
    boardParameters["UNITNAME"] = "Box 1";
    boardParameters["RACKNAME"] = "Rack 1";
    ordered_json document = target({board("ION", boardParameters, {updateElement(1, fullElement())})});
    ordered_json& values = document["script"]["values"];
    for (const char* name : {"PRODUCT/BOARD_TYPE", "PRODUCT/VARIANT", "PRODUCT/ID", "PRODUCT/SERIAL_NUMBER", "SLOT",
                             "PRODUCT/NAME", "PRODUCT/UNITNAME", "UNITNAME", "RACKNAME"}) {
        values["/ROOT/ION:" + std::string(name)] = {{{"code", 1}, {"text", "board " + std::string(name)}}};
    }
    for (const char* name : {"CONFIGURATION", "ID", "LOCATION", "HW_COMPATIBILITY_ID", "SW_COMPATIBILITY_ID", "TYPE_ID",
                             "CUSTOM", "VALID", "ACTIVE", "CHECKSUM_CRC32", "VERSION", "NAME", "VERSION_HISTORY"}) {
        values["/ROOT/ION/UPDATE_INFO/UPDATE_ELEMENT:" + std::string(name)] = {{{"code", 2}, {"text", name}}};
    }

    ASSERT_EQ(readTarget(document), 1);
    EXPECT_EQ(errorTexts(), (Texts{"CONFIGURATION",
                                   "board PRODUCT/BOARD_TYPE",
                                   "board PRODUCT/VARIANT",
                                   "board PRODUCT/ID",
                                   "board PRODUCT/SERIAL_NUMBER",
                                   "board SLOT",
                                   "board PRODUCT/NAME",
                                   "board PRODUCT/UNITNAME",
                                   "board UNITNAME",
                                   "board RACKNAME",
                                   "ID",
                                   "LOCATION",
                                   "HW_COMPATIBILITY_ID",
                                   "SW_COMPATIBILITY_ID",
                                   "TYPE_ID",
                                   "CUSTOM",
                                   "VALID",
                                   "ACTIVE",
                                   "CHECKSUM_CRC32",
                                   "VERSION",
                                   "NAME",
                                   "VERSION_HISTORY"}));
    EXPECT_TRUE(element().hasChecksum);
    EXPECT_EQ(str(element().name), "Update Element");
}

}  // namespace
