// What `check` finds of a description's members: those that stand twice, and those that the format does not have.
#include <nlohmann/json.hpp>

#include "tool/documents/CheckedArchive.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class MemberFindings : public CheckedArchive {};

}  // namespace

TEST_F(MemberFindings, TellEachMemberThatStandsTwice)
{
    addFile("a.bin", "123456789");
    describe(R"({
  "info": {"formatVersion": "1.0", "archiveVersion": "2.0", "productName": "P", "archiveName": "N", "productName": "Q"},
  "files": [
    {"name": "a.bin", "sequence": 1, "checksumCrc32": 3421780262, "id": 1, "id": 1,
     "boards": [{"boardType": "A"}, {"boardType": "B", "boardId": 1, "boardId": 2}]}
  ],
  "info": {"formatVersion": "1.0", "archiveVersion": "2.0", "productName": "P", "archiveName": "N"}
})");
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:101: error: the member stands in its object already, and the last one counts: take one away [duplicate-key])",
            R"(archive.json:4:76: error: files[0] "a.bin": the member stands in its object already, and the last one counts: take one away [duplicate-key])",
            R"(archive.json:5:70: error: files[0] boards[1] "a.bin": the member stands in its object already, and the last one counts: take one away [duplicate-key])",
            R"(archive.json:7:3: error: the member stands in its object already, and the last one counts: take one away [duplicate-key])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"duplicate-key","severity":"error","file":null,"board":null,"pointer":"/info/productName","line":2,"column":101,"message":"the member stands in its object already, and the last one counts: take one away"})",
            R"({"rule":"duplicate-key","severity":"error","file":0,"board":null,"pointer":"/files/0/id","line":4,"column":76,"message":"the member stands in its object already, and the last one counts: take one away"})",
            R"({"rule":"duplicate-key","severity":"error","file":0,"board":1,"pointer":"/files/0/boards/1/boardId","line":5,"column":70,"message":"the member stands in its object already, and the last one counts: take one away"})",
            R"({"rule":"duplicate-key","severity":"error","file":null,"board":null,"pointer":"/info","line":7,"column":3,"message":"the member stands in its object already, and the last one counts: take one away"})"));
}

TEST_F(MemberFindings, TellTheUnknownMembersOfWhatCounts)
{
    addFile("a.bin", "123456789");
    describe(R"({
  "info": [{"x": 1}], "z": 0,
  "files": [{"name": "b.bin", "x": 1}, {"y": 1}],
  "z": {"files": [{"w": 1}]},
  "files": [
    {"x": 1, "name": "a.bin", "sequence": 1, "checksumCrc32": 3421780262, "boards": [{"x": 1}], "id": 1,
     "boards": [{"boardType": "A", "v": 1, "boardId": 1}], "x": {"x": 1}}
  ],
  "info": {"formatVersion": "1.0", "archiveVersion": "2.0", "productName": "P", "archiveName": "N"}
})");
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:4:3: warning: the format has no "z" here; the nearest is "info" [unknown-key])",
            R"(archive.json:4:3: error: the member stands in its object already, and the last one counts: take one away [duplicate-key])",
            R"(archive.json:5:3: error: the member stands in its object already, and the last one counts: take one away [duplicate-key])",
            R"(archive.json:7:6: error: files[0] "a.bin": the member stands in its object already, and the last one counts: take one away [duplicate-key])",
            R"(archive.json:7:36: warning: files[0] boards[0] "a.bin": the format has no "v" here; the nearest is "id" [unknown-key])",
            R"(archive.json:7:60: warning: files[0] "a.bin": the format has no "x" here; the nearest is "id" [unknown-key])",
            R"(archive.json:7:60: error: files[0] "a.bin": the member stands in its object already, and the last one counts: take one away [duplicate-key])",
            R"(archive.json:9:3: error: the member stands in its object already, and the last one counts: take one away [duplicate-key])"));
}

TEST_F(MemberFindings, TellNoUnknownMembersOfWhatIsOfAnotherType)
{
    describe(R"({"info": [{"x": 1}], "files": {"0": {"x": 1}}})");
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:1:2: error: The archive description file is corrupt. Property "info" is missing or invalid. [structure])",
            R"(archive.json:1:22: error: The archive description file is corrupt. Property "files" is missing or invalid. [structure])"));
}

TEST_F(MemberFindings, AreOfNoEntryWhereThereAreNone)
{
    describe(R"({"files": {"0": {"a/b": 1, "a/b": 2}}})");
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:1:1: error: The archive description file is corrupt. Property "info" is missing or invalid. [structure])",
            R"(archive.json:1:2: error: The archive description file is corrupt. Property "files" is missing or invalid. [structure])",
            R"(archive.json:1:28: error: the member stands in its object already, and the last one counts: take one away [duplicate-key])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"structure","severity":"error","file":null,"board":null,"pointer":"","line":1,"column":1,"message":"The archive description file is corrupt. Property \"info\" is missing or invalid."})",
            R"({"rule":"structure","severity":"error","file":null,"board":null,"pointer":"/files","line":1,"column":2,"message":"The archive description file is corrupt. Property \"files\" is missing or invalid."})",
            R"({"rule":"duplicate-key","severity":"error","file":null,"board":null,"pointer":"/files/0/a~1b","line":1,"column":28,"message":"the member stands in its object already, and the last one counts: take one away"})"));
}

TEST_F(MemberFindings, AreOfNoEntryWhereTheMemberIsNoPosition)
{
    const std::string text =
        R"({"files": {"x": 1, "x": 2, "-1": 1, "-1": 2, "1x": 1, "1x": 2, "4294967296": 1, "4294967296": 2})";
    for (const char* const end : {"}", ""}) {  // as a whole, and cut short
        describe(text + end);
        Texts found;
        for (const std::string& record : records()) {
            const nlohmann::json finding = nlohmann::json::parse(record);
            if (finding["rule"] == "duplicate-key") {
                found.push_back(finding["file"].dump() + " " + finding["pointer"].get<std::string>());
            }
        }
        EXPECT_THAT(found, ElementsAre("null /files/x", "null /files/-1", "null /files/1x", "null /files/4294967296"));
    }
}

TEST_F(MemberFindings, AreOfNoEntryWhereThereAreNoneInATextThatEndsEarly)
{
    describe(R"({"files": {"3": {"name": "x", "name": "y"}}, "info": {},)");
    Texts found;
    for (const std::string& record : records()) {
        const nlohmann::json finding = nlohmann::json::parse(record);
        if (finding["rule"] == "duplicate-key") {
            found.push_back(finding["file"].dump() + " " + finding["pointer"].get<std::string>());
        }
    }
    EXPECT_THAT(found, ElementsAre("null /files/3/name"));
}

TEST_F(MemberFindings, AreOfNoBoardObjectInAListBehindBoardsThatAreNone)
{
    for (const std::string boards : {"1", "\"x\"", "null"}) {
        describe(R"({"info": {}, "files": [{"boards": )" + boards + R"(}, [{"zzz": 1}], {}]})");
        for (const std::string& record : records()) {
            EXPECT_NE(nlohmann::json::parse(record)["rule"], "unknown-key") << record;
        }
    }
}

TEST_F(MemberFindings, NameTheEntryAsItsLastNameDoes)
{
    addFile("b.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "name": "b.bin", "sequence": 1, "checksumCrc32": 3421780262, "id": 1, "boardType": "A"})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:19: error: files[0] "b.bin": the member stands in its object already, and the last one counts: take one away [duplicate-key])"));
}

TEST_F(MemberFindings, AreNoneOfOneMemberInSeveralObjects)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "checksumCrc32": 3421780262, "boardId": 1, "id": 1, "boards": [{"boardType": "A", "boardId": 2, "id": 2}, {"boardType": "B", "boardId": 2, "id": 2}]})",
         R"({"name": "a.bin", "sequence": 1, "checksumCrc32": 3421780262, "boardId": 1, "id": 1, "boardType": "A"})"});
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(MemberFindings, TellMembersThatTheFormatDoesNotHaveAndTheNearest)
{
    addFile("a.bin", "123456789");
    describe(R"({
  "info": {"formatVersion": "1.0", "archiveVersion": "2.0", "productName": "P", "archiveName": "N", "ArchiveVariant": "V"},
  "file": [],
  "files": [
    {"name": "a.bin", "sequence": 1, "checksumCrc32": 3421780262, "id": 1, "hwCompatibilityID": 1,
     "boards": [{"boardType": "A", "checksumCRC": 5, "boardtype": "B"}]}
  ]
})");
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:101: warning: the format has no "ArchiveVariant" here; the nearest is "archiveVariant" [unknown-key])",
            R"(archive.json:3:3: warning: the format has no "file" here; the nearest is "files" [unknown-key])",
            R"(archive.json:5:76: warning: files[0] "a.bin": the format has no "hwCompatibilityID" here; the nearest is "hwCompatibilityId" [unknown-key])",
            R"(archive.json:6:36: warning: files[0] boards[0] "a.bin": the format has no "checksumCRC" here; the nearest is "targetPath" [unknown-key])",
            R"(archive.json:6:54: warning: files[0] boards[0] "a.bin": the format has no "boardtype" here; the nearest is "boardType" [unknown-key])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"unknown-key","severity":"warning","file":null,"board":null,"pointer":"/info/ArchiveVariant","line":2,"column":101,"message":"the format has no \"ArchiveVariant\" here; the nearest is \"archiveVariant\""})",
            R"({"rule":"unknown-key","severity":"warning","file":null,"board":null,"pointer":"/file","line":3,"column":3,"message":"the format has no \"file\" here; the nearest is \"files\""})",
            R"({"rule":"unknown-key","severity":"warning","file":0,"board":null,"pointer":"/files/0/hwCompatibilityID","line":5,"column":76,"message":"the format has no \"hwCompatibilityID\" here; the nearest is \"hwCompatibilityId\""})",
            R"({"rule":"unknown-key","severity":"warning","file":0,"board":0,"pointer":"/files/0/boards/0/checksumCRC","line":6,"column":36,"message":"the format has no \"checksumCRC\" here; the nearest is \"targetPath\""})",
            R"({"rule":"unknown-key","severity":"warning","file":0,"board":0,"pointer":"/files/0/boards/0/boardtype","line":6,"column":54,"message":"the format has no \"boardtype\" here; the nearest is \"boardType\""})"));
}

TEST_F(MemberFindings, NameNoEntryThatHasNoName)
{
    describe(R"({
  "info": {"formatVersion": "1.0", "archiveVersion": "2.0", "productName": "P", "archiveName": "N"},
  "files": [
    {"featureLevel": 9},
    {"odd": 1},
    {"name": "a.bin", "odd": 1},
    {"odd": 1}
  ]
})");
    std::vector<std::string> odd;
    for (const std::string& line : lines()) {
        if (line.ends_with("[unknown-key]")) {
            odd.push_back(line.substr(0, line.find(" the format")));
        }
    }
    EXPECT_THAT(odd,
                ElementsAre("archive.json:5:6: warning: files[1]:", "archive.json:6:23: warning: files[2] \"a.bin\":",
                            "archive.json:7:6: warning: files[3]:"));
}

TEST_F(MemberFindings, AreNoneOfEveryMemberThatTheFormatHas)
{
    addFile("a.bin", "123456789");
    describe(R"({
  "info": {"formatVersion": "1.0", "archiveVersion": "2.0", "productName": "P", "archiveName": "N", "archiveVariant": "V"},
  "files": [
    {"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "boardVariant": "V", "boardId": 1,
     "hwCompatibilityId": 1, "swCompatibilityId": 1, "version": "1.0", "checksumCrc32": 3421780262, "mode": "upgrade",
     "featureLevel": 2},
    {"name": "a.bin", "sequence": 1, "checksumCrc32": 3421780262,
     "boards": [{"boardType": "A", "targetPath": "a", "boardVariant": "V", "boardId": 1, "hwCompatibilityId": 1,
                 "swCompatibilityId": 1}]}
  ]
})");
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}
