// What `check` finds of the update files: whether they are there, where they are, and what they say of themselves.
#include <sys/stat.h>

#include "support/Unprivileged.h"
#include "support/UpdateFiles.h"
#include "tool/documents/CheckedArchive.h"

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class FileFindings : public CheckedArchive {};

}  // namespace

TEST_F(FileFindings, TellAMissingFileAndNothingElseOfIt)
{
    describeEntries(
        {R"({"name": "absent.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 1, "version": "1.0"})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:2: error: files[0] "absent.bin": the archive's folder has no such file: add it, or correct the name [missing-file])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"missing-file","severity":"error","file":0,"board":null,"pointer":"/files/0/name","line":2,"column":2,"message":"the archive's folder has no such file: add it, or correct the name"})"));
}

TEST_F(FileFindings, TellAMissingFileOfAnEntryThatIsRefusedToo)
{
    describeEntries({R"({"name": "absent.bin", "boardType": "A", "id": 1})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:1: error: files[0] "absent.bin": File entry 0 is invalid. A mandatory property is missing or invalid. [structure])",
            R"(archive.json:2:2: error: files[0] "absent.bin": the archive's folder has no such file: add it, or correct the name [missing-file])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"structure","severity":"error","file":0,"board":null,"pointer":"/files/0","line":2,"column":1,"message":"File entry 0 is invalid. A mandatory property is missing or invalid."})",
            R"({"rule":"missing-file","severity":"error","file":0,"board":null,"pointer":"/files/0/name","line":2,"column":2,"message":"the archive's folder has no such file: add it, or correct the name"})"));
}

TEST_F(FileFindings, TellALinkToNothing)
{
    describeEntries({R"({"name": "link.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262})"});
    fs::create_symlink("nothing", file("link.bin"));
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:2: error: files[0] "link.bin": the archive's folder has no such file: add it, or correct the name [missing-file])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"missing-file","severity":"error","file":0,"board":null,"pointer":"/files/0/name","line":2,"column":2,"message":"the archive's folder has no such file: add it, or correct the name"})"));
}

TEST_F(FileFindings, TellAFolderAndAPipeInThePlaceOfAFile)
{
    addFile("folder/b.bin", "123456789");
    describeEntries({R"({"name": "folder", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262})",
                     R"({"name": "pipe", "sequence": 1, "boardType": "A", "id": 2, "checksumCrc32": 3421780262})"});
    ASSERT_EQ(::mkfifo(file("pipe").c_str(), 0666), 0);
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:2: error: files[0] "folder": this is no regular file that can be read: put the update file in its place [not-a-file])",
            R"(archive.json:3:2: error: files[1] "pipe": this is no regular file that can be read: put the update file in its place [not-a-file])",
            R"(archive.json: note: no entry names the file "folder/b.bin": name it, or take it away [unlisted-file])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"not-a-file","severity":"error","file":0,"board":null,"pointer":"/files/0/name","line":2,"column":2,"message":"this is no regular file that can be read: put the update file in its place"})",
            R"({"rule":"not-a-file","severity":"error","file":1,"board":null,"pointer":"/files/1/name","line":3,"column":2,"message":"this is no regular file that can be read: put the update file in its place"})",
            R"({"rule":"unlisted-file","severity":"note","file":null,"board":null,"pointer":null,"line":null,"column":null,"message":"no entry names the file \"folder/b.bin\": name it, or take it away"})"));
}

TEST_F(FileFindings, TellAnEmptyFileAndNothingElseOfIt)
{
    addFile("a.bin", "");
    describeEntries({R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 1})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:2: error: files[0] "a.bin": the file has no content: put the whole update file in its place [empty-file])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"empty-file","severity":"error","file":0,"board":null,"pointer":"/files/0/name","line":2,"column":2,"message":"the file has no content: put the whole update file in its place"})"));
}

TEST_F(FileFindings, TellAFileThatMustNotBeRead)
{
    addFile("a.bin", "123456789");
    describeEntries({R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 1})"});
    fs::permissions(folder.path(), fs::perms::all);
    makeUnreadable(folder.path() / "archive", "a.bin");
    const Unprivileged rights;
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:2: error: files[0] "a.bin": this is no regular file that can be read: put the update file in its place [not-a-file])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"not-a-file","severity":"error","file":0,"board":null,"pointer":"/files/0/name","line":2,"column":2,"message":"this is no regular file that can be read: put the update file in its place"})"));
}

TEST_F(FileFindings, AreNoneOfAFileWithOneByteAndALinkToIt)
{
    addFile("a.bin", "1");
    describeEntries({R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 2212294583})",
                     R"({"name": "link.bin", "sequence": 1, "boardType": "A", "id": 2, "checksumCrc32": 2212294583})"});
    fs::create_symlink("a.bin", file("link.bin"));
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(FileFindings, TellANameThatLeavesTheFolder)
{
    addFile("../out.bin", "123456789");
    describeEntries(
        {R"({"name": "../out.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:2: error: files[0] "../out.bin": the name leads out of the archive's folder: put the file into the folder and name it there [outside-archive])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"outside-archive","severity":"error","file":0,"board":null,"pointer":"/files/0/name","line":2,"column":2,"message":"the name leads out of the archive's folder: put the file into the folder and name it there"})"));
}

TEST_F(FileFindings, WarnOfALinkThatLeavesTheFolder)
{
    addFile("../out.bin", "123456789");
    describeEntries({R"({"name": "link.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262})"});
    fs::create_symlink("../out.bin", file("link.bin"));
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:2: warning: files[0] "link.bin": a link leads out of the archive's folder, to "{folder}/out.bin": put the file itself into the folder [outside-archive])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"outside-archive","severity":"warning","file":0,"board":null,"pointer":"/files/0/name","line":2,"column":2,"message":"a link leads out of the archive's folder, to \"{folder}/out.bin\": put the file itself into the folder"})"));
}

TEST_F(FileFindings, AreNoneOfNamesAndLinksThatStayInTheFolder)
{
    addFile("a.bin", "123456789");
    addFile("sub/b.bin", "123456789");
    describeEntries(
        {R"({"name": "sub/../a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262})",
         R"({"name": "link.bin", "sequence": 1, "boardType": "A", "id": 2, "checksumCrc32": 3421780262})"});
    fs::remove(file("sub/b.bin"));
    fs::create_symlink("sub/../a.bin", file("link.bin"));
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(FileFindings, HoldAStatedChecksumAgainstTheHeader)
{
    addFile("a.bin", UpdateFiles::binaryFile({.checksum = 78}));
    describeEntries({R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 77})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:61: error: files[0] "a.bin": the stated checksum is 77, but the one in the file's header is 78: put the right file in its place, or state that [checksum])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"checksum","severity":"error","file":0,"board":null,"pointer":"/files/0/checksumCrc32","line":2,"column":61,"message":"the stated checksum is 77, but the one in the file's header is 78: put the right file in its place, or state that"})"));
}

TEST_F(FileFindings, HoldTheStatedChecksumOfAPlainFileAgainstItsBytes)
{
    addFile("a.bin", "123456789");
    describeEntries({R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 77})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:61: error: files[0] "a.bin": the stated checksum is 77, but the CRC-32 of the file is 3421780262: put the right file in its place, or state that [checksum])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"checksum","severity":"error","file":0,"board":null,"pointer":"/files/0/checksumCrc32","line":2,"column":61,"message":"the stated checksum is 77, but the CRC-32 of the file is 3421780262: put the right file in its place, or state that"})"));
}

TEST_F(FileFindings, HoldTheStatedChecksumOfAFileForTheFlashDriveAgainstItsBytes)
{
    addFile("a.bin", UpdateFiles::binaryFile({.checksum = 78}));
    describeEntries({R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 78, "targetPath": "a"})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:52: error: files[0] "a.bin": the stated checksum is 78, but the CRC-32 of the file is 2894145507: put the right file in its place, or state that [checksum])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"checksum","severity":"error","file":0,"board":null,"pointer":"/files/0/checksumCrc32","line":2,"column":52,"message":"the stated checksum is 78, but the CRC-32 of the file is 2894145507: put the right file in its place, or state that"})"));
}

TEST_F(FileFindings, WarnOfAFileForTheFlashDriveWithTheChecksumOfItsHeader)
{
    addFile("a.bin", UpdateFiles::binaryFile({.checksum = 78}));
    describeEntries({R"({"name": "a.bin", "sequence": 1, "boardType": "A", "targetPath": "a"})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:2: warning: files[0] "a.bin": the checksum in the file's header is 78, but the target computes the CRC-32 of a file on the flash drive, 2894145507, and will never agree: state "checksumCrc32": 2894145507 [checksum])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"checksum","severity":"warning","file":0,"board":null,"pointer":"/files/0/name","line":2,"column":2,"message":"the checksum in the file's header is 78, but the target computes the CRC-32 of a file on the flash drive, 2894145507, and will never agree: state \"checksumCrc32\": 2894145507"})"));
}

TEST_F(FileFindings, HoldTheChecksumOfAnEntryThatIsRefusedAgainstItsFileToo)
{
    addFile("a.bin", "123456789");
    describeEntries({R"({"name": "a.bin", "boardType": "A", "id": 1, "checksumCrc32": 77})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:1: error: files[0] "a.bin": File entry 0 is invalid. A mandatory property is missing or invalid. [structure])",
            R"(archive.json:2:46: error: files[0] "a.bin": the stated checksum is 77, but the CRC-32 of the file is 3421780262: put the right file in its place, or state that [checksum])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"structure","severity":"error","file":0,"board":null,"pointer":"/files/0","line":2,"column":1,"message":"File entry 0 is invalid. A mandatory property is missing or invalid."})",
            R"({"rule":"checksum","severity":"error","file":0,"board":null,"pointer":"/files/0/checksumCrc32","line":2,"column":46,"message":"the stated checksum is 77, but the CRC-32 of the file is 3421780262: put the right file in its place, or state that"})"));
}

TEST_F(FileFindings, TellThatNobodyTellsTheChecksumOfAnEntryThatIsRefusedToo)
{
    addFile("a.bin", "123456789");
    describeEntries({R"({"name": "a.bin", "boardType": "A", "id": 1})",
                     R"({"name": "a.bin", "boardType": "A", "id": 2, "checksumCrc32": "77"})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:1: error: files[0] "a.bin": File entry 0 is invalid. A mandatory property is missing or invalid. [structure])",
            R"(archive.json:2:1: error: files[0] "a.bin": Cannot read checksum from update file a.bin. [structure])",
            R"(archive.json:3:1: error: files[1] "a.bin": File entry 1 is invalid. A mandatory property is missing or invalid. [structure])",
            R"(archive.json:3:46: error: files[1] "a.bin": File entry 1 is invalid. Property "checksumCrc32" has an invalid value. [structure])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"structure","severity":"error","file":0,"board":null,"pointer":"/files/0","line":2,"column":1,"message":"File entry 0 is invalid. A mandatory property is missing or invalid."})",
            R"({"rule":"structure","severity":"error","file":0,"board":null,"pointer":"/files/0","line":2,"column":1,"message":"Cannot read checksum from update file a.bin."})",
            R"({"rule":"structure","severity":"error","file":1,"board":null,"pointer":"/files/1","line":3,"column":1,"message":"File entry 1 is invalid. A mandatory property is missing or invalid."})",
            R"({"rule":"structure","severity":"error","file":1,"board":null,"pointer":"/files/1/checksumCrc32","line":3,"column":46,"message":"File entry 1 is invalid. Property \"checksumCrc32\" has an invalid value."})"));
}

TEST_F(FileFindings, AreNoneOfChecksumsThatAgree)
{
    addFile("a.bin", UpdateFiles::binaryFile({.checksum = 78}));
    addFile("b.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 78, "version": null})",
         R"({"name": "b.bin", "sequence": 1, "boardType": "A", "id": 2, "checksumCrc32": 3421780262})",
         R"({"name": "b.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "b"})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 3})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 2894145507, "targetPath": "a", "version": null})"});
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(FileFindings, WarnOfAVersionThatIsNotTheHeaders)
{
    addFile("a.bin", UpdateFiles::binaryFile({.checksum = 78, .version = {1, 4, 2}}));
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 78, "version": "2.0"})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:82: warning: files[0] "a.bin": the entry states version 2.0, but the file's header says 1.4.2, which the device takes over: state that, or put the right file in its place [file-version])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"file-version","severity":"warning","file":0,"board":null,"pointer":"/files/0/version","line":2,"column":82,"message":"the entry states version 2.0, but the file's header says 1.4.2, which the device takes over: state that, or put the right file in its place"})"));
}

TEST_F(FileFindings, AreNoneOfAVersionThatIsTheHeadersOrThatEitherDoesNotState)
{
    addFile("a.bin", UpdateFiles::binaryFile({.checksum = 78, .version = {1, 4, 2}}));
    addFile("zero.bin", UpdateFiles::binaryFile({.checksum = 78, .version = {0, 0, 0}}));
    addFile("plain.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 78, "version": "1.4.2"})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 2, "checksumCrc32": 78})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 3, "checksumCrc32": 78, "version": null})",
         R"({"name": "zero.bin", "sequence": 1, "boardType": "A", "id": 4, "checksumCrc32": 78, "version": "2.0"})",
         R"({"name": "plain.bin", "sequence": 1, "boardType": "A", "id": 5, "checksumCrc32": 3421780262, "version": "2.0"})"});
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(FileFindings, WarnOfCompatibilityIdsOutsideTheHeadersRange)
{
    addFile("a.bin", UpdateFiles::binaryFile({.checksum = 78,
                                              .minHwCompatibilityId = 2,
                                              .maxHwCompatibilityId = 3,
                                              .minSwCompatibilityId = 5,
                                              .maxSwCompatibilityId = 5}));
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "id": 1, "checksumCrc32": 78, "hwCompatibilityId": [1, 2, 4], "boards": [{"boardType": "A", "swCompatibilityId": 9}, {"boardType": "B", "swCompatibilityId": [5, 6]}]})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:86: warning: files[0] "a.bin": the id 1 is outside of what the file's header accepts, 2 to 3: take it away, or put the right file in its place [compatibility])",
            R"(archive.json:2:92: warning: files[0] "a.bin": the id 4 is outside of what the file's header accepts, 2 to 3: take it away, or put the right file in its place [compatibility])",
            R"(archive.json:2:126: warning: files[0] boards[0] "a.bin": the id 9 is outside of what the file's header accepts, 5 to 5: take it away, or put the right file in its place [compatibility])",
            R"(archive.json:2:195: warning: files[0] boards[1] "a.bin": the id 6 is outside of what the file's header accepts, 5 to 5: take it away, or put the right file in its place [compatibility])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"compatibility","severity":"warning","file":0,"board":null,"pointer":"/files/0/hwCompatibilityId/0","line":2,"column":86,"message":"the id 1 is outside of what the file's header accepts, 2 to 3: take it away, or put the right file in its place"})",
            R"({"rule":"compatibility","severity":"warning","file":0,"board":null,"pointer":"/files/0/hwCompatibilityId/2","line":2,"column":92,"message":"the id 4 is outside of what the file's header accepts, 2 to 3: take it away, or put the right file in its place"})",
            R"({"rule":"compatibility","severity":"warning","file":0,"board":0,"pointer":"/files/0/boards/0/swCompatibilityId","line":2,"column":126,"message":"the id 9 is outside of what the file's header accepts, 5 to 5: take it away, or put the right file in its place"})",
            R"({"rule":"compatibility","severity":"warning","file":0,"board":1,"pointer":"/files/0/boards/1/swCompatibilityId/1","line":2,"column":195,"message":"the id 6 is outside of what the file's header accepts, 5 to 5: take it away, or put the right file in its place"})"));
}

TEST_F(FileFindings, WarnOfACompatibilityIdThatIsLeftOutWhereTheHeadersRangeHasNo0)
{
    addFile("a.bin", UpdateFiles::binaryFile({.checksum = 78,
                                              .minHwCompatibilityId = 2,
                                              .maxHwCompatibilityId = 3,
                                              .minSwCompatibilityId = 0,
                                              .maxSwCompatibilityId = 5}));
    describeEntries({R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 78})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:1: warning: files[0] "a.bin": "hwCompatibilityId" is left out, which means 0, but the file's header accepts 2 to 3: state the ids that the file is for [compatibility])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"compatibility","severity":"warning","file":0,"board":null,"pointer":"/files/0","line":2,"column":1,"message":"\"hwCompatibilityId\" is left out, which means 0, but the file's header accepts 2 to 3: state the ids that the file is for"})"));
}

TEST_F(FileFindings, HoldNoIdsOfABoardObjectThatIsForNoBoardAgainstTheHeadersRange)
{
    addFile("a.bin", UpdateFiles::binaryFile({.checksum = 78, .minHwCompatibilityId = 2, .maxHwCompatibilityId = 3}));
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "id": 1, "checksumCrc32": 78, "boards": [{"boardType": "A", "hwCompatibilityId": 2}, {"boardType": [], "hwCompatibilityId": 9}, {"boardType": []}]})"});
    Texts rules;
    for (const std::string& line : lines()) {
        rules.push_back(line.substr(line.rfind('[')));
    }
    EXPECT_THAT(rules, ElementsAre("[unreachable-board]", "[unreachable-board]"));
}

TEST_F(FileFindings, AreNoneOfIdsInTheRangeAndOfARangeFrom0To0)
{
    addFile("a.bin", UpdateFiles::binaryFile({.checksum = 78, .minHwCompatibilityId = 2, .maxHwCompatibilityId = 3}));
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 78, "hwCompatibilityId": [2, 3], "swCompatibilityId": 7})"});
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(FileFindings, NoteFilesThatNoEntryNames)
{
    addFile("a.bin", "123456789");
    addFile("sub/new.bin", "123456789");
    addFile("sub/extra.bin", "123456789");
    addFile("refused.bin", "123456789");
    addFile(".hidden", "123456789");
    describeEntries({R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262})",
                     R"({"name": "sub/new.bin", "featureLevel": 3})",
                     R"({"name": "refused.bin", "checksumCrc32": 3421780262})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:3:25: warning: files[1] "sub/new.bin": this library passes over the entry, since its "featureLevel" asks for a newer one: update the library, or leave the entry to newer ones [unsupported-entry])",
            R"(archive.json:4:1: error: files[2] "refused.bin": File entry 2 is invalid. A mandatory property is missing or invalid. [structure])",
            R"(archive.json:4:1: error: files[2] "refused.bin": File entry 2 is invalid. Either "id" or "targetPath" must be specified. [structure])",
            R"(archive.json: note: no entry names the file ".hidden": name it, or take it away [unlisted-file])",
            R"(archive.json: note: no entry names the file "sub/extra.bin": name it, or take it away [unlisted-file])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"unsupported-entry","severity":"warning","file":1,"board":null,"pointer":"/files/1/featureLevel","line":3,"column":25,"message":"this library passes over the entry, since its \"featureLevel\" asks for a newer one: update the library, or leave the entry to newer ones"})",
            R"({"rule":"structure","severity":"error","file":2,"board":null,"pointer":"/files/2","line":4,"column":1,"message":"File entry 2 is invalid. A mandatory property is missing or invalid."})",
            R"({"rule":"structure","severity":"error","file":2,"board":null,"pointer":"/files/2","line":4,"column":1,"message":"File entry 2 is invalid. Either \"id\" or \"targetPath\" must be specified."})",
            R"({"rule":"unlisted-file","severity":"note","file":null,"board":null,"pointer":null,"line":null,"column":null,"message":"no entry names the file \".hidden\": name it, or take it away"})",
            R"({"rule":"unlisted-file","severity":"note","file":null,"board":null,"pointer":null,"line":null,"column":null,"message":"no entry names the file \"sub/extra.bin\": name it, or take it away"})"));
}

TEST_F(FileFindings, NoteALinkThatNoEntryNamesUnlessItLeadsToAFileOfOne)
{
    addFile("a.bin", "123456789");
    addFile("../out.bin", "123456789");
    describeEntries({R"({"name": "a.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262})"});
    fs::create_symlink("a.bin", file("same.bin"));
    fs::create_symlink("../out.bin", file("other.bin"));
    fs::create_symlink("nothing", file("dangling.bin"));
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json: note: no entry names the file "other.bin": name it, or take it away [unlisted-file])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"unlisted-file","severity":"note","file":null,"board":null,"pointer":null,"line":null,"column":null,"message":"no entry names the file \"other.bin\": name it, or take it away"})"));
}

TEST_F(FileFindings, AreNoneOfTheFileThatALinkWithTheNameLeadsTo)
{
    addFile("real.bin", "123456789");
    describeEntries({R"({"name": "link.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262})"});
    fs::create_symlink("real.bin", file("link.bin"));
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}
