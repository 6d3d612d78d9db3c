// The record of an inventory: which items and parameters it has, and what it leaves out.
#include <gmock/gmock.h>

#include <memory>

#include "inventory/InventoryRecord.h"
#include "libZoInventoryTree/ZoNInventoryIDs.h"
#include "simulation/libZoInventoryTree/TreeItem.h"

using namespace ZoNInventoryIDs;
using testing::ElementsAre;
using testing::IsEmpty;
using TrellanSimulation::TreeItem;
using ZoNUpdateInventory::InventoryRecord;

namespace {

using Lines = std::vector<std::string>;

// A kind that a later release of the platform may have.
const ZoCInventoryAddress unknownKind(60'000);

// Each item with its level: "2 UPDATE_ELEMENT ID NAME".
Lines itemsOf(const InventoryRecord& record)
{
    Lines lines;
    for (std::size_t i = 0; i < record.itemCount(); ++i) {
        const auto item = record.item(i);
        std::string& line = lines.emplace_back(std::to_string(item.level) + " " + item.id);
        for (std::size_t j = 0; j < item.parameterCount; ++j) {
            line += std::string(" ") + record.parameter(i, j).address;
        }
    }
    return lines;
}

Lines omissionsOf(const InventoryRecord& record)
{
    Lines lines;
    for (const auto& omission : record.omissions()) {
        lines.push_back(omission.item + ":" + omission.parameter + " " + omission.reason);
    }
    return lines;
}

void addAll(TreeItem& item)
{
    for (const auto& address : {PRODUCT / BOARD_TYPE, PRODUCT / UNITNAME, RACKNAME, NAME, FIRMWARE / VERSION}) {
        item.setParameter(address, std::string("text"));
    }
    for (const auto& address : {SLOT, ID, ACTIVE, MIN_HW_COMPATIBILITY_ID}) {
        item.setParameter(address, std::uint64_t{1});
    }
}

}  // namespace

TEST(InventoryRecords, HaveTheParametersThatAreReadOfAnItemWhereItStands)
{
    TreeItem root(ROOT);
    TreeItem& board = root.addItem(CN[2]);
    addAll(board);
    TreeItem& info = board.addItem(UPDATE_INFO);
    addAll(info.addItem(UPDATE_ELEMENT[3]));
    addAll(info.addItem(HCN));
    EXPECT_THAT(itemsOf(InventoryRecord(root)),
                ElementsAre("0 ROOT", "1 CN[2] PRODUCT/BOARD_TYPE SLOT PRODUCT/UNITNAME RACKNAME", "2 UPDATE_INFO",
                            "3 UPDATE_ELEMENT[3] PRODUCT/UNITNAME RACKNAME ID NAME ACTIVE",
                            "3 HCN PRODUCT/BOARD_TYPE SLOT PRODUCT/UNITNAME RACKNAME ID NAME ACTIVE"));
}

TEST(InventoryRecords, HaveNothingBelowItemsThatTheSearchPassesOver)
{
    TreeItem root(ROOT);
    root.addItem(HCN);
    root.addItem(PRODUCT).addItem(HCN);
    root.addItem(UPDATE_ELEMENT).addItem(HCN);
    EXPECT_THAT(itemsOf(InventoryRecord(root)), ElementsAre("0 ROOT", "1 HCN", "1 UPDATE_ELEMENT"));
}

TEST(InventoryRecords, HaveItemsThatTheQuestionForTheRebootSupportLooksAt)
{
    TreeItem root(FIRMWARE);
    root.addItem(PRODUCT).addItem(HCN);
    TreeItem& info = root.addItem(HCN).addItem(UPDATE_INFO);
    info.addItem(VERSION_HISTORY);
    EXPECT_THAT(itemsOf(InventoryRecord(root)),
                ElementsAre("0 FIRMWARE", "1 PRODUCT", "1 HCN", "2 UPDATE_INFO", "3 VERSION_HISTORY"));
}

TEST(InventoryRecords, PassOverItemsOfUnknownKindsThatNothingLooksAt)
{
    TreeItem root(ROOT);
    root.addItem(HCN).addItem(unknownKind).addItem(UPDATE_INFO);
    root.addItem(unknownKind);
    const InventoryRecord record(root);
    EXPECT_THAT(itemsOf(record), ElementsAre("0 ROOT", "1 HCN"));
    EXPECT_THAT(omissionsOf(record), IsEmpty());
}

TEST(InventoryRecords, NameItemsOfUnknownKindsThatTheQuestionForTheRebootSupportLooksAt)
{
    TreeItem root(ROOT);
    root.addItem(unknownKind[2]);
    root.addItem(HCN).addItem(UPDATE_INFO).addItem(unknownKind);
    const InventoryRecord record(root);
    EXPECT_THAT(itemsOf(record), ElementsAre("0 ROOT", "1 HCN", "2 UPDATE_INFO"));
    EXPECT_THAT(omissionsOf(record), ElementsAre("/ROOT/?[2]: an item of a kind without a name",
                                                 "/ROOT/HCN/UPDATE_INFO/?: an item of a kind without a name"));
}

TEST(InventoryRecords, AreEmptyOfATreeOfAnUnknownKind)
{
    const InventoryRecord record((TreeItem(unknownKind)));
    EXPECT_THAT(itemsOf(record), IsEmpty());
    EXPECT_THAT(omissionsOf(record), ElementsAre("/?: an item of a kind without a name"));
}

TEST(InventoryRecords, HaveValuesAsTheyAreReadAndNameThoseThatCannotBe)
{
    TreeItem root(UPDATE_ELEMENT);
    root.setParameter(NAME, std::string("a\0\xff", 3));
    root.setParameter(ID, std::uint64_t{4294967295});
    root.setParameter(VERSION, std::string("07.1.0b2"));
    root.setParameter(VALID, std::uint64_t{256});
    root.setParameter(CHECKSUM_CRC32, std::uint64_t{4294967296});
    const InventoryRecord record(root);
    ASSERT_THAT(itemsOf(record), ElementsAre("0 UPDATE_ELEMENT ID NAME VERSION"));
    EXPECT_FALSE(record.parameter(0, 0).isText);
    EXPECT_EQ(record.parameter(0, 0).number, 4294967295u);
    EXPECT_TRUE(record.parameter(0, 1).isText);
    EXPECT_EQ(record.parameter(0, 1).text, std::string("a\0\xff", 3));
    EXPECT_EQ(record.parameter(0, 2).text, "7.1b2");
    EXPECT_THAT(
        omissionsOf(record),
        ElementsAre("/UPDATE_ELEMENT:CHECKSUM_CRC32 Parameter CHECKSUM_CRC32 of /UPDATE_ELEMENT has another type.",
                    "/UPDATE_ELEMENT:VALID Parameter VALID of /UPDATE_ELEMENT has another type."));
}
