// Findings in few bytes: they are taken out as they were put in, and the many that say the same cost next to nothing.
#include <gtest/gtest.h>

#include <random>

#include "allocations/Allocations.h"
#include "base/FindingList.h"

using ZoNTrellanInspector::ZoTFinding;
using ZoNTrellanInspector::ZoTKeys;
using ZoNTrellanInspector::ZoTSeverity;
using ZoNUpdateBase::FindingForms;
using ZoNUpdateBase::FindingList;

namespace {

ZoTFinding findingAbout(std::int32_t entry, std::int32_t board, const std::string& message)
{
    ZoTFinding finding{};
    finding.rule = "structure";
    finding.severity = ZoTSeverity::ERROR;
    finding.entry = entry;
    finding.board = board;
    finding.pointer = "/files/" + std::to_string(entry);
    finding.message = message;
    finding.isInDescription = true;
    return finding;
}

void expectSame(const ZoTFinding& found, const ZoTFinding& expected)
{
    EXPECT_EQ(found.rule, expected.rule);
    EXPECT_EQ(found.severity, expected.severity);
    EXPECT_EQ(found.entry, expected.entry);
    EXPECT_EQ(found.board, expected.board);
    EXPECT_EQ(found.name, expected.name);
    EXPECT_EQ(found.pointer, expected.pointer);
    EXPECT_EQ(found.message, expected.message);
    EXPECT_EQ(found.isInDescription, expected.isInDescription);
    EXPECT_EQ(found.coveredBy, expected.coveredBy);
    EXPECT_EQ(found.hasExample, expected.hasExample);
    EXPECT_EQ(found.example.boardType, expected.example.boardType);
    EXPECT_EQ(found.example.hasBoardVariant, expected.example.hasBoardVariant);
    EXPECT_EQ(found.example.boardVariant, expected.example.boardVariant);
    EXPECT_EQ(found.example.boardId, expected.example.boardId);
    EXPECT_EQ(found.example.hwCompatibilityId, expected.example.hwCompatibilityId);
    EXPECT_EQ(found.example.swCompatibilityId, expected.example.swCompatibilityId);
    EXPECT_EQ(found.example.isFile, expected.example.isFile);
    EXPECT_EQ(found.example.id, expected.example.id);
    EXPECT_EQ(found.example.targetPath, expected.example.targetPath);
}

// Pieces of texts that have something to do with how they are kept: numbers, those of entries and boards, and marks.
std::string someText(std::mt19937& random)
{
    static const std::vector<std::string> pieces = {"0",
                                                    "7",
                                                    "007",
                                                    "12",
                                                    "-3",
                                                    "999999999",
                                                    "1000000000",
                                                    "4294967295",
                                                    "999999999999999999",
                                                    "1000000000000000000",
                                                    "18446744073709551615",
                                                    "18446744073709551616",
                                                    "a",
                                                    "",
                                                    " ",
                                                    "/",
                                                    "\"",
                                                    "\x01",
                                                    "\x02",
                                                    "\x04",
                                                    std::string(1, '\0'),
                                                    "\xC3\xA4",
                                                    std::string(600, 'x'),
                                                    "File entry ",
                                                    "/files/"};
    std::string text;
    for (unsigned count = random() % 6; count > 0; --count) {
        text += pieces[random() % pieces.size()];
    }
    return text;
}

ZoTFinding someFinding(std::mt19937& random)
{
    ZoTFinding finding{};
    finding.rule = random() % 2 == 0 ? "overlap" : "number-range";
    finding.severity = static_cast<ZoTSeverity>(random() % 3);
    finding.entry = static_cast<std::int32_t>(random() % 9) - 1;
    finding.board = random() % 3 == 0 ? 2147483647 : static_cast<std::int32_t>(random() % 14) - 1;
    finding.name = random() % 2 == 0 ? "n.bin" : someText(random);
    finding.pointer = someText(random);
    finding.message = someText(random);
    finding.isInDescription = random() % 4 != 0;
    if (random() % 5 == 0) {
        finding.coveredBy = {static_cast<std::uint32_t>(random()), 3, 0};
    }
    finding.hasExample = random() % 9 == 0;
    if (finding.hasExample) {
        finding.example = {someText(random), true, someText(random), 4294967295u, 2, 3, true, 5, someText(random)};
    }
    return finding;
}

}  // namespace

TEST(FindingList, GivesEachFindingAsItWasPutInWhateverItSays)
{
    std::mt19937 random(1);
    FindingList list;
    std::vector<ZoTFinding> expected;
    for (unsigned i = 0; i < 5000; ++i) {
        expected.push_back(someFinding(random));
        list.add(expected.back());
        expected.push_back(expected.back());  // what is said again is kept in another way
        list.add(expected.back());
    }
    ASSERT_EQ(list.size(), expected.size());
    ZoTFinding found;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        list.get(i, found);
        expectSame(found, expected[i]);
    }
    for (unsigned i = 0; i < 2000; ++i) {
        const std::size_t position = random() % expected.size();
        list.get(position, found);
        expectSame(found, expected[position]);
    }
}

TEST(FindingList, GivesFindingsAsTheyWerePutInAlsoWhereMoreSayDifferentThingsThanAreKeptOnce)
{
    constexpr std::int32_t count = 5000;
    // Words without digits: each finding says something else.
    const auto messageOf = [](std::int32_t number) {
        std::string text;
        for (; number > 0; number /= 26) {
            text += static_cast<char>('a' + number % 26);
        }
        return text;
    };
    FindingList list;
    for (std::int32_t i = 0; i < 2 * count; ++i) {
        list.add(findingAbout(i, -1, messageOf(i / 2 % count)));
    }
    ASSERT_EQ(list.size(), 2u * count);
    ZoTFinding found;
    for (std::int32_t i = 0; i < 2 * count; ++i) {
        list.get(static_cast<std::size_t>(i), found);
        expectSame(found, findingAbout(i, -1, messageOf(i / 2 % count)));
    }
}

TEST(FindingList, IsMergedInTheOrderOfTheDescriptionAndOfTheLists)
{
    const auto forms = std::make_shared<FindingForms>();
    std::vector<FindingList> lists;
    lists.emplace_back(forms);
    lists.back().add(findingAbout(0, -1, "a"));
    lists.back().add(findingAbout(2, 1, "b"));
    lists.emplace_back(forms);
    lists.back().add(findingAbout(-1, -1, "c"));
    lists.back().add(findingAbout(0, -1, "d"));
    lists.back().add(findingAbout(2, -1, "e"));
    ZoTFinding outside = findingAbout(-1, -1, "f");
    outside.isInDescription = false;
    lists.emplace_back(forms);
    lists.back().add(outside);
    lists.emplace_back(forms);
    lists.back().add(findingAbout(0, -1, "g"));
    const FindingList merged = FindingList::merge(lists);
    std::string messages;
    ZoTFinding found;
    for (std::size_t i = 0; i < merged.size(); ++i) {
        merged.get(i, found);
        messages += found.message;
    }
    EXPECT_EQ(messages, "cadgebf");
}

TEST(FindingList, KeepsWhatIsSaidOftenInFewBytesHoweverMuchElseWasSaidTwice)
{
    FindingList list;
    for (std::int32_t i = 0; i < 3000; ++i) {
        const std::string message(static_cast<std::size_t>(i % 100) + 1, static_cast<char>('A' + i / 100));
        list.add(findingAbout(2 * i, -1, message));
        list.add(findingAbout(2 * i + 1, -1, message));
    }
    constexpr std::int32_t count = 100000;
    std::size_t bytes = 0;
    for (std::int32_t entry = 6000; entry < 6000 + count; ++entry) {
        const ZoTFinding finding = findingAbout(entry, -1, "This is said of each.");
        bytes += bytesOf([&] { list.add(finding); });
    }
    EXPECT_LT(bytes, 12 * static_cast<std::size_t>(count));
    ZoTFinding found;
    list.get(6000 + count - 1, found);
    expectSame(found, findingAbout(6000 + count - 1, -1, "This is said of each."));
}

TEST(FindingList, AsksForTwelveBytesAtMostForAFindingThatSaysTheSameOfEachEntry)
{
    constexpr std::int32_t count = 100000;
    ZoTFinding finding = findingAbout(0, -1, "");
    FindingList list;
    list.add(finding);
    std::size_t bytes = 0;
    for (std::int32_t entry = 1; entry < count; ++entry) {
        finding = findingAbout(entry, -1, "File entry " + std::to_string(entry) + " is invalid.");
        bytes += bytesOf([&] { list.add(finding); });
    }
    EXPECT_LT(bytes, 12 * static_cast<std::size_t>(count));  // given back or not: blocks grow
    list.get(count - 1, finding);
    EXPECT_EQ(finding.message, "File entry 99999 is invalid.");
    EXPECT_EQ(finding.pointer, "/files/99999");
}
