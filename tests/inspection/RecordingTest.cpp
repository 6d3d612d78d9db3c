// The inspector's record of the target's inventory.
#include <stdexcept>

#include "inspection/Inspecting.h"

using namespace ZoNTrellanInspector;

namespace {

using RecordedInventory = Inspecting;

}  // namespace

TEST_F(RecordedInventory, IsOfTheTargetAsItIsAndWholeWhateverTheOptionsSelect)
{
    boards = {hcnBoard({installed(1)})};
    options.boardTypes = "another";
    ASSERT_NE(apply(ZoNTrellanUpdater::READ_INVENTORY), 1u);
    EXPECT_EQ(inspector->getElementCount(), 0u);
    ASSERT_TRUE(inspector->recordInventory());
    ASSERT_EQ(inspector->getRecordedItemCount(), 4u);
    const ZoTRecordedItem& item = inspector->getRecordedItem(3);
    EXPECT_EQ(item.level, 3u);
    EXPECT_EQ(item.id, "UPDATE_ELEMENT");
    ASSERT_GT(item.parameterCount, 1u);
    const ZoTRecordedParameter& parameter = inspector->getRecordedParameter(3, 0);
    EXPECT_EQ(parameter.address, "ID");
    EXPECT_FALSE(parameter.isText);
    EXPECT_EQ(parameter.number, 1u);
    EXPECT_EQ(inspector->getElementCount(), 0u);
}

TEST_F(RecordedInventory, TellsWhatItLeavesOut)
{
    boards = {hcnBoard({installed(1, {{"VALID", "yes"}})})};
    ASSERT_NE(apply(ZoNTrellanUpdater::READ_INVENTORY), 1u);
    ASSERT_TRUE(inspector->recordInventory());
    ASSERT_EQ(inspector->getOmissionCount(), 1u);
    const ZoTOmission& omission = inspector->getOmission(0);
    EXPECT_EQ(omission.item, "/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT");
    EXPECT_EQ(omission.parameter, "VALID");
    EXPECT_EQ(omission.reason, "Parameter VALID of /ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT has another type.");
}

TEST_F(RecordedInventory, IsForgottenWhereTheNextScanFails)
{
    script["scan"] = {Json::object(), Json::object(), {{"result", 5}, {"errors", {{{"code", 7}, {"text", "dead"}}}}}};
    boards = {hcnBoard({installed(1)})};
    ASSERT_NE(apply(ZoNTrellanUpdater::READ_INVENTORY), 1u);
    ASSERT_TRUE(inspector->recordInventory());
    EXPECT_EQ(inspector->getScanErrorCount(), 0u);
    EXPECT_FALSE(inspector->recordInventory());
    EXPECT_EQ(inspector->getRecordedItemCount(), 0u);
    ASSERT_EQ(inspector->getScanErrorCount(), 1u);
    EXPECT_EQ(inspector->getScanError(0).code, 7u);
    EXPECT_EQ(inspector->getScanError(0).text, "dead");
    EXPECT_EQ(masterErrors().getErrorCount(), 0u);
}

TEST_F(RecordedInventory, ReleasesTheScannedTree)
{
    boards = {hcnBoard({installed(1)})};
    ASSERT_NE(apply(ZoNTrellanUpdater::READ_INVENTORY), 1u);
    ASSERT_TRUE(inspector->recordInventory());
    std::vector<std::string> calls;
    for (const Json& call : simulated->trace()) {
        calls.push_back(call["call"]);
    }
    EXPECT_THAT(calls, testing::ElementsAre("scan", "deleteInventoryTree", "scan", "deleteInventoryTree"));
}

TEST_F(RecordedInventory, HasNoPositionsBeyondItsEnds)
{
    boards = {hcnBoard({})};
    ASSERT_NE(apply(ZoNTrellanUpdater::READ_INVENTORY), 1u);
    EXPECT_EQ(inspector->getRecordedItemCount(), 0u);
    EXPECT_THROW(inspector->getRecordedItem(0), std::out_of_range);
    ASSERT_TRUE(inspector->recordInventory());
    EXPECT_THROW(inspector->getRecordedItem(inspector->getRecordedItemCount()), std::out_of_range);
    EXPECT_THROW(inspector->getRecordedParameter(0, 0), std::out_of_range);
    EXPECT_THROW(inspector->getRecordedParameter(9, 0), std::out_of_range);
    EXPECT_THROW(inspector->getOmission(0), std::out_of_range);
    EXPECT_THROW(inspector->getScanError(0), std::out_of_range);
}
