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
