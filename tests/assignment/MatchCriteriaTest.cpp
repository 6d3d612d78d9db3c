// The table of criteria, the values that it compares, and the board objects that decide.
#include "assignment/AssignmentFixture.h"
#include "assignment/MatchCriteria.h"

namespace {

using ZoNUpdateAssignment::anyStated;
using ZoNUpdateAssignment::decidingBoards;
using ZoNUpdateAssignment::DecidingBoards;
using ZoNUpdateAssignment::matchCriteria;
using ZoNUpdateAssignment::MatchCriterion;
using ZoNUpdateAssignment::MatchValue;
using ZoNUpdateAssignment::matchValueOf;
using ZoNUpdateAssignment::Requirements;
using ZoNUpdateAssignment::StatedAs;

using Json = nlohmann::ordered_json;
using Values = std::vector<MatchValue>;

MatchValue numberValue(unsigned long long value)
{
    return value;
}

MatchValue textValue(const char* characters)
{
    return std::string(characters);
}

const MatchValue nullValue;

Values statedValues(const char* property, StatedAs form)
{
    Values values;
    anyStated(parseJson(property), form, [&](const MatchValue& value) {
        values.push_back(value);
        return false;
    });
    return values;
}

TEST(MatchCriteria, AreTestedInThisOrder)
{
    std::vector<std::string> names;
    for (const MatchCriterion& criterion : matchCriteria) {
        names.emplace_back(criterion.name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"boardType", "boardVariant", "boardId", "kind", "id", "targetPath",
                                               "hwCompatibilityId", "swCompatibilityId"}));
    EXPECT_STREQ(matchCriteria[MatchCriterion::boardType].name, "boardType");
    EXPECT_STREQ(matchCriteria[MatchCriterion::boardVariant].name, "boardVariant");
    EXPECT_STREQ(matchCriteria[MatchCriterion::boardId].name, "boardId");
    EXPECT_STREQ(matchCriteria[MatchCriterion::kind].name, "kind");
    EXPECT_STREQ(matchCriteria[MatchCriterion::id].name, "id");
    EXPECT_STREQ(matchCriteria[MatchCriterion::targetPath].name, "targetPath");
    EXPECT_STREQ(matchCriteria[MatchCriterion::hwCompatibilityId].name, "hwCompatibilityId");
    EXPECT_STREQ(matchCriteria[MatchCriterion::swCompatibilityId].name, "swCompatibilityId");
}

TEST(MatchCriteria, ValuesAreNullTextsAndUnsignedNumbers)
{
    EXPECT_EQ(matchValueOf(nullptr), nullValue);
    EXPECT_EQ(matchValueOf(parseJson(R"("a\u0000b")")), MatchValue(std::string("a\0b", 3)));
    EXPECT_EQ(matchValueOf(parseJson("18446744073709551615")), numberValue(18446744073709551615u));
    for (const char* value : {"true", "-1", "1.0", "18446744073709551616", "{}", "[]", "[1]"}) {
        EXPECT_EQ(matchValueOf(parseJson(value)), std::nullopt) << value;
    }
}

TEST(MatchCriteria, AListStatesItselfOrEachOfItsValues)
{
    EXPECT_EQ(statedValues("7", StatedAs::list), Values{numberValue(7)});
    EXPECT_EQ(statedValues(R"([7, "a", null, 7])", StatedAs::list),
              (Values{numberValue(7), textValue("a"), nullValue, numberValue(7)}));
    EXPECT_EQ(statedValues("[]", StatedAs::list), Values{});
    EXPECT_EQ(statedValues("[true, [7], {}, -7, 7.0]", StatedAs::list), Values{});
    EXPECT_EQ(statedValues("{}", StatedAs::list), Values{});
}

TEST(MatchCriteria, ANumberAndATextStateOneValue)
{
    EXPECT_EQ(statedValues("7", StatedAs::number), Values{numberValue(7)});
    EXPECT_EQ(statedValues("8589934592", StatedAs::number), Values{numberValue(4294967295)});
    EXPECT_EQ(statedValues(R"("/a")", StatedAs::text), Values{textValue("/a")});
    EXPECT_THROW(statedValues("[7]", StatedAs::number), ZoNJson::type_error);
    EXPECT_THROW(statedValues(R"(["/a"])", StatedAs::text), ZoNJson::type_error);
}

// What is expected of elements by the only board object of a file, or the default.
std::string expectedText(MatchCriterion::Index criterion, const Json& entry)
{
    const File file = fileOf(entry);
    const DecidingBoards boards = decidingBoards(file);
    const ZoNJson::json pathOtherwise("otherwise");
    const Requirements requirements(*boards.begin()->second, file, pathOtherwise);
    const ZoNJson::json* const property = requirements.expected(matchCriteria[criterion]);
    return property != nullptr ? property->dump() : "nothing";
}

TEST(MatchCriteria, ExpectWhatTheFileStatesAsItStandsThere)
{
    const Json entry = Json::parse(R"({"boards": [{"boardType": ["A"], "boardId": [5, 6]}], "id": 8589934592,
                                       "boardId": 7, "hwCompatibilityId": [], "kind": "unknown member"})");
    EXPECT_EQ(expectedText(MatchCriterion::boardType, entry), R"(["A"])");
    EXPECT_EQ(expectedText(MatchCriterion::boardId, entry), "[5,6]");
    EXPECT_EQ(expectedText(MatchCriterion::id, entry), "8589934592");
    EXPECT_EQ(expectedText(MatchCriterion::hwCompatibilityId, entry), "[]");
    EXPECT_EQ(expectedText(MatchCriterion::kind, entry), R"("element")");
    EXPECT_EQ(expectedText(MatchCriterion::kind, {{"boardType", "A"}, {"targetPath", "/a"}}), R"("file")");
}

TEST(MatchCriteria, ExpectADefaultWhereTheFileStatesNothing)
{
    const Json entry = {{"boardType", "A"}};
    EXPECT_EQ(expectedText(MatchCriterion::boardVariant, entry), "null");
    EXPECT_EQ(expectedText(MatchCriterion::boardId, entry), "0");
    EXPECT_EQ(expectedText(MatchCriterion::id, entry), "nothing");
    EXPECT_EQ(expectedText(MatchCriterion::targetPath, entry), R"("otherwise")");
    EXPECT_EQ(expectedText(MatchCriterion::hwCompatibilityId, entry), "0");
    EXPECT_EQ(expectedText(MatchCriterion::swCompatibilityId, entry), "0");
}

// What an element has, for each criterion that concerns it.
std::vector<std::optional<MatchValue>> actualValues(const Element& element)
{
    std::vector<std::optional<MatchValue>> values;
    for (const MatchCriterion& criterion : matchCriteria) {
        values.push_back(criterion.actual(element));
    }
    return values;
}

TEST(MatchCriteria, KnowWhatAnElementHas)
{
    Element element;
    element.boardType = ZoCString("A");
    element.variant = ZoCString("V");
    element.productId = 1;
    element.id = 2;
    element.location = ZoCString("/a");
    element.hwCompatibilityId = 3;
    element.swCompatibilityId = 4;
    EXPECT_EQ(actualValues(element), (std::vector<std::optional<MatchValue>>{
                                         textValue("A"), textValue("V"), numberValue(1), textValue("element"),
                                         numberValue(2), std::nullopt, numberValue(3), numberValue(4)}));
    element.isFileSystemElement = true;
    element.variant = ZoCString();
    EXPECT_EQ(actualValues(element),
              (std::vector<std::optional<MatchValue>>{textValue("A"), nullValue, numberValue(1), textValue("file"),
                                                      std::nullopt, textValue("/a"), numberValue(3), numberValue(4)}));
    element.location = ZoCString("*");
    EXPECT_EQ(actualValues(element)[MatchCriterion::targetPath], std::nullopt);
}

// The positions in "boards" of those that decide for the types.
std::map<std::string, int> decidingPositions(const Json& entry)
{
    const File file = fileOf(entry);
    std::map<std::string, int> positions;
    for (const auto& [type, board] : decidingBoards(file)) {
        positions[std::get<std::string>(type)] =
            board == &file.jsonEntry ? -1 : static_cast<int>(board - &*file.jsonEntry["boards"].begin());
    }
    return positions;
}

TEST(MatchCriteria, TheFirstBoardObjectOfATypeDecides)
{
    const Json entry = Json::parse(
        R"({"boards": [{"boardType": "A"}, {"boardType": ["B", "A", "C"]}, {"boardType": []}, {"boardType": ["C", "D"]}]})");
    EXPECT_EQ(decidingPositions(entry), (std::map<std::string, int>{{"A", 0}, {"B", 1}, {"C", 1}, {"D", 3}}));
}

TEST(MatchCriteria, WithoutBoardsTheEntryItselfDecides)
{
    EXPECT_EQ(decidingPositions({{"boardType", {"A", "B", "A"}}}), (std::map<std::string, int>{{"A", -1}, {"B", -1}}));
}

}  // namespace
