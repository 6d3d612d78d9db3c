// What `check` finds in a description: its text, its structure, and its members one by one.
#include "support/UpdateFiles.h"
#include "tool/documents/CheckedArchive.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class DescriptionFindings : public CheckedArchive {};

}  // namespace

TEST_F(DescriptionFindings, AreNoneInASoundArchive)
{
    addFile("a.bin", "123456789");
    describeEntries({R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262})"});
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(DescriptionFindings, NameThePlaceWhereTheTextIsNoJson)
{
    addFile("a.bin", "123456789");
    describe("{\"info\": {},\n \"files\": [}");
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:12: error: The archive description file {folder}/archive/archive.json is corrupt. Invalid JSON data. (syntax error while parsing value - unexpected '}'; expected '[', '{', or a literal) [syntax])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"x({"rule":"syntax","severity":"error","file":null,"board":null,"pointer":null,"line":2,"column":12,"message":"The archive description file {folder}/archive/archive.json is corrupt. Invalid JSON data. (syntax error while parsing value - unexpected '}'; expected '[', '{', or a literal)"})x"));
}

TEST_F(DescriptionFindings, NameTheEndOfATextThatIsCutShort)
{
    addFile("a.bin", "123456789");
    describe(R"({"info": {"a": 1, "a": 2}, "files": [)");
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:1:19: error: the member stands in its object already, and the last one counts: take one away [duplicate-key])",
            R"(archive.json:1:38: error: The archive description file {folder}/archive/archive.json is corrupt. Invalid JSON data. (syntax error while parsing value - unexpected end of input; expected '[', '{', or a literal) [syntax])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"duplicate-key","severity":"error","file":null,"board":null,"pointer":"/info/a","line":1,"column":19,"message":"the member stands in its object already, and the last one counts: take one away"})",
            R"x({"rule":"syntax","severity":"error","file":null,"board":null,"pointer":null,"line":1,"column":38,"message":"The archive description file {folder}/archive/archive.json is corrupt. Invalid JSON data. (syntax error while parsing value - unexpected end of input; expected '[', '{', or a literal)"})x"));
}

TEST_F(DescriptionFindings, AreNoneOfAByteOrderMarkAndWindowsLineEnds)
{
    describe(
        "\xEF\xBB\xBF{\"info\": {\"formatVersion\": \"1.0\", \"archiveVersion\": \"2.0\", \"productName\": \"P\",\r\n"
        "\"archiveName\": \"N\"},\r\n\"files\": []}\r\n");
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(DescriptionFindings, CountLinesBehindAByteOrderMarkAndWithWindowsLineEnds)
{
    describe(
        "\xEF\xBB\xBF{\"info\": {\"formatVersion\": \"1.0\", \"archiveVersion\": \"2.0\", \"productName\": \"P\",\r\n"
        "\"archiveName\": \"N\"},\r\n \"file\": 1, \"files\": []}\r\n");
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:3:2: warning: the format has no "file" here; the nearest is "files" [unknown-key])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"unknown-key","severity":"warning","file":null,"board":null,"pointer":"/file","line":3,"column":2,"message":"the format has no \"file\" here; the nearest is \"files\""})"));
}

TEST_F(DescriptionFindings, NameTheByteThatIsNoUtf8)
{
    describe("{\"info\": \"\xFF\"}");
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:1:11: error: The archive description file {folder}/archive/archive.json is corrupt. Invalid JSON data. (syntax error while parsing value - invalid string: ill-formed UTF-8 byte) [syntax])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"x({"rule":"syntax","severity":"error","file":null,"board":null,"pointer":null,"line":1,"column":11,"message":"The archive description file {folder}/archive/archive.json is corrupt. Invalid JSON data. (syntax error while parsing value - invalid string: ill-formed UTF-8 byte)"})x"));
}

TEST_F(DescriptionFindings, TellEachThingThatTheReaderRefuses)
{
    addFile("a.bin", UpdateFiles::bitstreamFile(78, 88));  // which need not tell its checksum
    describe(R"({
  "info": {"formatVersion": "2.0", "productName": 7, "archiveName": "N", "archiveVersion": "new"},
  "files": [
    7,
    {"sequence": 1, "boardType": "A", "id": 1},
    {"name": "a.bin", "sequence": 1, "boardType": "A", "id": "1", "boardId": [0, "0"], "mode": "downgrade"},
    {"name": "a.bin", "sequence": 1, "boards": [{"id": 1}, {"boardType": "A", "version": "1.0", "targetPath": "a"}]},
    {"name": "a.bin", "sequence": 1, "boardType": "A"}
  ]
})");
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:12: error: This firmware archive cannot be processed by the installed firmware. You might need to install another (newer) firmware first. [structure])",
            R"(archive.json:2:36: error: The archive description file is corrupt. "productName" is missing or invalid. [structure])",
            R"(archive.json:2:74: error: The archive description file is corrupt. "archiveVersion" is invalid. [structure])",
            R"(archive.json:4:5: error: files[0]: File entry 0 is invalid. [structure])",
            R"(archive.json:5:5: error: files[1]: File entry 1 is invalid. A mandatory property is missing or invalid. [structure])",
            R"(archive.json:6:56: error: files[2] "a.bin": File entry 2 is invalid. Property "id" has an invalid value. [structure])",
            R"(archive.json:6:82: error: files[2] "a.bin": File entry 2 is invalid. Property "boardId" has invalid elements. [structure])",
            R"(archive.json:6:88: error: files[2] "a.bin": File entry 2 is invalid. Property "mode" is invalid. [structure])",
            R"(archive.json:7:5: error: files[3] "a.bin": File entry 3 is invalid. Properties "id" and "targetPath" must not be specified at the same time. [structure])",
            R"(archive.json:7:49: error: files[3] boards[0] "a.bin": File entry 3 is invalid. "boards"-entry 0 is invalid. [structure])",
            R"(archive.json:7:79: error: files[3] boards[1] "a.bin": File entry 3 is invalid. "boards" element 1 is invalid. Properties "version", "checksumCrc32" and "mode" must not be specified inside a "boards" element. [structure])",
            R"(archive.json:8:5: error: files[4] "a.bin": File entry 4 is invalid. Either "id" or "targetPath" must be specified. [structure])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"structure","severity":"error","file":null,"board":null,"pointer":"/info/formatVersion","line":2,"column":12,"message":"This firmware archive cannot be processed by the installed firmware. You might need to install another (newer) firmware first."})",
            R"({"rule":"structure","severity":"error","file":null,"board":null,"pointer":"/info/productName","line":2,"column":36,"message":"The archive description file is corrupt. \"productName\" is missing or invalid."})",
            R"({"rule":"structure","severity":"error","file":null,"board":null,"pointer":"/info/archiveVersion","line":2,"column":74,"message":"The archive description file is corrupt. \"archiveVersion\" is invalid."})",
            R"({"rule":"structure","severity":"error","file":0,"board":null,"pointer":"/files/0","line":4,"column":5,"message":"File entry 0 is invalid."})",
            R"({"rule":"structure","severity":"error","file":1,"board":null,"pointer":"/files/1","line":5,"column":5,"message":"File entry 1 is invalid. A mandatory property is missing or invalid."})",
            R"({"rule":"structure","severity":"error","file":2,"board":null,"pointer":"/files/2/id","line":6,"column":56,"message":"File entry 2 is invalid. Property \"id\" has an invalid value."})",
            R"({"rule":"structure","severity":"error","file":2,"board":null,"pointer":"/files/2/boardId/1","line":6,"column":82,"message":"File entry 2 is invalid. Property \"boardId\" has invalid elements."})",
            R"({"rule":"structure","severity":"error","file":2,"board":null,"pointer":"/files/2/mode","line":6,"column":88,"message":"File entry 2 is invalid. Property \"mode\" is invalid."})",
            R"({"rule":"structure","severity":"error","file":3,"board":null,"pointer":"/files/3","line":7,"column":5,"message":"File entry 3 is invalid. Properties \"id\" and \"targetPath\" must not be specified at the same time."})",
            R"({"rule":"structure","severity":"error","file":3,"board":0,"pointer":"/files/3/boards/0","line":7,"column":49,"message":"File entry 3 is invalid. \"boards\"-entry 0 is invalid."})",
            R"({"rule":"structure","severity":"error","file":3,"board":1,"pointer":"/files/3/boards/1/version","line":7,"column":79,"message":"File entry 3 is invalid. \"boards\" element 1 is invalid. Properties \"version\", \"checksumCrc32\" and \"mode\" must not be specified inside a \"boards\" element."})",
            R"({"rule":"structure","severity":"error","file":4,"board":null,"pointer":"/files/4","line":8,"column":5,"message":"File entry 4 is invalid. Either \"id\" or \"targetPath\" must be specified."})"));
}

TEST_F(DescriptionFindings, TellThatThereIsNothingToRead)
{
    describe("[]");
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:1:1: error: The archive description file is corrupt. Property "info" is missing or invalid. [structure])",
            R"(archive.json:1:1: error: The archive description file is corrupt. Property "files" is missing or invalid. [structure])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"structure","severity":"error","file":null,"board":null,"pointer":"","line":1,"column":1,"message":"The archive description file is corrupt. Property \"info\" is missing or invalid."})",
            R"({"rule":"structure","severity":"error","file":null,"board":null,"pointer":"","line":1,"column":1,"message":"The archive description file is corrupt. Property \"files\" is missing or invalid."})"));
}

TEST_F(DescriptionFindings, TellAFileWhoseChecksumNobodyTells)
{
    addFile("a.bin", "123456789");
    describeEntries({R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:1: error: files[0] "a.bin": Cannot read checksum from update file a.bin. [structure])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"structure","severity":"error","file":0,"board":null,"pointer":"/files/0","line":2,"column":1,"message":"Cannot read checksum from update file a.bin."})"));
}

TEST_F(DescriptionFindings, TellEachMemberThatStandsTwice)
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

TEST_F(DescriptionFindings, TellTheUnknownMembersOfWhatCounts)
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

TEST_F(DescriptionFindings, TellNoUnknownMembersOfWhatIsOfAnotherType)
{
    describe(R"({"info": [{"x": 1}], "files": {"0": {"x": 1}}})");
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:1:2: error: The archive description file is corrupt. Property "info" is missing or invalid. [structure])",
            R"(archive.json:1:22: error: The archive description file is corrupt. Property "files" is missing or invalid. [structure])"));
}

TEST_F(DescriptionFindings, TellTheBeginningOfLongTexts)
{
    const std::string longText(5000000, 'a');
    const std::string begins = std::string(80, 'a') + "...";
    const std::string beginsName = std::string(256, 'a') + "...";
    describe("{\"" + longText + "\": 1, \"files\": [{\"name\": \"" + longText + "\"}], \"info\": 1}");
    EXPECT_THAT(
        lines(),
        ElementsAre(
            "archive.json:1:2: warning: the format has no \"" + begins +
                "\" here; the nearest is \"info\" [unknown-key]",
            "archive.json:1:5000019: error: files[0] \"" + beginsName +
                "\": File entry 0 is invalid. A mandatory property is missing or invalid. [structure]",
            "archive.json:1:5000019: error: files[0] \"" + beginsName +
                "\": File entry 0 is invalid. Either \"id\" or \"targetPath\" must be specified. [structure]",
            "archive.json:1:5000020: error: files[0] \"" + beginsName +
                "\": the archive's folder has no such file: add it, or correct the name [missing-file]",
            "archive.json:1:10000034: error: The archive description file is corrupt. Property \"info\" is missing or "
            "invalid. [structure]"));
    describe("[" + std::string(5000000, '1') + "]");
    EXPECT_THAT(lines(),
                ElementsAre("archive.json:1:2: error: The archive description file {folder}/archive/archive.json is "
                            "corrupt. Invalid JSON data. (number overflow parsing '" +
                            std::string(80, '1') + "...') [syntax]"));
}

TEST_F(DescriptionFindings, AreOfNoEntryWhereThereAreNone)
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

TEST_F(DescriptionFindings, AreOfNoEntryWhereTheMemberIsNoPosition)
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

TEST_F(DescriptionFindings, AreOfNoEntryWhereThereAreNoneInATextThatEndsEarly)
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

TEST_F(DescriptionFindings, AreOfNoBoardObjectInAListBehindBoardsThatAreNone)
{
    for (const std::string boards : {"1", "\"x\"", "null"}) {
        describe(R"({"info": {}, "files": [{"boards": )" + boards + R"(}, [{"zzz": 1}], {}]})");
        for (const std::string& record : records()) {
            EXPECT_NE(nlohmann::json::parse(record)["rule"], "unknown-key") << record;
        }
    }
}

TEST_F(DescriptionFindings, NameTheEntryAsItsLastNameDoes)
{
    addFile("b.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "name": "b.bin", "sequence": 1, "checksumCrc32": 3421780262, "id": 1, "boardType": "A"})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:19: error: files[0] "b.bin": the member stands in its object already, and the last one counts: take one away [duplicate-key])"));
}

TEST_F(DescriptionFindings, AreNoneOfOneMemberInSeveralObjects)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "checksumCrc32": 3421780262, "boardId": 1, "id": 1, "boards": [{"boardType": "A", "boardId": 2, "id": 2}, {"boardType": "B", "boardId": 2, "id": 2}]})",
         R"({"name": "a.bin", "sequence": 1, "checksumCrc32": 3421780262, "boardId": 1, "id": 1, "boardType": "A"})"});
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(DescriptionFindings, TellMembersThatTheFormatDoesNotHaveAndTheNearest)
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

TEST_F(DescriptionFindings, NameNoEntryThatHasNoName)
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

TEST_F(DescriptionFindings, AreNoneOfEveryMemberThatTheFormatHas)
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

TEST_F(DescriptionFindings, TellAnEntryThatIsPassedOverAndNothingElseOfIt)
{
    addFile("new.bin", "new");
    describeEntries({R"({"name": "new.bin", "featureLevel": 3, "colour": "red", "id": 4294967296})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:21: warning: files[0] "new.bin": this library passes over the entry, since its "featureLevel" asks for a newer one: update the library, or leave the entry to newer ones [unsupported-entry])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"unsupported-entry","severity":"warning","file":0,"board":null,"pointer":"/files/0/featureLevel","line":2,"column":21,"message":"this library passes over the entry, since its \"featureLevel\" asks for a newer one: update the library, or leave the entry to newer ones"})"));
}

TEST_F(DescriptionFindings, AreNoneOfAFeatureLevelThatIsSupported)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262, "featureLevel": 2})"});
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(DescriptionFindings, TellNumbersThat32BitsDoNotHold)
{
    addFile("a.bin", UpdateFiles::binaryFile({.checksum = 4294967295}));
    describeEntries(
        {R"({"name": "a.bin", "sequence": 4294967296, "checksumCrc32": 18446744073709551615, "id": 4294967297,
"hwCompatibilityId": 4294967298, "boards": [{"boardType": "A", "boardId": [0, 4294967299], "swCompatibilityId": [4294967300]}]})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:1: warning: files[0] "a.bin": no element can ever fit this entry: correct what it accepts [unreachable])",
            R"(archive.json:2:19: warning: files[0] "a.bin": 32 bits do not hold 4294967296: state 4294967295 at most [number-range])",
            R"(archive.json:2:43: warning: files[0] "a.bin": 32 bits do not hold 18446744073709551615: state 4294967295 at most [number-range])",
            R"(archive.json:2:82: warning: files[0] "a.bin": 32 bits do not hold 4294967297: state 4294967295 at most [number-range])",
            R"(archive.json:3:1: warning: files[0] "a.bin": 32 bits do not hold 4294967298: state 4294967295 at most [number-range])",
            R"(archive.json:3:79: warning: files[0] boards[0] "a.bin": 32 bits do not hold 4294967299: state 4294967295 at most [number-range])",
            R"(archive.json:3:114: warning: files[0] boards[0] "a.bin": 32 bits do not hold 4294967300: state 4294967295 at most [number-range])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"unreachable","severity":"warning","file":0,"board":null,"pointer":"/files/0","line":2,"column":1,"message":"no element can ever fit this entry: correct what it accepts","coveredBy":[]})",
            R"({"rule":"number-range","severity":"warning","file":0,"board":null,"pointer":"/files/0/sequence","line":2,"column":19,"message":"32 bits do not hold 4294967296: state 4294967295 at most"})",
            R"({"rule":"number-range","severity":"warning","file":0,"board":null,"pointer":"/files/0/checksumCrc32","line":2,"column":43,"message":"32 bits do not hold 18446744073709551615: state 4294967295 at most"})",
            R"({"rule":"number-range","severity":"warning","file":0,"board":null,"pointer":"/files/0/id","line":2,"column":82,"message":"32 bits do not hold 4294967297: state 4294967295 at most"})",
            R"({"rule":"number-range","severity":"warning","file":0,"board":null,"pointer":"/files/0/hwCompatibilityId","line":3,"column":1,"message":"32 bits do not hold 4294967298: state 4294967295 at most"})",
            R"({"rule":"number-range","severity":"warning","file":0,"board":0,"pointer":"/files/0/boards/0/boardId/1","line":3,"column":79,"message":"32 bits do not hold 4294967299: state 4294967295 at most"})",
            R"({"rule":"number-range","severity":"warning","file":0,"board":0,"pointer":"/files/0/boards/0/swCompatibilityId/0","line":3,"column":114,"message":"32 bits do not hold 4294967300: state 4294967295 at most"})"));
}

TEST_F(DescriptionFindings, TellNumbersThat32BitsDoNotHoldInAnEntryThatIsRefusedToo)
{
    addFile("a.bin", "123456789");
    describeEntries({R"({"name": "a.bin", "id": 4294967296, "checksumCrc32": 3421780262})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:1: error: files[0] "a.bin": File entry 0 is invalid. A mandatory property is missing or invalid. [structure])",
            R"(archive.json:2:19: warning: files[0] "a.bin": 32 bits do not hold 4294967296: state 4294967295 at most [number-range])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"structure","severity":"error","file":0,"board":null,"pointer":"/files/0","line":2,"column":1,"message":"File entry 0 is invalid. A mandatory property is missing or invalid."})",
            R"({"rule":"number-range","severity":"warning","file":0,"board":null,"pointer":"/files/0/id","line":2,"column":19,"message":"32 bits do not hold 4294967296: state 4294967295 at most"})"));
}

TEST_F(DescriptionFindings, AreNoneOfNumbersThat32BitsHold)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 4294967295, "boardType": "A", "id": 4294967295, "checksumCrc32": 3421780262, "boardId": [0, 4294967295]})"});
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}
