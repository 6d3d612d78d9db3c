// Which file each element is given, and the elements made for flash-drive files that no element took.
#include <algorithm>
#include <random>

#include "assignment/AssignmentFixture.h"
#include "simulation/base/Resources.h"

namespace {

using AssignFilesTest = AssignmentFixture;
using nlohmann::ordered_json;
using Indices = std::vector<int>;
using Counts = std::vector<unsigned>;

ordered_json pathEntry(const std::string& targetPath)
{
    return {{"boardType", "T"}, {"targetPath", targetPath}};
}

TEST_F(AssignFilesTest, AnElementTakesTheFirstFileThatFits)
{
    addElement({.id = 2});
    addFileForId(1);
    addFileForId(2);
    addFileForId(2);
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), Indices{1});
    EXPECT_EQ(assignedCounts(), (Counts{0, 1, 0}));
}

TEST_F(AssignFilesTest, TheFirstFileIsTakenHoweverItNamesTheBoard)
{
    addElement({.id = 2});
    addFile(ordered_json::parse(R"({"boards": [{"boardType": ["S", "T"], "id": 2}]})"));
    addFileForId(2);
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), Indices{0});
}

TEST_F(AssignFilesTest, OneFileServesManyElements)
{
    addElement({.id = 1});
    addElement({.id = 1});
    addElement({.id = 2});
    addElement({.id = 1});
    addFileForId(1);
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), (Indices{0, 0, -1, 0}));
    EXPECT_EQ(assignedCounts(), Counts{3});
}

TEST_F(AssignFilesTest, ADisabledElementGetsItsFileToo)
{
    addElement({.id = 1}).disabled = true;
    addFileForId(1);
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), Indices{0});
    EXPECT_EQ(assignedCounts(), Counts{1});
    EXPECT_TRUE(elements().front().disabled);
}

TEST_F(AssignFilesTest, WithoutFilesNoElementGetsOne)
{
    addElement();
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), Indices{-1});
}

TEST_F(AssignFilesTest, WithoutElementsNoFileIsAssigned)
{
    addFileForId(1);
    assignment().makeAssignment();
    EXPECT_EQ(assignedCounts(), Counts{0});
    EXPECT_TRUE(elements().empty());
}

TEST_F(AssignFilesTest, AFileSystemElementTakesTheFileForItsLocation)
{
    addFileElement("/mnt/data/b.bin");
    addFile(pathEntry("/mnt/data/a.bin"));
    addFile(pathEntry("/mnt/data/b.bin"));
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), Indices{1});
    EXPECT_EQ(str(elements().front().location), "/mnt/data/b.bin");
}

TEST_F(AssignFilesTest, AnElementWithAWildcardTakesTheFirstFlashDriveFileAndKeepsItsLocation)
{
    addFileElement("*");
    addFileForId(1);
    addFile(pathEntry("/a"));
    addFile(pathEntry("/b"));
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), Indices{1});
    EXPECT_EQ(str(elements().front().location), "*");
}

TEST_F(AssignFilesTest, ATargetPathOfAnotherFileIsNotCarriedOver)
{
    // The second file states no path for this board: without one it fits the empty location only.
    addFileElement("/b");
    addFile(ordered_json::parse(R"({"boardType": "T", "targetPath": "/b", "hwCompatibilityId": 9})"));
    addFile(ordered_json::parse(R"({"boards": [{"boardType": "T"}, {"boardType": "S", "targetPath": "/s"}]})"));
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), Indices{-1});
}

TEST_F(AssignFilesTest, UnassignedFlashDriveFilesGetNewElementsInFileOrder)
{
    makeTemplate();
    addElement({.id = 1});
    addFile(pathEntry("/mnt/data/app.bin"));
    addFileForId(1);
    addFile(pathEntry("/mnt/data/other.bin"));
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), (Indices{1, 0, 2}));
    EXPECT_EQ(assignedCounts(), (Counts{1, 1, 1}));
    std::vector<std::string> locations;
    std::vector<unsigned> indices;
    for (const Element& element : elements()) {
        locations.push_back(str(element.location));
        indices.push_back(element.index);
    }
    EXPECT_EQ(locations, (std::vector<std::string>{"", "/mnt/data/app.bin", "/mnt/data/other.bin"}));
    EXPECT_EQ(indices, (std::vector<unsigned>{0, 1, 2}));
}

TEST_F(AssignFilesTest, ANewElementTakesItsBoardFromTheTemplate)
{
    makeTemplate({{"PRODUCT/NAME", "Processor board"},
                  {"PRODUCT/SERIAL_NUMBER", 16777232},
                  {"PRODUCT/UNITNAME", "Box"},
                  {"UNITNAME", "Box 1"},
                  {"RACKNAME", "Rack 1"},
                  {"PRODUCT/SLOT_COUNT", 2},
                  {"SLOT", 7}});
    addFile(pathEntry("/mnt/data/app.bin"));
    assignment().makeAssignment();
    ASSERT_EQ(elements().size(), 1u);
    const Element& element = elements().front();
    EXPECT_EQ(str(element.boardAddress.toString()), "/ROOT/HCN");
    EXPECT_EQ(str(element.boardType), "T");
    EXPECT_EQ(str(element.boardName), "Processor board");
    EXPECT_EQ(element.serialNumber, 16777232u);
    EXPECT_EQ(element.slotCount, 2u);
    EXPECT_EQ(element.slot, 7u);
    EXPECT_EQ(str(element.unitProductName), "Box");
    EXPECT_EQ(str(element.unitName), "Box 1");
    EXPECT_EQ(str(element.rackName), "Rack 1");
    EXPECT_TRUE(element.isFileSystemElement);
    EXPECT_FALSE(element.configuration);
    EXPECT_FALSE(element.valid);
    EXPECT_FALSE(element.active);
    EXPECT_FALSE(element.hasChecksum);
    EXPECT_FALSE(element.disabled);
    EXPECT_FALSE(element.notRequired);
    EXPECT_EQ(element.unitItem, nullptr);
    EXPECT_EQ(str(element.displayType), "Updatable file (app.bin)");
    EXPECT_EQ(str(element.displayName), "Processor board, SN 16(1), Updatable file (app.bin)");
}

struct NameOfPath {
    const char* path;
    const char* name;
};

class CreatedElementNameTest : public AssignmentFixture, public ::testing::WithParamInterface<NameOfPath> {};

TEST_P(CreatedElementNameTest, EndsWithTheLastPartOfThePath)
{
    makeTemplate();
    addFile(pathEntry(GetParam().path));
    assignment().makeAssignment();
    ASSERT_EQ(elements().size(), 1u);
    EXPECT_EQ(str(elements().front().name), GetParam().name);
    EXPECT_EQ(str(elements().front().location), GetParam().path);
    EXPECT_EQ(str(elements().front().displayName), std::string("T, ") + GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Paths, CreatedElementNameTest,
                         ::testing::Values(NameOfPath{"/mnt/data/app.bin", "Updatable file (app.bin)"},
                                           NameOfPath{"app.bin", "Updatable file"}, NameOfPath{"", "Updatable file"},
                                           NameOfPath{"/mnt/data/", "Updatable file ()"},
                                           NameOfPath{"C:\\data\\app.bin", "Updatable file (app.bin)"},
                                           NameOfPath{"/mnt\\app.bin", "Updatable file (app.bin)"},
                                           NameOfPath{"\\mnt/app.bin", "Updatable file (app.bin)"},
                                           NameOfPath{"/mnt/*", "Updatable file (*)"}));

TEST_F(AssignFilesTest, NewElementsHaveErrorListsOfTheirOwn)
{
    makeTemplate();
    const int before = TrellanSimulation::resources().errorLists;
    addFile(pathEntry("/a"));
    addFile(pathEntry("/b"));
    assignment().makeAssignment();
    ASSERT_EQ(elements().size(), 2u);
    EXPECT_EQ(TrellanSimulation::resources().errorLists, before + 4);
    const std::vector<const ZoCErrorList*> lists = {
        elements().front().statusErrorList.get(), elements().front().resultErrorList.get(),
        elements().back().statusErrorList.get(), elements().back().resultErrorList.get()};
    for (std::size_t i = 0; i < lists.size(); ++i) {
        ASSERT_NE(lists[i], nullptr);
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_NE(lists[i], lists[j]);
    }
    EXPECT_EQ(updater().getInventory().getFileSystemElementTemplate()->statusErrorList, nullptr);
}

TEST_F(AssignFilesTest, AFileThatAnInventoryElementTookGetsNoNewElement)
{
    makeTemplate();
    addFileElement("/a");
    addFile(pathEntry("/a"));
    addFile(pathEntry("/a"));
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), (Indices{0, 1}));
    EXPECT_EQ(assignedCounts(), (Counts{1, 1}));
}

TEST_F(AssignFilesTest, WithoutATemplateThereAreNoNewElements)
{
    addFile(pathEntry("/a"));
    assignment().makeAssignment();
    EXPECT_TRUE(elements().empty());
    EXPECT_EQ(assignedCounts(), Counts{0});
}

TEST_F(AssignFilesTest, OnlyFilesThatFitTheTemplateGetNewElements)
{
    makeTemplate({{"PRODUCT/ID", 4}});
    addFile(pathEntry("/a"));
    addFile(ordered_json::parse(R"({"boardType": "T", "boardId": 4, "targetPath": "/b"})"));
    addFile(ordered_json::parse(R"({"boardType": "S", "boardId": 4, "targetPath": "/c"})"));
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), Indices{1});
    EXPECT_EQ(assignedCounts(), (Counts{0, 1, 0}));
}

TEST_F(AssignFilesTest, FilesForElementsGetNoNewElements)
{
    makeTemplate();
    addFileForId(0);
    assignment().makeAssignment();
    EXPECT_TRUE(elements().empty());
}

TEST_F(AssignFilesTest, ElementsStayWhereTheyAre)
{
    makeTemplate();
    const Element* const first = &addElement({.id = 1});
    addFileForId(1);
    for (int i = 0; i < 100; ++i)
        addFile(pathEntry("/" + std::to_string(i)));
    assignment().makeAssignment();
    EXPECT_EQ(elements().size(), 101u);
    EXPECT_EQ(&elements().front(), first);
}

// Archives and elements at random, over few enough values that most elements fit several files.
class RandomAssignment {
public:
    explicit RandomAssignment(unsigned seed) : random(seed) {}

    ordered_json entry()
    {
        ordered_json result = ordered_json::object();
        const bool toFlashDrive = oneIn(3);
        const bool withBoards = oneIn(2);
        bool everyBoardStatesIt = withBoards;
        if (withBoards) {
            for (unsigned count = 1 + random() % 4; count > 0; --count) {
                ordered_json board = {{"boardType", boardType()}};
                addOptional(board);
                if (oneIn(2))
                    addDestination(board, toFlashDrive);
                else
                    everyBoardStatesIt = false;
                result["boards"].push_back(board);
            }
        } else {
            result["boardType"] = boardType();
        }
        addOptional(result);
        if (!everyBoardStatesIt || oneIn(3))
            addDestination(result, toFlashDrive);
        return result;
    }

    void fill(Element& element)
    {
        element.boardType = ZoCString(pick(types).c_str());
        if (oneIn(2))
            element.variant = ZoCString(pick(variants).c_str());
        element.productId = oneIn(3) ? random() % 3 : 0;
        element.hwCompatibilityId = oneIn(4) ? random() % 3 : 0;
        element.swCompatibilityId = oneIn(4) ? random() % 3 : 0;
        element.isFileSystemElement = oneIn(3);
        element.id = oneIn(20) ? 4294967295u : random() % 6;
        element.location = ZoCString(oneIn(12) ? "*" : pick(paths).c_str());
    }

private:
    bool oneIn(unsigned n) { return random() % n == 0; }
    const std::string& pick(const std::vector<std::string>& values) { return values[random() % values.size()]; }

    ordered_json boardType()
    {
        if (!oneIn(3))
            return pick(types);
        ordered_json result = ordered_json::array();
        for (unsigned count = random() % 4; count > 0; --count)
            result.push_back(pick(types));
        return result;
    }

    ordered_json number()
    {
        if (oneIn(2))
            return oneIn(10) ? 4294967296ull : random() % 3ull;
        ordered_json result = ordered_json::array();
        for (unsigned count = random() % 4; count > 0; --count)
            result.push_back(random() % 3);
        return result;
    }

    void addOptional(ordered_json& object)
    {
        if (oneIn(3))
            object["boardVariant"] = variant();
        if (oneIn(4))
            object["boardId"] = number();
        if (oneIn(5))
            object["hwCompatibilityId"] = number();
        if (oneIn(5))
            object["swCompatibilityId"] = number();
    }

    ordered_json variant()
    {
        if (oneIn(4))
            return nullptr;
        if (!oneIn(3))
            return oneIn(8) ? "" : pick(variants);
        return {pick(variants), nullptr, pick(variants)};
    }

    void addDestination(ordered_json& object, bool toFlashDrive)
    {
        if (toFlashDrive)
            object["targetPath"] = oneIn(15) ? "*" : pick(paths);
        else
            object["id"] = oneIn(10) ? 4294967295ull + random() % 2 : random() % 6ull;
    }

    std::mt19937 random;
    const std::vector<std::string> types = {"T", "T2", "t", "KR5120", "KR5140", "", "X Y", "\xC3\xA4"};
    const std::vector<std::string> variants = {"V1", "V2", "T"};
    const std::vector<std::string> paths = {"/a", "/b", "/a/b", "b", "", "/c/", "\\d"};
};

// The result of an assignment: the file of every element, and the number of elements of every file.
struct Assigned {
    Indices fileOfElement;
    Counts elementsOfFile;
    std::vector<std::string> newLocations;
    bool operator==(const Assigned&) const = default;
};

void give(Assigned& assigned, int file)
{
    assigned.fileOfElement.push_back(file);
    if (file >= 0)
        ++assigned.elementsOfFile[static_cast<std::size_t>(file)];
}

int firstMatch(const Element& element, const std::vector<File>& files)
{
    for (std::size_t i = 0; i < files.size(); ++i) {
        std::string targetPath;
        if (ZoCUpdateAssignment::matches(element, files[i], targetPath))
            return static_cast<int>(i);
    }
    return -1;
}

// Tries every file with every element, in order.
Assigned assignOneByOne(const ZoCUpdateInventory::ElementList& elements, const Element& templateElement,
                        const std::vector<File>& files)
{
    Assigned assigned;
    assigned.elementsOfFile.resize(files.size());
    for (const Element& element : elements)
        give(assigned, firstMatch(element, files));
    for (std::size_t i = 0; i < files.size(); ++i) {
        std::string targetPath;
        if (!files[i].hasTargetPath || assigned.elementsOfFile[i] != 0 ||
            !ZoCUpdateAssignment::matches(templateElement, files[i], targetPath))
            continue;
        give(assigned, static_cast<int>(i));
        assigned.newLocations.push_back(targetPath);
    }
    return assigned;
}

class RandomAssignmentTest : public AssignmentFixture, public ::testing::WithParamInterface<unsigned> {
protected:
    // What makeAssignment has done; the first `count` elements were there before.
    Assigned result(std::size_t count)
    {
        Assigned assigned;
        assigned.fileOfElement = fileIndices();
        assigned.elementsOfFile = assignedCounts();
        for (auto element = std::next(elements().begin(), static_cast<std::ptrdiff_t>(count));
             element != elements().end(); ++element)
            assigned.newLocations.push_back(str(element->location));
        return assigned;
    }
};

TEST_P(RandomAssignmentTest, GivesTheSameAsTryingEveryFileInOrder)
{
    makeTemplate();
    RandomAssignment random(GetParam());
    constexpr std::size_t count = 300;
    for (std::size_t i = 0; i < count; ++i)
        random.fill(addElement());
    for (std::size_t i = 0; i < 15 * GetParam(); ++i)
        addFile(random.entry());

    const Assigned expected =
        assignOneByOne(elements(), *updater().getInventory().getFileSystemElementTemplate(), files());
    assignment().makeAssignment();
    EXPECT_EQ(result(count).fileOfElement, expected.fileOfElement);
    EXPECT_EQ(result(count).elementsOfFile, expected.elementsOfFile);
    EXPECT_EQ(result(count).newLocations, expected.newLocations);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomAssignmentTest, ::testing::Range(1u, 25u));

TEST_F(AssignFilesTest, TheRandomArchivesGiveFilesToManyElementsButNotToAll)
{
    makeTemplate();
    RandomAssignment random(20);
    for (int i = 0; i < 300; ++i)
        random.fill(addElement());
    for (int i = 0; i < 300; ++i)
        addFile(random.entry());
    const Assigned assigned =
        assignOneByOne(elements(), *updater().getInventory().getFileSystemElementTemplate(), files());
    const auto without = std::count(assigned.fileOfElement.begin(), assigned.fileOfElement.begin() + 300, -1);
    EXPECT_GT(without, 30);
    EXPECT_LT(without, 270);
    EXPECT_GT(assigned.newLocations.size(), 3u);
}

}  // namespace
