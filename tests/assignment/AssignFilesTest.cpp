// Which file each element is given, and the elements made for flash-drive files that no element took.
#include "assignment/AssignmentFixture.h"
#include "simulation/base/Resources.h"
#include "support/PlatformText.h"

namespace {

using AssignFiles = AssignmentFixture;
using nlohmann::ordered_json;
using Indices = std::vector<int>;
using Counts = std::vector<unsigned>;

ordered_json pathEntry(const std::string& targetPath)
{
    return {{"boardType", "T"}, {"targetPath", targetPath}};
}

TEST_F(AssignFiles, AnElementTakesTheFirstFileThatFits)
{
    addElement({.id = 2});
    addFileForId(1);
    addFileForId(2);
    addFileForId(2);
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), Indices{1});
    EXPECT_EQ(assignedCounts(), (Counts{0, 1, 0}));
}

TEST_F(AssignFiles, TheFirstFileIsTakenHoweverItNamesTheBoard)
{
    addElement({.id = 2});
    addFile(ordered_json::parse(R"({"boards": [{"boardType": ["S", "T"], "id": 2}]})"));
    addFileForId(2);
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), Indices{0});
}

TEST_F(AssignFiles, OnlyTheFirstBoardObjectOfATypeCounts)
{
    addElement({.id = 1});
    addElement({.id = 2});
    addElement({.boardType = "S", .id = 1});
    addFile(
        ordered_json::parse(R"({"boards": [{"boardType": ["S", "T"], "id": 2}, {"boardType": ["T", "S"], "id": 1}]})"));
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), (Indices{-1, 0, -1}));
}

TEST_F(AssignFiles, IsTheFirstStepOfTheAssignmentAndDecidesNothingElse)
{
    makeTemplate();
    addElement({.id = 1, .version = "1.0"});
    addElement({.id = 2});
    addFileForId(1, {{"version", "1.0"}});
    addFile(pathEntry("a.cfg"));
    assignment().assignUpdateFiles();
    EXPECT_EQ(fileIndices(), (Indices{0, -1, 1}));
    EXPECT_EQ(assignedCounts(), (Counts{1, 1}));
    EXPECT_TRUE(elements().back().isFileSystemElement);
    for (const Element& element : elements()) {
        EXPECT_FALSE(element.notRequired);
        EXPECT_FALSE(element.isUpToDate);
    }
    EXPECT_EQ(assignment().getNumberOfUpdatePhases(), 0u);
}

TEST_F(AssignFiles, OneFileServesManyElements)
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

TEST_F(AssignFiles, ADisabledElementGetsItsFileToo)
{
    addElement({.id = 1}).disabled = true;
    addFileForId(1);
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), Indices{0});
    EXPECT_EQ(assignedCounts(), Counts{1});
    EXPECT_TRUE(elements().front().disabled);
}

TEST_F(AssignFiles, WithoutFilesNoElementGetsOne)
{
    addElement();
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), Indices{-1});
}

TEST_F(AssignFiles, WithoutElementsNoFileIsAssigned)
{
    addFileForId(1);
    assignment().makeAssignment();
    EXPECT_EQ(assignedCounts(), Counts{0});
    EXPECT_TRUE(elements().empty());
}

TEST_F(AssignFiles, AFileSystemElementTakesTheFileForItsLocation)
{
    addFileElement("/mnt/data/b.bin");
    addFile(pathEntry("/mnt/data/a.bin"));
    addFile(pathEntry("/mnt/data/b.bin"));
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), Indices{1});
    EXPECT_EQ(str(elements().front().location), "/mnt/data/b.bin");
}

TEST_F(AssignFiles, AnElementWithAWildcardTakesTheFirstFlashDriveFileAndKeepsItsLocation)
{
    addFileElement("*");
    addFileForId(1);
    addFile(pathEntry("/a"));
    addFile(pathEntry("/b"));
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), Indices{1});
    EXPECT_EQ(str(elements().front().location), "*");
}

TEST_F(AssignFiles, ATargetPathOfAnotherFileIsNotCarriedOver)
{
    // The second file states no path for this board: without one it fits the empty location only.
    addFileElement("/b");
    addFile(ordered_json::parse(R"({"boardType": "T", "targetPath": "/b", "hwCompatibilityId": 9})"));
    addFile(ordered_json::parse(R"({"boards": [{"boardType": "T"}, {"boardType": "S", "targetPath": "/s"}]})"));
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), Indices{-1});
}

TEST_F(AssignFiles, AFileThatStatesNoPathForTheBoardIsForTheEmptyLocation)
{
    addFileElement("");
    addFile(pathEntry("/a"));
    addFile(ordered_json::parse(R"({"boards": [{"boardType": "T"}, {"boardType": "S", "targetPath": "/s"}]})"));
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), Indices{1});
}

TEST_F(AssignFiles, NumbersOfAFileAreNotCutTo32Bits)
{
    addElement().productId = 4294967295;
    addElement().productId = 0;
    addElement().productId = 1;
    addFileForId(1, {{"boardId", {4294967296, 4294967297}}});
    addFileForId(1, {{"boardId", {4294967295, 1}}});
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), (Indices{1, -1, 1}));
}

TEST_F(AssignFiles, AnIdBeyond32BitsIsTheLargestOne)
{
    addElement({.id = 0});
    addElement({.id = 4294967295});
    addFile({{"boardType", "T"}, {"id", 4294967296}});
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), (Indices{-1, 0}));
}

TEST_F(AssignFiles, WhereOneTextEndsAndTheNextBeginsIsNotMixedUp)
{
    addFileElement("path /x", {.boardType = "A"});
    addFileElement("/x", {.boardType = "A1:"});
    addFile({{"boardType", "Apath "}, {"targetPath", "/x"}});
    addFile({{"boardType", "A"}, {"targetPath", "1:/x"}});
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), (Indices{-1, -1}));
}

TEST_F(AssignFiles, ManyElementsAndManyAcceptedValuesFindEachOther)
{
    // Files with few values and many elements, and the other way round.
    for (unsigned id = 1; id <= 2; ++id) {
        const unsigned alike = id == 1 ? 40 : 1;
        for (unsigned i = 0; i < alike; ++i) {
            addElement({.id = id}).hwCompatibilityId = i;
        }
    }
    addFileForId(1, {{"hwCompatibilityId", {7, 39, 39, 7}}});
    Json many = Json::array();
    for (unsigned i = 0; i < 40; ++i) {
        many.push_back(39 - i);
    }
    addFileForId(2, {{"hwCompatibilityId", many}});
    assignment().makeAssignment();
    EXPECT_EQ(assignedCounts(), (Counts{2, 1}));
    EXPECT_EQ(fileIndices()[7], 0);
    EXPECT_EQ(fileIndices()[39], 0);
    EXPECT_EQ(fileIndices()[40], 1);
}

TEST_F(AssignFiles, UnassignedFlashDriveFilesGetNewElementsInFileOrder)
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

TEST_F(AssignFiles, ANewElementTakesItsBoardFromTheTemplate)
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

TEST_F(AssignFiles, ANewElementTakesWhatFilesAskForFromTheTemplate)
{
    makeTemplate({{"PRODUCT/VARIANT", "V"}, {"PRODUCT/ID", 4}},
                 {{"HW_COMPATIBILITY_ID", 5}, {"SW_COMPATIBILITY_ID", 6}});
    addFile(ordered_json::parse(R"({"boardType": "T", "targetPath": "/a", "boardVariant": "V", "boardId": 4,
                                    "hwCompatibilityId": 5, "swCompatibilityId": 6})"));
    assignment().makeAssignment();
    ASSERT_EQ(elements().size(), 1u);
    const Element& element = elements().front();
    EXPECT_EQ(str(element.variant), "V");
    EXPECT_EQ(element.productId, 4u);
    EXPECT_EQ(element.hwCompatibilityId, 5u);
    EXPECT_EQ(element.swCompatibilityId, 6u);
}

TEST_F(AssignFiles, ANewElementsLocationIsThatOfItsOwnFile)
{
    makeTemplate();
    addFile(pathEntry("/a"));
    addFile(ordered_json::parse(R"({"boards": [{"boardType": "T"}, {"boardType": "S", "targetPath": "/s"}]})"));
    assignment().makeAssignment();
    ASSERT_EQ(elements().size(), 2u);
    EXPECT_EQ(str(elements().front().location), "/a");
    EXPECT_EQ(str(elements().back().location), "");
}

struct NameOfPath {
    const char* path;
    const char* name;
};

class CreatedElementName : public AssignmentFixture, public ::testing::WithParamInterface<NameOfPath> {};

TEST_P(CreatedElementName, EndsWithTheLastPartOfThePath)
{
    makeTemplate();
    addFile(pathEntry(GetParam().path));
    assignment().makeAssignment();
    ASSERT_EQ(elements().size(), 1u);
    EXPECT_EQ(str(elements().front().name), GetParam().name);
    EXPECT_EQ(str(elements().front().location), GetParam().path);
    EXPECT_EQ(str(elements().front().displayName), std::string("T, ") + GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Paths, CreatedElementName,
                         ::testing::Values(NameOfPath{"/mnt/data/app.bin", "Updatable file (app.bin)"},
                                           NameOfPath{"app.bin", "Updatable file"}, NameOfPath{"", "Updatable file"},
                                           NameOfPath{"/mnt/data/", "Updatable file ()"},
                                           NameOfPath{"C:\\data\\app.bin", "Updatable file (app.bin)"},
                                           NameOfPath{"/mnt\\app.bin", "Updatable file (app.bin)"},
                                           NameOfPath{"\\mnt/app.bin", "Updatable file (app.bin)"},
                                           NameOfPath{"/mnt/*", "Updatable file (*)"}));

TEST_F(AssignFiles, NewElementsHaveErrorListsOfTheirOwn)
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
        for (std::size_t j = 0; j < i; ++j) {
            EXPECT_NE(lists[i], lists[j]);
        }
    }
    EXPECT_EQ(updater().getInventory().getFileSystemElementTemplate()->statusErrorList, nullptr);
}

TEST_F(AssignFiles, AFileThatAnInventoryElementTookGetsNoNewElement)
{
    makeTemplate();
    addFileElement("/a");
    addFile(pathEntry("/a"));
    addFile(pathEntry("/a"));
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), (Indices{0, 1}));
    EXPECT_EQ(assignedCounts(), (Counts{1, 1}));
}

TEST_F(AssignFiles, WithoutATemplateThereAreNoNewElements)
{
    addFile(pathEntry("/a"));
    assignment().makeAssignment();
    EXPECT_TRUE(elements().empty());
    EXPECT_EQ(assignedCounts(), Counts{0});
}

TEST_F(AssignFiles, OnlyFilesThatFitTheTemplateGetNewElements)
{
    makeTemplate({{"PRODUCT/ID", 4}});
    addFile(pathEntry("/a"));
    addFile(ordered_json::parse(R"({"boardType": "T", "boardId": 4, "targetPath": "/b"})"));
    addFile(ordered_json::parse(R"({"boardType": "S", "boardId": 4, "targetPath": "/c"})"));
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), Indices{1});
    EXPECT_EQ(assignedCounts(), (Counts{0, 1, 0}));
}

TEST_F(AssignFiles, FilesForElementsGetNoNewElements)
{
    makeTemplate();
    addFileForId(0);
    assignment().makeAssignment();
    EXPECT_TRUE(elements().empty());
}

TEST_F(AssignFiles, ElementsStayWhereTheyAre)
{
    makeTemplate();
    const Element* const first = &addElement({.id = 1});
    addFileForId(1);
    for (int i = 0; i < 100; ++i) {
        addFile(pathEntry("/" + std::to_string(i)));
    }
    assignment().makeAssignment();
    EXPECT_EQ(elements().size(), 101u);
    EXPECT_EQ(&elements().front(), first);
}

}  // namespace
