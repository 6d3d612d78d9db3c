// What `check` finds about what entries are given, and about their board objects.
#include "tool/documents/CheckedArchive.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ReachFindings : public CheckedArchive {};

}  // namespace

TEST_F(ReachFindings, TellAnEntryThatOneBeforeItCovers)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": ["A", "B"], "id": 1, "checksumCrc32": 3421780262})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "B", "id": 1, "checksumCrc32": 3421780262})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:3:1: warning: files[1] "a.bin": files[0] takes every element that this entry fits, and no target will ever be given it: put it before, narrow what comes before, or take it away [unreachable])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"unreachable","severity":"warning","file":1,"board":null,"pointer":"/files/1","line":3,"column":1,"message":"files[0] takes every element that this entry fits, and no target will ever be given it: put it before, narrow what comes before, or take it away","coveredBy":[0]})"));
}

TEST_F(ReachFindings, TellAnEntryThatSeveralBeforeItCoverTogether)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262, "boardVariant": "V"})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 2, "checksumCrc32": 3421780262})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262, "boardVariant": null})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262, "boardVariant": ["V", null]})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:5:1: warning: files[3] "a.bin": files[0] and files[2] take every element that this entry fits, and no target will ever be given it: put it before, narrow what comes before, or take it away [unreachable])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"unreachable","severity":"warning","file":3,"board":null,"pointer":"/files/3","line":5,"column":1,"message":"files[0] and files[2] take every element that this entry fits, and no target will ever be given it: put it before, narrow what comes before, or take it away","coveredBy":[0,2]})"));
}

TEST_F(ReachFindings, NameAllThatCoverAnEntryTogether)
{
    addFile("a.bin", "123456789");
    Texts entries;
    for (const char* const variant : {"\"U\"", "\"V\"", "null", "[\"U\", \"V\", null]"}) {
        entries.push_back(
            R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262, "boardVariant": )" +
            std::string(variant) + "}");
    }
    describeEntries(entries);
    const Texts found = lines();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_THAT(found[0], testing::HasSubstr(": files[0], files[1] and files[2] take every element "));
}

TEST_F(ReachFindings, TellOnceThatATypeStandsInABoardObjectBefore)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "id": 1, "checksumCrc32": 3421780262, "boards": [{"boardType": "A"}, {"boardType": ["A", "B", "A"]}]})"});
    const Texts found = records();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_THAT(found[0], testing::HasSubstr(R"("pointer":"/files/0/boards/1/boardType/0")"));
}

TEST_F(ReachFindings, TellAnEntryThatNothingFits)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262, "boardVariant": ""})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:1: warning: files[0] "a.bin": no element can ever fit this entry: correct what it accepts [unreachable])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"unreachable","severity":"warning","file":0,"board":null,"pointer":"/files/0","line":2,"column":1,"message":"no element can ever fit this entry: correct what it accepts","coveredBy":[]})"));
}

TEST_F(ReachFindings, AreNoneOfEntriesThatShareNothing)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 2, "checksumCrc32": 3421780262})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "B", "id": 1, "checksumCrc32": 3421780262})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262, "boardVariant": "V"})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262, "hwCompatibilityId": 1})"});
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(ReachFindings, NoteAnEntryOfWhichOthersTakeSome)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262, "boardId": [7, 8], "hwCompatibilityId": 3})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262, "boardVariant": "V", "boardId": 9})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262, "boardVariant": ["V", null], "boardId": [8, 9], "hwCompatibilityId": [3, 0]})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:4:1: note: files[2] "a.bin": files[0] and files[1] take some of the elements that this entry fits, such as board type "A", variant null, board id 8, id 1, hardware 3, software 0 [overlap])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"overlap","severity":"note","file":2,"board":null,"pointer":"/files/2","line":4,"column":1,"message":"files[0] and files[1] take some of the elements that this entry fits, such as board type \"A\", variant null, board id 8, id 1, hardware 3, software 0","coveredBy":[0,1],"example":{"boardType":"A","boardVariant":null,"boardId":8,"hwCompatibilityId":3,"swCompatibilityId":0,"id":1,"targetPath":null}})"));
}

TEST_F(ReachFindings, AreNoneOfFilesForTheFlashDriveAndEntriesWithAnId)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "a"})"});
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(ReachFindings, AreNoneOfFilesForTheFlashDriveWhateverTheyFit)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "a"})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "b"})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "a", "boardVariant": ""})"});
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(ReachFindings, TellABoardObjectThatNeverDecides)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "id": 1, "checksumCrc32": 3421780262, "boards": [{"boardType": ["A", "B"]}, {"boardType": "C"}, {"boardType": ["B", "A"], "boardId": 1}]})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:130: warning: files[0] boards[2] "a.bin": each of its board types stands in a board object before it, which decides: put both into one, or into two entries [unreachable-board])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"unreachable-board","severity":"warning","file":0,"board":2,"pointer":"/files/0/boards/2","line":2,"column":130,"message":"each of its board types stands in a board object before it, which decides: put both into one, or into two entries"})"));
}

TEST_F(ReachFindings, TellABoardObjectWithoutABoardType)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "id": 1, "checksumCrc32": 3421780262, "boards": [{"boardType": "A"}, {"boardType": []}]})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:103: warning: files[0] boards[1] "a.bin": it names no board type, and never decides: name one, or take it away [unreachable-board])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"unreachable-board","severity":"warning","file":0,"board":1,"pointer":"/files/0/boards/1","line":2,"column":103,"message":"it names no board type, and never decides: name one, or take it away"})"));
}

TEST_F(ReachFindings, TellEachTypeOfABoardObjectForWhichItDoesNotDecide)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "id": 1, "checksumCrc32": 3421780262, "boards": [{"boardType": ["A", "B"]}, {"boardType": ["C", "A", "B"]}]})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:130: warning: files[0] boards[1] "a.bin": the board type "A" stands in a board object before it, which decides: put both into one, or into two entries [unreachable-board])",
            R"(archive.json:2:135: warning: files[0] boards[1] "a.bin": the board type "B" stands in a board object before it, which decides: put both into one, or into two entries [unreachable-board])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"unreachable-board","severity":"warning","file":0,"board":1,"pointer":"/files/0/boards/1/boardType/1","line":2,"column":130,"message":"the board type \"A\" stands in a board object before it, which decides: put both into one, or into two entries"})",
            R"({"rule":"unreachable-board","severity":"warning","file":0,"board":1,"pointer":"/files/0/boards/1/boardType/2","line":2,"column":135,"message":"the board type \"B\" stands in a board object before it, which decides: put both into one, or into two entries"})"));
}

TEST_F(ReachFindings, AreNoneOfBoardObjectsThatAllDecide)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "id": 1, "checksumCrc32": 3421780262, "boards": [{"boardType": ["A", "A"]}, {"boardType": ["B", "C"]}]})"});
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}
