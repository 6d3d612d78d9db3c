// Whether one update file is meant for one update element.
#include "assignment/AssignmentFixture.h"

namespace {

using nlohmann::ordered_json;

// An element of a board of type "A" with the number 1; `change` sets what a test is about.
template <class Change>
Element elementWith(Change change)
{
    Element element;
    element.boardType = ZoCString("A");
    element.id = 1;
    change(element);
    return element;
}

Element plainElement()
{
    return elementWith([](Element&) {});
}

Element elementOfType(const char* boardType)
{
    return elementWith([&](Element& element) { element.boardType = ZoCString(boardType); });
}

Element elementOfVariant(const char* variant)
{
    return elementWith([&](Element& element) { element.variant = ZoCString(variant); });
}

Element elementWithId(std::uint32_t id)
{
    return elementWith([&](Element& element) { element.id = id; });
}

Element fileElementAt(const char* location)
{
    return elementWith([&](Element& element) {
        element.isFileSystemElement = true;
        element.id = 0;
        element.location = ZoCString(location);
    });
}

bool fits(const Element& element, const std::string& entry)
{
    std::string targetPath;
    return ZoCUpdateAssignment::matches(element, fileOf(ordered_json::parse(entry)), targetPath);
}

TEST(Matching, ABoardTypeIsMatchedWholeAndCaseSensitively)
{
    const std::string entry = R"({"boardType": "A", "id": 1})";
    EXPECT_TRUE(fits(elementOfType("A"), entry));
    EXPECT_FALSE(fits(elementOfType("a"), entry));
    EXPECT_FALSE(fits(elementOfType("AA"), entry));
    EXPECT_FALSE(fits(elementOfType(""), entry));
}

TEST(Matching, AnArrayOfBoardTypesMatchesEachOfThem)
{
    const std::string entry = R"({"boardType": ["A", "B"], "id": 1})";
    EXPECT_TRUE(fits(elementOfType("A"), entry));
    EXPECT_TRUE(fits(elementOfType("B"), entry));
    EXPECT_FALSE(fits(elementOfType("C"), entry));
}

TEST(Matching, AnEmptyBoardTypeIsComparedAsAnEmptyString)
{
    EXPECT_TRUE(fits(elementOfType(""), R"({"boardType": "", "id": 1})"));
    EXPECT_FALSE(fits(elementOfType(""), R"({"boardType": [], "id": 1})"));
}

TEST(Matching, WithoutAVariantAFileFitsOnlyElementsWithoutOne)
{
    for (const char* entry :
         {R"({"boardType": "A", "id": 1})", R"({"boardType": "A", "id": 1, "boardVariant": null})"}) {
        EXPECT_TRUE(fits(elementOfVariant(""), entry));
        EXPECT_FALSE(fits(elementOfVariant("X"), entry));
    }
}

TEST(Matching, AnEmptyVariantFitsNoElement)
{
    const std::string entry = R"({"boardType": "A", "id": 1, "boardVariant": ""})";
    EXPECT_FALSE(fits(elementOfVariant(""), entry));
    EXPECT_FALSE(fits(elementOfVariant("X"), entry));
}

TEST(Matching, VariantsAndNullMayBeGivenTogether)
{
    const std::string entry = R"({"boardType": "A", "id": 1, "boardVariant": ["X", null]})";
    EXPECT_TRUE(fits(elementOfVariant("X"), entry));
    EXPECT_TRUE(fits(elementOfVariant(""), entry));
    EXPECT_FALSE(fits(elementOfVariant("Y"), entry));
    EXPECT_FALSE(fits(elementOfVariant("Y"), R"({"boardType": "A", "id": 1, "boardVariant": "X"})"));
}

// The criteria that are a number and default to 0.
struct NumberCriterion {
    const char* key;
    std::uint32_t Element::*field;
};

class NumberCriteria : public ::testing::TestWithParam<NumberCriterion> {
protected:
    // True when an element with `value` fits a file that states `expected` (JSON), or nothing when it is empty.
    static bool fitsNumber(std::uint32_t value, const std::string& expected)
    {
        const Element element = elementWith([&](Element& changed) { changed.*(GetParam().field) = value; });
        const std::string member = expected.empty() ? "" : ", \"" + std::string(GetParam().key) + "\": " + expected;
        return fits(element, R"({"boardType": "A", "id": 1)" + member + "}");
    }
};

TEST_P(NumberCriteria, StatedNothingItMeansZeroAndNotAnything)
{
    EXPECT_TRUE(fitsNumber(0, ""));
    EXPECT_FALSE(fitsNumber(1, ""));
}

TEST_P(NumberCriteria, AStatedNumberMustBeEqual)
{
    EXPECT_TRUE(fitsNumber(7, "7"));
    EXPECT_FALSE(fitsNumber(0, "7"));
    EXPECT_FALSE(fitsNumber(7, "0"));
    EXPECT_FALSE(fitsNumber(7, "4294967303"));
    EXPECT_TRUE(fitsNumber(4294967295u, "4294967295"));
}

TEST_P(NumberCriteria, AStatedArrayAllowsItsNumbersOnly)
{
    EXPECT_TRUE(fitsNumber(7, "[3, 7]"));
    EXPECT_TRUE(fitsNumber(0, "[0, 7]"));
    EXPECT_FALSE(fitsNumber(0, "[3, 7]"));
    EXPECT_FALSE(fitsNumber(0, "[]"));
}

TEST_P(NumberCriteria, ABoardsNumberGoesBeforeTheEntrys)
{
    const std::string key = GetParam().key;
    const std::string entry =
        R"({"id": 1, ")" + key + R"(": 5, "boards": [{"boardType": "A", ")" + key + R"(": 7}, {"boardType": "B"}]})";
    auto element = [&](const char* type, std::uint32_t value) {
        return elementWith([&](Element& changed) {
            changed.boardType = ZoCString(type);
            changed.*(GetParam().field) = value;
        });
    };
    EXPECT_TRUE(fits(element("A", 7), entry));
    EXPECT_FALSE(fits(element("A", 5), entry));
    EXPECT_TRUE(fits(element("B", 5), entry));
    EXPECT_FALSE(fits(element("B", 7), entry));
    EXPECT_FALSE(fits(element("B", 0), entry));
}

INSTANTIATE_TEST_SUITE_P(Keys, NumberCriteria,
                         ::testing::Values(NumberCriterion{"boardId", &Element::productId},
                                           NumberCriterion{"hwCompatibilityId", &Element::hwCompatibilityId},
                                           NumberCriterion{"swCompatibilityId", &Element::swCompatibilityId}),
                         [](const auto& info) { return std::string(info.param.key); });

TEST(Matching, TheIdMustBeEqual)
{
    EXPECT_TRUE(fits(elementWithId(1), R"({"boardType": "A", "id": 1})"));
    EXPECT_FALSE(fits(elementWithId(2), R"({"boardType": "A", "id": 1})"));
    EXPECT_TRUE(fits(elementWithId(0), R"({"boardType": "A", "id": 0})"));
    EXPECT_TRUE(fits(elementWithId(4294967295u), R"({"boardType": "A", "id": 4294967295})"));
}

TEST(Matching, AnIdBeyond32BitsIsTheLargestOne)
{
    for (const char* entry : {R"({"boardType": "A", "id": 4294967296})", R"({"boardType": "A", "id": 8589934593})"}) {
        EXPECT_TRUE(fits(elementWithId(4294967295u), entry));
        EXPECT_FALSE(fits(elementWithId(0), entry));
        EXPECT_FALSE(fits(elementWithId(1), entry));
    }
}

TEST(Matching, AFileWithoutAnIdFitsNoElement)
{
    EXPECT_FALSE(fits(elementWithId(0), R"({"boardType": "A"})"));
    EXPECT_FALSE(fits(elementWithId(0), R"({"boards": [{"boardType": "A"}, {"boardType": "B", "id": 0}]})"));
}

TEST(Matching, ABoardsIdGoesBeforeTheEntrys)
{
    const std::string entry = R"({"id": 1, "boards": [{"boardType": "A", "id": 2}, {"boardType": "B"}]})";
    EXPECT_TRUE(fits(elementWithId(2), entry));
    EXPECT_FALSE(fits(elementWithId(1), entry));
    EXPECT_TRUE(fits(elementOfType("B"), entry));
}

TEST(Matching, TheFirstBoardOfTheTypeIsTheOnlyOneTried)
{
    const std::string entry = R"({"id": 1, "boards": [{"boardType": "B"}, {"boardType": "A", "boardVariant": "V1"},
                                                      {"boardType": "A", "boardVariant": "V2"}]})";
    EXPECT_TRUE(fits(elementOfVariant("V1"), entry));
    EXPECT_FALSE(fits(elementOfVariant("V2"), entry));
    EXPECT_FALSE(fits(elementOfVariant(""), entry));
}

TEST(Matching, TheFirstBoardIsTheOnlyOneTriedForAnId)
{
    const std::string entry = R"({"boards": [{"boardType": ["B", "A"], "id": 7}, {"boardType": "A", "id": 1}]})";
    EXPECT_FALSE(fits(elementWithId(1), entry));
    EXPECT_TRUE(fits(elementWithId(7), entry));
}

TEST(Matching, ABoardOfAnotherTypeIsPassedOver)
{
    const std::string entry = R"({"boards": [{"boardType": "B", "id": 7}, {"boardType": "A", "id": 1}]})";
    EXPECT_TRUE(fits(elementWithId(1), entry));
    EXPECT_FALSE(fits(elementOfType("C"), entry));
}

TEST(Matching, TheEntrysOwnBoardTypeDoesNotCountBesideBoards)
{
    EXPECT_FALSE(fits(plainElement(), R"({"boardType": "A", "id": 1, "boards": [{"boardType": "B"}]})"));
}

TEST(Matching, ABoardsVariantGoesBeforeTheEntrysEvenWhenItIsNull)
{
    const std::string entry =
        R"({"id": 1, "boardVariant": "V1", "boards": [{"boardType": "A", "boardVariant": null}, {"boardType": "B"}]})";
    EXPECT_TRUE(fits(elementOfVariant(""), entry));
    EXPECT_FALSE(fits(elementOfVariant("V1"), entry));
    EXPECT_TRUE(fits(elementWith([](Element& element) {
                         element.boardType = ZoCString("B");
                         element.variant = ZoCString("V1");
                     }),
                     entry));
}

TEST(Matching, FilesForTheFlashDriveFitFileSystemElementsOnly)
{
    EXPECT_FALSE(fits(plainElement(), R"({"boardType": "A", "targetPath": "/a"})"));
    EXPECT_FALSE(fits(fileElementAt("/a"), R"({"boardType": "A", "id": 0})"));
    EXPECT_FALSE(fits(fileElementAt("*"), R"({"boardType": "A", "id": 0})"));
    EXPECT_FALSE(fits(fileElementAt(""), R"({"boardType": "A", "id": 0})"));
}

TEST(Matching, OneBoardWithATargetPathMakesItAFileForTheFlashDrive)
{
    const std::string entry = R"({"id": 1, "boards": [{"boardType": "A"}, {"boardType": "B", "targetPath": "/b"}]})";
    EXPECT_FALSE(fits(plainElement(), entry));
}

TEST(Matching, TheTargetPathMustBeTheLocation)
{
    const std::string entry = R"({"boardType": "A", "targetPath": "/a/b"})";
    EXPECT_TRUE(fits(fileElementAt("/a/b"), entry));
    EXPECT_FALSE(fits(fileElementAt("/a/b/"), entry));
    EXPECT_FALSE(fits(fileElementAt("/a"), entry));
    EXPECT_FALSE(fits(fileElementAt("/A/B"), entry));
    EXPECT_FALSE(fits(fileElementAt(""), entry));
}

TEST(Matching, OnlyAnElementsStarIsAWildcard)
{
    EXPECT_TRUE(fits(fileElementAt("*"), R"({"boardType": "A", "targetPath": "/a/b"})"));
    EXPECT_FALSE(fits(fileElementAt("**"), R"({"boardType": "A", "targetPath": "/a/b"})"));
    EXPECT_FALSE(fits(fileElementAt("/a/*"), R"({"boardType": "A", "targetPath": "/a/b"})"));
    EXPECT_FALSE(fits(fileElementAt("/a/b"), R"({"boardType": "A", "targetPath": "*"})"));
}

TEST(Matching, TheIdOfAFileSystemElementDoesNotMatter)
{
    Element element = fileElementAt("/a");
    element.id = 77;
    EXPECT_TRUE(fits(element, R"({"boardType": "A", "targetPath": "/a"})"));
}

TEST(Matching, AFileSystemElementMustFitInEverythingElseToo)
{
    Element element = fileElementAt("*");
    element.swCompatibilityId = 1;
    EXPECT_FALSE(fits(element, R"({"boardType": "A", "targetPath": "/a"})"));
    EXPECT_TRUE(fits(element, R"({"boardType": "A", "targetPath": "/a", "swCompatibilityId": [2, 1]})"));
}

// The target path after matching with "before" in it.
std::string pathAfter(const Element& element, const std::string& entry, bool expected)
{
    std::string targetPath = "before";
    EXPECT_EQ(ZoCUpdateAssignment::matches(element, fileOf(ordered_json::parse(entry)), targetPath), expected);
    return targetPath;
}

TEST(Matching, AMatchGivesTheTargetPath)
{
    EXPECT_EQ(pathAfter(fileElementAt("*"), R"({"boardType": "A", "targetPath": "/a/b"})", true), "/a/b");
    EXPECT_EQ(pathAfter(fileElementAt("/a"), R"({"boardType": "A", "targetPath": "/a"})", true), "/a");
}

TEST(Matching, ABoardsTargetPathGoesBeforeTheEntrys)
{
    const std::string entry =
        R"({"targetPath": "/entry", "boards": [{"boardType": "A", "targetPath": "/board"}, {"boardType": "B"}]})";
    EXPECT_EQ(pathAfter(fileElementAt("*"), entry, true), "/board");
    Element other = fileElementAt("*");
    other.boardType = ZoCString("B");
    EXPECT_EQ(pathAfter(other, entry, true), "/entry");
}

TEST(Matching, TheTargetPathStaysWhenTheElementsKindOrBoardOrVariantDoesNotFit)
{
    EXPECT_EQ(pathAfter(plainElement(), R"({"boardType": "A", "id": 1})", true), "before");
    EXPECT_EQ(pathAfter(plainElement(), R"({"boardType": "A", "targetPath": "/a"})", false), "before");
    EXPECT_EQ(pathAfter(fileElementAt("*"), R"({"boardType": "B", "targetPath": "/a"})", false), "before");
    EXPECT_EQ(pathAfter(fileElementAt("*"), R"({"boardType": "A", "boardId": 5, "targetPath": "/a"})", false),
              "before");
    EXPECT_EQ(pathAfter(fileElementAt("*"), R"({"boardType": "A", "boardVariant": "V", "targetPath": "/a"})", false),
              "before");
}

TEST(Matching, TheTargetPathIsGivenBeforeTheCompatibilityIsChecked)
{
    EXPECT_EQ(pathAfter(fileElementAt("*"), R"({"boardType": "A", "targetPath": "/a", "swCompatibilityId": 5})", false),
              "/a");
    EXPECT_EQ(pathAfter(fileElementAt("*"), R"({"boardType": "A", "targetPath": "/a", "hwCompatibilityId": 5})", false),
              "/a");
    EXPECT_EQ(pathAfter(fileElementAt("/b"), R"({"boardType": "A", "targetPath": "/a"})", false), "/a");
}

TEST(Matching, ABoardWithoutATargetPathKeepsThePathAndComparesIt)
{
    const std::string entry = R"({"boards": [{"boardType": "A"}, {"boardType": "B", "targetPath": "/b"}]})";
    EXPECT_EQ(pathAfter(fileElementAt("before"), entry, true), "before");
    EXPECT_EQ(pathAfter(fileElementAt("*"), entry, true), "before");
    EXPECT_EQ(pathAfter(fileElementAt("/b"), entry, false), "before");
}

// Texts with a NUL: what fits only where texts are compared to their ends, and what would fit their beginnings.
struct TextWithNul {
    const char* name;
    void (*set)(Element& element);
    const char* fitting;
    const char* notFitting;
};

std::ostream& operator<<(std::ostream& out, const TextWithNul& text)
{
    return out << text.name;
}

const TextWithNul textsWithNul[] = {
    {"BoardType", [](Element& element) { element.boardType = ZoCString("A\0Z", 3); },
     R"({"boardType": "A\u0000Z", "id": 1})", R"({"boardType": "A", "id": 1})"},
    {"Variant", [](Element& element) { element.variant = ZoCString("v\0w", 3); },
     R"({"boardType": "A", "id": 1, "boardVariant": "v\u0000w"})",
     R"({"boardType": "A", "id": 1, "boardVariant": "v"})"},
    {"VariantThatBeginsWithIt", [](Element& element) { element.variant = ZoCString("\0v", 2); },
     R"({"boardType": "A", "id": 1, "boardVariant": "\u0000v"})",
     R"({"boardType": "A", "id": 1, "boardVariant": ["", null]})"},
    {"Location",
     [](Element& element) {
         element.isFileSystemElement = true;
         element.location = ZoCString("/a\0b", 4);
     },
     R"({"boardType": "A", "targetPath": "/a\u0000b"})", R"({"boardType": "A", "targetPath": "/a"})"},
    {"LocationThatBeginsWithAStar",
     [](Element& element) {
         element.isFileSystemElement = true;
         element.location = ZoCString("*\0x", 3);
     },
     R"({"boardType": "A", "targetPath": "*\u0000x"})", R"({"boardType": "A", "targetPath": "/any"})"},
};

class TextsWithNul : public AssignmentFixture, public ::testing::WithParamInterface<TextWithNul> {};

TEST_P(TextsWithNul, IsComparedToItsEnd)
{
    EXPECT_TRUE(fits(elementWith(GetParam().set), GetParam().fitting));
    EXPECT_FALSE(fits(elementWith(GetParam().set), GetParam().notFitting));
}

TEST_P(TextsWithNul, IsAssignedTheFileThatFits)
{
    GetParam().set(addElement({.boardType = "A"}));
    addFile(Json::parse(GetParam().notFitting));
    addFile(Json::parse(GetParam().fitting));
    assignment().makeAssignment();
    EXPECT_EQ(fileIndices(), std::vector<int>{1});
}

INSTANTIATE_TEST_SUITE_P(Texts, TextsWithNul, ::testing::ValuesIn(textsWithNul),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
