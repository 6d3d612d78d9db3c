// The walk through the inventory tree: where it descends, in which order elements are found, and how they are grouped.
#include <algorithm>
#include <map>
#include <random>

#include "inventory/InventoryFixture.h"
#include "libZoInventoryManagerAP/ZoCInventoryManager.h"
#include "support/PlatformText.h"
#include "support/SimulatedTarget.h"

namespace {

using ElementSearch = InventoryFixture;
using nlohmann::ordered_json;
using Names = std::vector<std::string>;

// Parameters of an item that is a unit of its own.
ordered_json unit(const std::string& name)
{
    return {{"PRODUCT/UNITNAME", name}};
}

// The tree of a target with these items, for the time of a scope.
class ScannedTree {
public:
    ScannedTree(ErrorPool& errors, const std::vector<ordered_json>& items) : device(target(items))
    {
        EXPECT_EQ(ZoCInventoryManager::getInstance()->scan(errors, root, true, nullptr), 0);
    }
    ~ScannedTree() { ZoCInventoryManager::getInstance()->deleteInventoryTree(root); }
    ScannedTree(const ScannedTree&) = delete;
    ScannedTree& operator=(const ScannedTree&) = delete;

    ZoCInventoryItem* root = nullptr;

private:
    SimulatedTarget device;
};

class Descent : public InventoryFixture, public ::testing::WithParamInterface<const char*> {};

TEST_P(Descent, SearchesBelowThisKindOfItem)
{
    ASSERT_EQ(read({board(GetParam(), {}, {named(1, "A")})}), 1);
    EXPECT_EQ(names(), Names{"A"});
}

TEST_P(Descent, SearchesBelowThisKindOfItemWhateverItsIndex)
{
    // Only the UPDATE_INFO with the index 1 is a board's own.
    ASSERT_EQ(read({item("NETC", {}, {board(std::string(GetParam()) + "[12]", {}, {named(1, "A")})})}), 1);
    EXPECT_EQ(names(), Names{"A"});
}

INSTANTIATE_TEST_SUITE_P(Kinds, Descent,
                         ::testing::Values("ROOT", "HCN", "CN", "NETC", "BACKPLANE", "NETWORK", "IOROUTER", "ION",
                                           "IOMODULE", "PIGGYBACK_MODULE", "SUB_BOARDS", "FBMODULE", "UPDATE_INFO"),
                         [](const auto& info) { return std::string(info.param); });

class Hidden : public InventoryFixture, public ::testing::WithParamInterface<const char*> {};

TEST_P(Hidden, HidesItsSubtree)
{
    ASSERT_EQ(read({item(GetParam(), {}, {board("NETC", {}, {named(1, "A")})}), board("CN", {}, {named(1, "B")})}), 1);
    EXPECT_EQ(names(), Names{"B"});
}

INSTANTIATE_TEST_SUITE_P(Kinds, Hidden, ::testing::Values("PRODUCT", "FIRMWARE", "SLOT", "VERSION"),
                         [](const auto& info) { return std::string(info.param); });

TEST_F(ElementSearch, DoesNotSearchBelowAnUpdateElement)
{
    ordered_json outer = named(1, "A");
    outer["items"] = ordered_json::array({board("NETC", {}, {named(1, "B")})});
    ASSERT_EQ(read({board("NETC", {}, {outer})}), 1);
    EXPECT_EQ(names(), Names{"A"});
}

TEST_F(ElementSearch, FindsElementsBeforeThoseOfTheItemsBelow)
{
    ASSERT_EQ(read({board("HCN", {}, {named(1, "hcn")},
                          {board("CN", {}, {named(1, "cn")}, {board("PIGGYBACK_MODULE", {}, {named(1, "piggyback")})}),
                           board("IOMODULE", {}, {named(1, "module")})}),
                    board("NETC", {}, {named(1, "netc")})}),
              1);
    EXPECT_EQ(names(), (Names{"hcn", "cn", "piggyback", "module", "netc"}));
    EXPECT_EQ(indices(), (std::vector<unsigned>{0, 1, 2, 3, 4}));
}

TEST_F(ElementSearch, SearchesABoardsOwnUpdateInfoFirstWhereverItStandsAndOnlyOnce)
{
    ASSERT_EQ(read({item("HCN", {},
                         {board("IOMODULE", {}, {named(1, "module")}),
                          item("UPDATE_INFO", {}, {named(1, "first"), named(2, "second")}),
                          board("FBMODULE", {}, {named(1, "function block")})})}),
              1);
    EXPECT_EQ(names(), (Names{"first", "second", "module", "function block"}));
}

TEST_F(ElementSearch, SearchesEveryUpdateInfoOfABoard)
{
    ASSERT_EQ(read({item("HCN", {},
                         {item("UPDATE_INFO", {}, {named(1, "A")}),
                          item("UPDATE_INFO", {}, {named(1, "B"), named(2, "C")})})}),
              1);
    EXPECT_EQ(names(), (Names{"A", "B", "C"}));
}

TEST_F(ElementSearch, FindsUpdateAndFileSystemElementsInTheOrderOfTheTree)
{
    ASSERT_EQ(read({board("HCN", {}, {named(2, "B"), fileElement(1, {{"NAME", "file"}}), named(1, "A")})}), 1);
    EXPECT_EQ(names(), (Names{"B", "file", "A"}));
    EXPECT_FALSE(element(0).isFileSystemElement);
    EXPECT_TRUE(element(1).isFileSystemElement);
}

TEST_F(ElementSearch, KeepsTheElementsOfAUnitTogetherWhenItsBoardsLieApart)
{
    ASSERT_EQ(read({board("HCN", unit("Box"), {named(1, "box 1"), named(2, "box 2")},
                          {board("ION", unit("Rack"), {named(1, "rack 1")}), board("IOMODULE", {}, {named(1, "box 3")}),
                           board("ION[2]", unit("Shelf"), {named(1, "shelf 1")}),
                           board("FBMODULE", {}, {named(1, "box 4")})})}),
              1);
    EXPECT_EQ(names(), (Names{"box 1", "box 2", "box 3", "box 4", "rack 1", "shelf 1"}));
    EXPECT_EQ(indices(), (std::vector<unsigned>{0, 1, 2, 3, 4, 5}));
}

TEST_F(ElementSearch, KeepsElementsWithoutAUnitTogetherToo)
{
    ASSERT_EQ(read({board("NETC", {}, {named(1, "none 1")}), board("NETC[2]", unit("Box"), {named(1, "box")}),
                    board("NETC[3]", {}, {named(1, "none 2")})}),
              1);
    EXPECT_EQ(names(), (Names{"none 1", "none 2", "box"}));
    EXPECT_EQ(indices(), (std::vector<unsigned>{0, 1, 2}));
    EXPECT_EQ(element(0).unitItem, nullptr);
    EXPECT_EQ(element(1).unitItem, nullptr);
    EXPECT_NE(element(2).unitItem, nullptr);
}

TEST_F(ElementSearch, TellsUnitsApartByTheirItemsNotByTheirNames)
{
    ASSERT_EQ(read({board("NETC", unit("Box"), {named(1, "A")}, {board("ION", unit("Box"), {named(1, "B")})}),
                    board("CN", unit("Box"), {named(1, "C")})}),
              1);
    EXPECT_EQ(names(), (Names{"A", "B", "C"}));
    EXPECT_NE(element(0).unitItem, element(1).unitItem);
    EXPECT_NE(element(1).unitItem, element(2).unitItem);
}

TEST_F(ElementSearch, RecordsStayWhereTheyAreWhenOthersAreInserted)
{
    ASSERT_EQ(read({board("NETC", {}, {named(1, "none 1")}), board("NETC[2]", unit("Box"), {named(1, "box")})}), 1);
    const Element* const first = &element(0);
    const Element* const second = &element(1);

    const ScannedTree more(errors, {board("NETC[3]", {}, {named(1, "none 2"), named(2, "none 3")})});
    inventory().searchUpdateElements(errors, more.root, nullptr, false);

    EXPECT_EQ(names(), (Names{"none 1", "none 2", "none 3", "box"}));
    EXPECT_EQ(indices(), (std::vector<unsigned>{0, 1, 2, 3}));
    EXPECT_EQ(&element(0), first);
    EXPECT_EQ(&element(3), second);
}

TEST_F(ElementSearch, PutsElementsBehindThoseThatOthersHaveAppendedToTheirUnit)
{
    ASSERT_EQ(read({board("NETC", {}, {named(1, "none 1")})}), 1);
    inventory().getUpdateElementList().emplace_back().name = "file";
    const ScannedTree more(errors, {board("NETC", {}, {named(1, "none 2"), named(2, "none 3")})});
    inventory().searchUpdateElements(errors, more.root, nullptr, false);
    EXPECT_EQ(names(), (Names{"none 1", "file", "none 2", "none 3"}));
    EXPECT_EQ(indices(), (std::vector<unsigned>{0, 1, 2, 3}));
}

TEST_F(ElementSearch, PutsElementsIntoAUnitThatOnlyOthersHaveAppended)
{
    const ScannedTree tree(
        errors, {board("NETC", unit("Box"), {named(1, "box")}), board("NETC[2]", unit("Rack"), {named(1, "rack")}),
                 board("NETC[3]", {}, {named(1, "none")})});
    ASSERT_NE(tree.root, nullptr);
    ZoCInventoryItem* const box = tree.root->getFirstSubItem();
    inventory().searchUpdateElements(errors, box, nullptr, true);
    inventory().getUpdateElementList().emplace_back().name = "file";
    inventory().searchUpdateElements(errors, box->getNext(), nullptr, false);
    inventory().searchUpdateElements(errors, box->getNext()->getNext(), nullptr, false);
    EXPECT_EQ(names(), (Names{"box", "file", "none", "rack"}));
    EXPECT_EQ(indices(), (std::vector<unsigned>{0, 1, 2, 3}));
}

TEST_F(ElementSearch, PutsElementsBehindTheFirstOfSeveralRunsOfTheirUnit)
{
    ASSERT_EQ(read({board("NETC", {}, {named(1, "none 1")}), board("NETC[2]", unit("Box"), {named(1, "box")})}), 1);
    inventory().getUpdateElementList().emplace_back().name = "file";
    const ScannedTree more(errors, {board("NETC", {}, {named(1, "none 2")})});
    inventory().searchUpdateElements(errors, more.root, nullptr, false);
    EXPECT_EQ(names(), (Names{"none 1", "none 2", "box", "file"}));
}

// A random tree of boards. Some are units of their own; every other board belongs to the unit of its parent. Every
// element carries the number of its unit (0: none) in NAME and its number in the order of the walk in ID.
class RandomTree {
public:
    explicit RandomTree(unsigned seed) : random(seed) {}

    ordered_json make(unsigned boards)
    {
        boardsLeft = boards;
        std::vector<ordered_json> items;
        while (boardsLeft > 0) {
            items.push_back(makeBoard(0, 0));
        }
        return target(items);
    }

    // For each unit, in the order of their first elements, the numbers of its elements.
    const std::vector<std::pair<unsigned, std::vector<unsigned>>>& expected() const { return units; }

private:
    ordered_json makeBoard(unsigned depth, unsigned unitNumber)
    {
        --boardsLeft;
        ordered_json parameters = ordered_json::object();
        if (random() % 12 == 0) {
            unitNumber = ++unitCount;
            parameters["PRODUCT/UNITNAME"] = "Unit " + std::to_string(unitNumber);
        }
        std::vector<ordered_json> elements;
        for (unsigned count = random() % 4; count > 0; --count) {
            elements.push_back(makeElement(static_cast<unsigned>(elements.size()) + 1, unitNumber));
        }
        std::vector<ordered_json> items;
        for (unsigned count = depth < 6 ? random() % 5 : 0; count > 0 && boardsLeft > 0; --count) {
            items.push_back(makeBoard(depth + 1, unitNumber));
        }
        return board("IOMODULE[" + std::to_string(++boardCount) + "]", parameters, elements, items);
    }

    ordered_json makeElement(unsigned index, unsigned unitNumber)
    {
        const unsigned number = ++elementCount;
        auto known = place.try_emplace(unitNumber, units.size());
        if (known.second) {
            units.push_back({unitNumber, {}});
        }
        units[known.first->second].second.push_back(number);
        return updateElement(index, {{"NAME", std::to_string(unitNumber)}, {"ID", number}});
    }

    std::mt19937 random;
    unsigned boardsLeft = 0;
    unsigned boardCount = 0;
    unsigned unitCount = 0;
    unsigned elementCount = 0;
    std::map<unsigned, std::size_t> place;
    std::vector<std::pair<unsigned, std::vector<unsigned>>> units;
};

class RandomTrees : public InventoryFixture, public ::testing::WithParamInterface<unsigned> {};

TEST_P(RandomTrees, GroupsManyBoardsByUnitsAndNumbersTheirElementsConsecutively)
{
    RandomTree tree(GetParam());
    ASSERT_EQ(readTarget(tree.make(400)), 1);

    std::vector<std::pair<std::string, unsigned>> expected;
    for (const auto& [unitNumber, numbers] : tree.expected()) {
        for (unsigned number : numbers) {
            expected.emplace_back(std::to_string(unitNumber), number);
        }
    }
    ASSERT_GT(expected.size(), 300u);
    ASSERT_GT(tree.expected().size(), 5u);

    std::vector<std::pair<std::string, unsigned>> found;
    unsigned position = 0;
    for (const Element& element : inventory().getUpdateElementList()) {
        EXPECT_EQ(element.index, position++);
        found.emplace_back(str(element.name), element.id);
    }
    EXPECT_EQ(found, expected);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomTrees, ::testing::Range(1u, 9u));

}  // namespace
