#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <numeric>

#include "tool/documents/JsonPlaces.h"
#include "tool/documents/TextPlace.h"

namespace TrellanTool {
namespace {

using namespace std::string_literals;

class Asked final : public AskedPointers {
public:
    explicit Asked(std::vector<AskedPointers::Asked> pointers) : offsets(pointers.size()), pointers(std::move(pointers))
    {
    }

    std::size_t size() const override { return pointers.size(); }
    AskedPointers::Asked at(std::size_t position) override { return pointers[position]; }
    void takePlace(std::size_t position, std::optional<std::size_t> offset) override { offsets[position] = offset; }

    std::vector<std::optional<std::size_t>> offsets;

private:
    const std::vector<AskedPointers::Asked> pointers;
};

struct DuplicateKey {
    std::string pointer;
    TextPlace place;
};

struct Fault {
    TextPlace place;
    std::string reason;
};

struct Found {
    std::vector<std::optional<TextPlace>> places;
    std::vector<DuplicateKey> duplicateKeys;  // in the order of the text
    std::optional<Fault> fault;
};

Found findJsonPlaces(std::string_view text, const std::vector<std::string>& pointers)
{
    std::vector<AskedPointers::Asked> intoNoEntry;
    std::transform(pointers.begin(), pointers.end(), std::back_inserter(intoNoEntry), [](const std::string& pointer) {
        return AskedPointers::Asked{-1, -1, pointer};
    });
    Asked asked(intoNoEntry);
    const JsonPlaces places = TrellanTool::findJsonPlaces(text, asked);
    const auto placeAt = [&](std::size_t offset) { return TextPlaces(text).at(offset); };
    Found found;
    for (const auto& offset : asked.offsets) {
        found.places.push_back(offset ? std::optional(placeAt(*offset)) : std::nullopt);
    }
    const FoundMembers& duplicates = places.duplicates;
    std::vector<std::size_t> order(duplicates.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return duplicates.offset(a) < duplicates.offset(b); });
    for (const std::size_t i : order) {
        const std::size_t offset = duplicates.offset(i);
        found.duplicateKeys.push_back({pointerToMember(duplicates.object(i), stringAt(text, offset)), placeAt(offset)});
    }
    if (places.fault) {
        found.fault = {placeAt(places.fault->offset), places.fault->reason};
    }
    return found;
}

std::string shown(const TextPlace& place)
{
    return std::to_string(place.line) + ":" + std::to_string(place.column);
}

// The place of one pointer; "-" where the text has no such part.
std::string placeOf(std::string_view text, const std::string& pointer)
{
    const auto place = findJsonPlaces(text, {pointer}).places.at(0);
    return place ? shown(*place) : "-";
}

std::string faultOf(std::string_view text)
{
    const auto fault = findJsonPlaces(text, {}).fault;
    return fault ? shown(fault->place) + " " + fault->reason : "";
}

constexpr std::string_view description =
    "{ \"info\" : {},\n"
    "  \"files\": [\n"
    "    { \"name\": \"a\\\"b\", \"id\" : [1,22 , 333] },\n"
    "\t{\"x/y\":1.5e3,\"~\":{\"\":null}}\n"
    "  ] }\n";

TEST(JsonPlaces, AMemberBeginsWithItsKey)
{
    EXPECT_EQ(placeOf(description, "/info"), "1:3");
    EXPECT_EQ(placeOf(description, "/files"), "2:3");
    EXPECT_EQ(placeOf(description, "/files/0/name"), "3:7");
    EXPECT_EQ(placeOf(description, "/files/0/id"), "3:23");
}

TEST(JsonPlaces, AnElementOfAnArrayAndTheDocumentBeginWithTheirValues)
{
    EXPECT_EQ(placeOf(description, ""), "1:1");
    EXPECT_EQ(placeOf(description, "/files/0"), "3:5");
    EXPECT_EQ(placeOf(description, "/files/0/id/0"), "3:31");
    EXPECT_EQ(placeOf(description, "/files/0/id/1"), "3:33");
    EXPECT_EQ(placeOf(description, "/files/0/id/2"), "3:38");
    EXPECT_EQ(placeOf(description, "/files/1"), "4:2");
}

TEST(JsonPlaces, ThePartsOfOneObjectAreFoundHoweverManyTheyAre)
{
    std::string text = R"({"0":[)";
    std::vector<std::string> pointers;
    for (int i = 0; i < 1000; ++i) {
        text += i == 999 ? R"({"x":1}],"07":0,"7":{"1":0}})" : "1,";
        pointers.push_back("/0/" + std::to_string(999 - i));
    }
    pointers.insert(pointers.end(), {"/0/999/x", "/07", "/7", "/7/1", "/7/1", "/0/01", "/7/2"});
    const auto places = findJsonPlaces(text, pointers).places;
    ASSERT_EQ(places.size(), 1007u);
    const auto column = [&](std::size_t i) { return places[i] ? places[i]->column : 0; };
    EXPECT_EQ(column(999), 7u);
    EXPECT_EQ(column(989), 27u);
    EXPECT_EQ(column(1), 2003u);
    EXPECT_EQ(column(0), 2005u);
    EXPECT_EQ(column(1000), 2006u);
    EXPECT_EQ(column(1001), 2014u);
    EXPECT_EQ(column(1002), 2021u);
    EXPECT_EQ(column(1003), 2026u);
    EXPECT_EQ(column(1004), 2026u);
    EXPECT_EQ(column(1005), 2u);     // not there: its parent
    EXPECT_EQ(column(1006), 2021u);  // neither
}

TEST(JsonPlaces, ANulIsAFaultWhereItStands)
{
    EXPECT_EQ(faultOf("{}\n \0"s), "2:2 a NUL character");
    EXPECT_EQ(faultOf("\0{}"s), "1:1 a NUL character");
    EXPECT_EQ(faultOf("{\"a\":\n {\0}}"s), "2:3 a NUL character");
    EXPECT_EQ(faultOf("{\"a\": \"b\0\"}"s), "1:9 a NUL character");
    EXPECT_EQ(faultOf("{\"a\": tru\0e}"s), "1:10 a NUL character");
    EXPECT_EQ(faultOf("[12\0]"s), "1:4 a NUL character");
}

TEST(JsonPlaces, WhatIsWrongBeforeANulIsTheFault)
{
    EXPECT_EQ(faultOf("{\n x: 1}\0"s), faultOf("{\n x: 1}"));
    EXPECT_EQ(faultOf("{\"a\": x\0"s).substr(0, 4), "1:7 ");
}

TEST(JsonPlaces, KeysAreEscapedInPointers)
{
    EXPECT_EQ(placeOf(description, "/files/1/x~1y"), "4:3");
    EXPECT_EQ(placeOf(description, "/files/1/~0"), "4:15");
    EXPECT_EQ(placeOf(description, "/files/1/~0/"), "4:20");
}

TEST(JsonPlaces, OfWhatIsNotThereTheParentCountsIfItIsThere)
{
    EXPECT_EQ(placeOf(description, "/files/2"), "2:3");
    EXPECT_EQ(placeOf(description, "/nothing"), "1:1");
    EXPECT_EQ(placeOf(description, "/files/2/name"), "-");
}

TEST(JsonPlaces, EntriesAndBoardObjectsAreThoseOfTheListsThatCount)
{
    const std::string_view text = R"({"files":[{"name":0},{"boards":[1]},5],
"files":[{"boards":[9,8]},
{"boards":[1,2],"id":4,
"boards":[3,
{"id":5}]},
{"name":6}]})";
    Asked asked({{-1, -1, "/files"},
                 {0, -1, "/files/0"},
                 {1, -1, "/files/1/boards"},
                 {1, -1, "/files/1/id"},
                 {1, 0, "/files/1/boards/0"},
                 {1, 1, "/files/1/boards/1/id"},
                 {1, 1, "/files/1/boards/1/name"},
                 {2, -1, "/files/2/name"},
                 {2, -1, "/files/2/boards"},
                 {3, -1, "/files/3/name"}});
    findJsonPlaces(text, asked);
    std::string places;
    for (const auto& offset : asked.offsets) {
        places += (offset ? shown(TextPlaces(text).at(*offset)) : "-") + " ";
    }
    EXPECT_EQ(places, "2:1 2:10 4:1 3:17 4:11 5:2 5:1 6:2 6:1 - ");
}

TEST(JsonPlaces, WhatIsAskedOfABoardObjectThatIsNotThereDoesNotHideTheEntriesBehind)
{
    Asked asked({{0, 5, "/files/0/boards/5/id"}, {0, 6, "/files/0/boards/6"}, {1, -1, "/files/1/id"}});
    findJsonPlaces(R"({"files":[{"boards":[{"id":1}]},{"id":2}]})", asked);
    EXPECT_FALSE(asked.offsets[0]);
    EXPECT_FALSE(asked.offsets[1]);
    EXPECT_EQ(asked.offsets[2], 33U);
}

TEST(JsonPlaces, EachPointerGetsItsOwnPlace)
{
    const auto places = findJsonPlaces("[7,8]", {"/1", "", "/2", "/1"}).places;
    ASSERT_EQ(places.size(), 4U);
    EXPECT_EQ(shown(*places[0]), "1:4");
    EXPECT_EQ(shown(*places[1]), "1:1");
    EXPECT_EQ(shown(*places[2]), "1:1");
    EXPECT_EQ(shown(*places[3]), "1:4");
}

TEST(JsonPlaces, AreToldInAnyOrder)
{
    TextPlaces places("a\nbc\n\nd");
    std::string told;
    for (const std::size_t offset : {6U, 3U, 2U, 0U, 5U, 1U, 7U}) {
        told += shown(places.at(offset)) + " ";
    }
    EXPECT_EQ(told, "4:1 2:2 2:1 1:1 3:1 1:2 4:2 ");
}

TEST(JsonPlaces, ColumnsCountBytes)
{
    EXPECT_EQ(placeOf("{\"\xC3\xA4\":1,\"b\":2}", "/b"), "1:9");
    EXPECT_EQ(placeOf("\xEF\xBB\xBF{\"b\":2}", "/b"), "1:5");
}

TEST(JsonPlaces, OfMembersWithTheSameKeyTheLastCountsAndIsNamed)
{
    const Found found = findJsonPlaces("{\"a\":{\"b\":1,\n\"b\":2},\"a\":{\"c\":3,\"b\":4}}", {"/a", "/a/b"});
    ASSERT_EQ(found.duplicateKeys.size(), 2U);
    EXPECT_EQ(found.duplicateKeys[0].pointer, "/a/b");
    EXPECT_EQ(shown(found.duplicateKeys[0].place), "2:1");
    EXPECT_EQ(found.duplicateKeys[1].pointer, "/a");
    EXPECT_EQ(shown(found.duplicateKeys[1].place), "2:8");
    EXPECT_EQ(shown(*found.places[0]), "2:8");
    EXPECT_EQ(shown(*found.places[1]), "2:19");
}

TEST(JsonPlaces, EachLaterMemberWithAKeyIsADuplicateHoweverItIsWritten)
{
    const Found found = findJsonPlaces(R"([{"b/":0,"aa":1,"\u0061a":2,"b\/":3,"a\u0061":4,"A":5}])", {});
    ASSERT_EQ(found.duplicateKeys.size(), 3U);
    EXPECT_EQ(found.duplicateKeys[0].pointer, "/0/aa");
    EXPECT_EQ(shown(found.duplicateKeys[0].place), "1:17");
    EXPECT_EQ(found.duplicateKeys[1].pointer, "/0/b~1");
    EXPECT_EQ(shown(found.duplicateKeys[1].place), "1:29");
    EXPECT_EQ(found.duplicateKeys[2].pointer, "/0/aa");
    EXPECT_EQ(shown(found.duplicateKeys[2].place), "1:37");
}

TEST(JsonPlaces, DuplicatesAreFoundAmongManyKeysAndInObjectsThatDoNotEnd)
{
    std::string text = "{\"files\":[0,{";
    for (unsigned number = 0; number < 100000; ++number) {
        text += '"' + std::to_string(number) + "\":1,";
    }
    const Found found = findJsonPlaces(text + "\"99999\":1", {});
    ASSERT_EQ(found.duplicateKeys.size(), 1U);
    EXPECT_EQ(found.duplicateKeys[0].pointer, "/files/1/99999");
    EXPECT_EQ(shown(found.duplicateKeys[0].place), "1:988904");
}

TEST(JsonPlaces, TheSameKeyInTwoObjectsIsNoDuplicate)
{
    EXPECT_TRUE(findJsonPlaces("[{\"a\":{\"a\":1}},{\"a\":2}]", {}).duplicateKeys.empty());
}

TEST(JsonPlaces, ATextThatIsNoJsonIsFaultedAtTheTokenOrTheByteThatIsWrong)
{
    EXPECT_EQ(faultOf("{\"a\": 123, }"),
              "1:12 syntax error while parsing object key - unexpected '}'; expected string literal");
    EXPECT_EQ(faultOf("[1,\n 2,\n,3]"),
              "3:1 syntax error while parsing value - unexpected ','; expected '[', '{', or a literal");
    EXPECT_EQ(faultOf("{\"a\"\n  1234}"),
              "2:3 syntax error while parsing object separator - unexpected number literal; expected ':'");
    EXPECT_EQ(faultOf("[1,2"), "1:5 syntax error while parsing array - unexpected end of input; expected ']'");
    EXPECT_EQ(faultOf(""),
              "1:1 syntax error while parsing value - unexpected end of input; expected '[', '{', or a literal");
    EXPECT_EQ(faultOf("[\"a\xFF\"]"), "1:4 syntax error while parsing value - invalid string: ill-formed UTF-8 byte");
    EXPECT_EQ(faultOf("// no"), "1:1 syntax error while parsing value - invalid literal");
    EXPECT_EQ(faultOf("[1e999]"), "1:2 number overflow parsing '1e999'");
}

TEST(JsonPlaces, ASoundTextHasNoFault)
{
    EXPECT_EQ(faultOf(description), "");
}

TEST(JsonPlaces, AsManyLevelsAsTheLibraryTakesAreTaken)
{
    EXPECT_EQ(faultOf(std::string(512, '[') + std::string(512, ']')), "");
    EXPECT_EQ(faultOf(std::string(513, '[') + std::string(513, ']')), "1:513 more than 512 nested levels");
}

TEST(JsonPlaces, WhatStandsBeforeAFaultHasItsPlace)
{
    const Found found = findJsonPlaces("{\"a\":1,\n\"b\":}", {"/a", "/b"});
    EXPECT_EQ(shown(found.fault->place), "2:5");
    EXPECT_EQ(shown(*found.places[0]), "1:2");
    EXPECT_EQ(shown(*found.places[1]), "2:1");
}

}  // namespace
}  // namespace TrellanTool
