// Update elements that stand where none can be: each is warned of and left out, and the search goes on.
#include "inventory/InventoryFixture.h"

namespace {

using ElementPlacement = InventoryFixture;
using nlohmann::ordered_json;

TEST_F(ElementPlacement, WarnsOfAnElementDirectlyUnderABoard)
{
    ASSERT_EQ(read({item("NETC", {}, {named(3, "stray"), item("UPDATE_INFO", {}, {named(1, "A")})})}), 1);
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
    EXPECT_EQ(printed(), "WARNING: /ROOT/NETC/UPDATE_ELEMENT[3] has no UPDATE_INFO parent item!\n");
}

TEST_F(ElementPlacement, WarnsOfAFileSystemElementDirectlyUnderABoard)
{
    ASSERT_EQ(read({item("CN", {}, {fileElement(1, {{"NAME", "stray"}})})}), 1);
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(printed(), "WARNING: /ROOT/CN/FILESYSTEM_ELEMENT has no UPDATE_INFO parent item!\n");
}

TEST_F(ElementPlacement, WarnsOfAnElementUnderAnUpdateInfoWithAnotherIndex)
{
    ASSERT_EQ(read({item("NETC", {}, {item("UPDATE_INFO[2]", {}, {named(1, "A")})})}), 1);
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(printed(), "WARNING: /ROOT/NETC/UPDATE_INFO[2]/UPDATE_ELEMENT has no UPDATE_INFO parent item!\n");
}

TEST_F(ElementPlacement, WarnsOfATreeThatIsAnElement)
{
    ordered_json document = target({});
    document["tree"] = named(1, "A");
    ASSERT_EQ(readTarget(document), 1);
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(printed(), "WARNING: /UPDATE_ELEMENT has no UPDATE_INFO parent item!\n");
}

TEST_F(ElementPlacement, WarnsOfAnUpdateInfoWithoutABoard)
{
    ordered_json document = target({});
    document["tree"] = item("UPDATE_INFO", {}, {named(1, "A"), named(2, "B")});
    ASSERT_EQ(readTarget(document), 1);
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(printed(),
              "WARNING: /UPDATE_INFO has no parent item!\n"
              "WARNING: /UPDATE_INFO has no parent item!\n");
}

TEST_F(ElementPlacement, WarnsOfAnElementWithoutConfiguration)
{
    ASSERT_EQ(read({board("NETC", {}, {item("UPDATE_ELEMENT[1]", {{"NAME", "A"}}), named(2, "B")})}), 1);
    EXPECT_EQ(names(), std::vector<std::string>{"B"});
    EXPECT_EQ(printed(), "WARNING: /ROOT/NETC/UPDATE_INFO/UPDATE_ELEMENT has no CONFIGURATION parameter!\n");
}

TEST_F(ElementPlacement, GivesOneWarningForAnElement)
{
    ASSERT_EQ(read({item("NETC", {}, {item("UPDATE_ELEMENT[1]", {{"NAME", "A"}})})}), 1);
    EXPECT_EQ(printed(), "WARNING: /ROOT/NETC/UPDATE_ELEMENT has no UPDATE_INFO parent item!\n");
}

TEST_F(ElementPlacement, WarnsAlsoOfElementsThatAFilterWouldLeaveOut)
{
    options.elementNames = "B";
    ASSERT_EQ(read({board("NETC", {}, {item("UPDATE_ELEMENT[1]", {{"NAME", "A"}})})}), 1);
    EXPECT_EQ(printed(), "WARNING: /ROOT/NETC/UPDATE_INFO/UPDATE_ELEMENT has no CONFIGURATION parameter!\n");
}

TEST_F(ElementPlacement, AddsNoErrors)
{
    ASSERT_EQ(read({item("NETC", {}, {item("UPDATE_ELEMENT[1]", {{"NAME", "A"}})})}), 1);
    EXPECT_EQ(errors.count(), 0u);
}

}  // namespace
