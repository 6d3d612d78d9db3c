// The entries for given elements: which elements share one, and in which order they stand.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tool/documents/NewDescription.h"

using nlohmann::ordered_json;
using testing::ElementsAre;
using TrellanTool::newDescription;
using TrellanTool::newEntries;
using TrellanTool::WantedElement;

namespace {

// Element 1 of a board of type T below the HCN.
WantedElement wanted()
{
    WantedElement element;
    element.keys = {};
    element.keys.boardType = "T";
    element.keys.id = 1;
    element.name = "Firmware";
    element.boardAddress = "/ROOT/HCN/IOMODULE[2]";
    element.installedVersion = "1.0";
    return element;
}

WantedElement onBoard(const char* variant, std::uint32_t boardId, std::uint32_t hw = 0, std::uint32_t sw = 0)
{
    WantedElement element = wanted();
    element.keys.hasBoardVariant = variant != nullptr;
    element.keys.boardVariant = variant != nullptr ? variant : "";
    element.keys.boardId = boardId;
    element.keys.hwCompatibilityId = hw;
    element.keys.swCompatibilityId = sw;
    return element;
}

WantedElement file(const std::string& path)
{
    WantedElement element = wanted();
    element.keys.isFile = true;
    element.keys.id = 0;
    element.keys.targetPath = path;
    element.name = "Settings";
    return element;
}

WantedElement named(const std::string& boardType, const std::string& name, std::uint32_t id = 1)
{
    WantedElement element = wanted();
    element.keys.boardType = boardType;
    element.keys.id = id;
    element.name = name;
    return element;
}

ordered_json entriesFor(const std::vector<WantedElement>& elements, const std::string& taken = "archive.json")
{
    return newDescription({"archive", "product"}, newEntries(elements), taken)["files"];
}

std::vector<ordered_json> members(const ordered_json& entries, const std::string& name)
{
    std::vector<ordered_json> values;
    for (const ordered_json& entry : entries) {
        values.push_back(entry.value(name, ordered_json("absent")));
    }
    return values;
}

std::vector<std::string> namesOf(const ordered_json& entries)
{
    std::vector<std::string> names;
    for (const ordered_json& entry : entries) {
        names.push_back(entry["name"]);
    }
    return names;
}

}  // namespace

TEST(NewEntries, StateAllKeysOfTheElement)
{
    const ordered_json entries = entriesFor({onBoard("24 V", 3, 4, 5)});
    EXPECT_EQ(entries, ordered_json::parse(R"([{
        "name": "T-Firmware.bin", "sequence": 10, "version": "1.0", "checksumCrc32": 0, "boardType": "T",
        "boardVariant": "24 V", "boardId": 3, "hwCompatibilityId": 4, "swCompatibilityId": 5, "id": 1}])"));
}

TEST(NewEntries, StateAFilesPathAndNoId)
{
    const ordered_json entries = entriesFor({file("config/site.cfg")});
    EXPECT_EQ(entries, ordered_json::parse(R"([{
        "name": "T-site.cfg", "sequence": 10, "version": "1.0", "checksumCrc32": 0, "boardType": "T",
        "boardVariant": null, "boardId": 0, "hwCompatibilityId": 0, "swCompatibilityId": 0,
        "targetPath": "config/site.cfg"}])"));
}

TEST(NewEntries, AreSharedByElementsWithTheSameKeys)
{
    EXPECT_EQ(entriesFor({wanted(), wanted()}).size(), 1u);
    WantedElement another = wanted();
    another.keys.id = 2;
    EXPECT_EQ(entriesFor({wanted(), another}).size(), 2u);
    another = wanted();
    another.keys.boardType = "T2";
    EXPECT_EQ(entriesFor({wanted(), another}).size(), 2u);
    EXPECT_EQ(entriesFor({file("a"), file("b"), file("a")}).size(), 2u);
}

TEST(NewEntries, AreSharedByBoardsThatDifferInOneProperty)
{
    ordered_json entries = entriesFor({onBoard("24 V", 7), onBoard(nullptr, 7), onBoard("48 V", 7)});
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0]["boardVariant"], ordered_json::parse(R"([null, "24 V", "48 V"])"));
    EXPECT_EQ(entries[0]["boardId"], 7);

    entries = entriesFor({onBoard(nullptr, 0, 2), onBoard(nullptr, 0, 1)});
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0]["hwCompatibilityId"], ordered_json::parse("[1, 2]"));
}

TEST(NewEntries, AreSharedByBoardsWithEveryCombinationOfTheirProperties)
{
    const ordered_json entries =
        entriesFor({onBoard("a", 1), onBoard("b", 1), onBoard("a", 2), onBoard("b", 2), onBoard("c", 3)});
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0]["boardVariant"], ordered_json::parse(R"(["a", "b"])"));
    EXPECT_EQ(entries[0]["boardId"], ordered_json::parse("[1, 2]"));
    EXPECT_EQ(entries[1]["boardVariant"], "c");
}

TEST(NewEntries, FitNoCombinationThatNoElementHas)
{
    const ordered_json entries = entriesFor({onBoard("a", 1), onBoard("b", 2)});
    EXPECT_THAT(members(entries, "boardVariant"), ElementsAre("a", "b"));
    EXPECT_THAT(members(entries, "boardId"), ElementsAre(1, 2));
}

TEST(NewEntries, UpdateIoBoardsThenTheComputeNodeThenTheHostCommunicationNode)
{
    WantedElement hcn = named("H", "x");
    hcn.boardAddress = "/ROOT/HCN";
    WantedElement cn = named("C", "x");
    cn.boardAddress = "/ROOT/HCN/CN[2]";
    WantedElement router = named("R", "x");
    router.boardAddress = "/ROOT/HCN/CN/IOMODULE";
    const ordered_json entries = entriesFor({hcn, cn, router});
    EXPECT_THAT(members(entries, "boardType"), ElementsAre("R", "C", "H"));
    EXPECT_THAT(members(entries, "sequence"), ElementsAre(10, 20, 30));

    WantedElement same = hcn;
    same.boardAddress = "/ROOT/HCN/IOMODULE";
    EXPECT_THAT(members(entriesFor({same, hcn}), "sequence"), ElementsAre(30)) << "the last of those that share it";
}

TEST(NewEntries, ForElementsThatTakeAnyPathComeFirstWithAPathThatNoOtherHas)
{
    const ordered_json entries = entriesFor({file("a"), file("*"), file("new-file")});
    EXPECT_THAT(members(entries, "targetPath"), ElementsAre("new-file-2", "a", "new-file"));
}

TEST(NewEntries, StateTheInstalledVersionWhereThereIsOne)
{
    WantedElement unknown = wanted();
    unknown.installedVersion = "";
    WantedElement known = wanted();
    known.installedVersion = "2.1";
    EXPECT_THAT(members(entriesFor({unknown, known, wanted()}), "version"), ElementsAre("2.1"));
    EXPECT_THAT(members(entriesFor({unknown}), "version"), ElementsAre(nullptr));
}

TEST(NewEntries, NameFilesInAWayThatNoTwoDo)
{
    EXPECT_THAT(namesOf(entriesFor({named("A", "x", 1), named("A", "x", 2), named("A", "x-2", 3)})),
                ElementsAre("A-x.bin", "A-x-2.bin", "A-x-2-2.bin"));
    EXPECT_THAT(namesOf(entriesFor({named("A", "x")}, "A-x.bin")), ElementsAre("A-x-2.bin"));
}

TEST(NewEntries, NameFilesAsAnyShellAndFileSystemTakesThem)
{
    EXPECT_THAT(
        namesOf(entriesFor({named("A B", "x/../y $z\n\xC3\xA4"), named("", ""), named("..", std::string("\0", 1))})),
        ElementsAre("A-B-y--z---.bin", "board-.bin", "board..--.bin"));
    EXPECT_THAT(namesOf(entriesFor({file("a/.hidden"), file("b.tmp"), file("c."), file("d.tar.gz"), file("dir/")})),
                ElementsAre("T-.hidden.bin", "T-b.tmp.bin", "T-c..bin", "T-d.tar.gz", "T-.bin"));
    EXPECT_THAT(namesOf(entriesFor({file("e.123456789"), file("f.1234567890")})),
                ElementsAre("T-e.123456789", "T-f.1234567890.bin"));
    const ordered_json entries = entriesFor({named(std::string(300, 'b'), std::string(300, 'n'))});
    EXPECT_EQ(entries[0]["name"], std::string(80, 'b') + "-" + std::string(80, 'n') + ".bin");
}
