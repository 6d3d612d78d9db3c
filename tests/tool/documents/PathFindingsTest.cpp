// What `check` finds about names, and about paths on the flash drive.
#include <memory>
#include <nlohmann/json.hpp>

#include "support/TextFile.h"
#include "support/UpdaterOptions.h"
#include "tool/documents/ArchiveFindings.h"
#include "tool/documents/CheckedArchive.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class PathFindings : public CheckedArchive {};

}  // namespace

TEST_F(PathFindings, TellTheLaterOfTwoEntriesThatWriteTheSameFile)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "config/a"})",
         R"({"name": "a.bin", "sequence": 1, "boardType": ["B", "A"], "checksumCrc32": 3421780262, "targetPath": "./config//a"})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:3:88: error: files[1] "a.bin": the path "./config//a" is written by files[0] "a.bin" too on boards of type "A": choose another path [path-collision])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"path-collision","severity":"error","file":1,"board":null,"pointer":"/files/1/targetPath","line":3,"column":88,"message":"the path \"./config//a\" is written by files[0] \"a.bin\" too on boards of type \"A\": choose another path"})"));
}

TEST_F(PathFindings, TellAnEntryThatWritesTheTemporaryFileOfAnother)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "a"})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "a.tmp"})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:3:81: error: files[1] "a.bin": the path "a.tmp" is that of the temporary file of files[0] "a.bin", which is written to "a" on boards of type "A": choose another path [path-collision])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"path-collision","severity":"error","file":1,"board":null,"pointer":"/files/1/targetPath","line":3,"column":81,"message":"the path \"a.tmp\" is that of the temporary file of files[0] \"a.bin\", which is written to \"a\" on boards of type \"A\": choose another path"})"));
}

TEST_F(PathFindings, TellAnEntryWhoseTemporaryFileTakesThePlaceOfAnother)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "a.tmp"})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "a"})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:3:81: error: files[1] "a.bin": the temporary file of the path "a" takes the place of files[0] "a.bin", which is written to "a.tmp" on boards of type "A": choose another path [path-collision])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"path-collision","severity":"error","file":1,"board":null,"pointer":"/files/1/targetPath","line":3,"column":81,"message":"the temporary file of the path \"a\" takes the place of files[0] \"a.bin\", which is written to \"a.tmp\" on boards of type \"A\": choose another path"})"));
}

TEST_F(PathFindings, AreNoneOfPathsThatNoOneBoardGetsBoth)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "a"})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "B", "checksumCrc32": 3421780262, "targetPath": "a"})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "a", "boardVariant": "V"})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "b"})"});
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(PathFindings, TellAPathThatMayLeaveTheDriveOrNamesNoFile)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "../a"})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "a/"})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:81: error: files[0] "a.bin": the path "../a" may lead out of the flash drive: state it without ".." [path-escape])",
            R"(archive.json:3:81: error: files[1] "a.bin": the path "a/" names no file on the flash drive: let it end in the file's name [path-escape])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"path-escape","severity":"error","file":0,"board":null,"pointer":"/files/0/targetPath","line":2,"column":81,"message":"the path \"../a\" may lead out of the flash drive: state it without \"..\""})",
            R"({"rule":"path-escape","severity":"error","file":1,"board":null,"pointer":"/files/1/targetPath","line":3,"column":81,"message":"the path \"a/\" names no file on the flash drive: let it end in the file's name"})"));
}

TEST_F(PathFindings, AreNoneOfPathsThatStayOnTheDriveThoughTheyGoUpInIt)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "a/../b"})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "/c"})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "..d/e.."})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "-f"})"});
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(PathFindings, TellCharactersThatAShellDoesNotTakeLiterally)
{
    addFile("a.bin", "123456789");
    addFile("a;b.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "a b"})",
         R"({"name": "a;b.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "c"})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:81: error: files[0] "a.bin": the path of a file for the flash drive must not have a blank: choose another one [shell-character])",
            R"(archive.json:3:2: error: files[1] "a;b.bin": the name of a file for the flash drive must not have the character ';': choose another one [shell-character])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"shell-character","severity":"error","file":0,"board":null,"pointer":"/files/0/targetPath","line":2,"column":81,"message":"the path of a file for the flash drive must not have a blank: choose another one"})",
            R"({"rule":"shell-character","severity":"error","file":1,"board":null,"pointer":"/files/1/name","line":3,"column":2,"message":"the name of a file for the flash drive must not have the character ';': choose another one"})"));
}

TEST_F(PathFindings, TellAControlCharacterThatAShellDoesNotTakeLiterallyByBothRules)
{
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "a\tb"})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:81: error: files[0] "a.bin": the path of a file for the flash drive must not have the character U+0009: choose another one [shell-character])",
            R"(archive.json:2:81: warning: files[0] "a.bin": the path has the control character U+0009: leave it out [control-character])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"shell-character","severity":"error","file":0,"board":null,"pointer":"/files/0/targetPath","line":2,"column":81,"message":"the path of a file for the flash drive must not have the character U+0009: choose another one"})",
            R"({"rule":"control-character","severity":"warning","file":0,"board":null,"pointer":"/files/0/targetPath","line":2,"column":81,"message":"the path has the control character U+0009: leave it out"})"));
}

TEST_F(PathFindings, TellAFolderOfTheArchiveThatAShellDoesNotTakeLiterally)
{
    archiveName = "my archive";
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "a"})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "id": 1})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:2: error: files[0] "a.bin": the path "{folder}/my archive/a.bin" of a file for the flash drive must not have a blank: move the archive to another folder [shell-character])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"shell-character","severity":"error","file":0,"board":null,"pointer":"/files/0/name","line":2,"column":2,"message":"the path \"{folder}/my archive/a.bin\" of a file for the flash drive must not have a blank: move the archive to another folder"})"));
}

// The tool makes the archive's folder absolute; the library's host may not.
TEST_F(PathFindings, TellARelativeFolderOfTheArchiveThatLooksLikeAnOption)
{
    archiveName = "-a";
    addFile("a.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "a"})"});
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    const std::unique_ptr<ZoITrellanUpdater> updater(
        ZoITrellanUpdater::createInstance(optionsFor(ZoNTrellanUpdater::ARCHIVE_VERSION, "-a")));
    const std::unique_ptr<ZoITrellanInspector> inspector(ZoITrellanInspector::createInstance(*updater));
    const auto read = inspector->checkArchive(nullptr, nullptr);
    const std::string description = readText(file("archive.json"));
    TrellanTool::ArchiveFindings findings(*inspector, read, description);
    std::filesystem::current_path(before);
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_EQ(
        findingText(findings.at(0), "archive.json"),
        R"(archive.json:2:2: error: files[0] "a.bin": the path "-a/a.bin" of a file for the flash drive must not begin with '-': name the archive's folder by its absolute path [shell-character])");
    EXPECT_EQ(
        findingRecord(findings.at(0)).dump(),
        R"({"rule":"shell-character","severity":"error","file":0,"board":null,"pointer":"/files/0/name","line":2,"column":2,"message":"the path \"-a/a.bin\" of a file for the flash drive must not begin with '-': name the archive's folder by its absolute path"})");
}

TEST_F(PathFindings, WarnOfControlCharactersOnOneLineEach)
{
    addFile("a.bin", "123456789");
    addFile("a\nb\r.bin", "123456789");
    describeEntries(
        {R"({"name": "a\nb\r.bin", "sequence": 1, "boardType": "A", "id": 1, "checksumCrc32": 3421780262})",
         R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "a\u009b"})"});
    EXPECT_THAT(
        lines(),
        ElementsAre(
            R"(archive.json:2:2: warning: files[0] "a\x0ab\x0d.bin": the name has the control character U+000A: leave it out [control-character])",
            R"(archive.json:3:81: warning: files[1] "a.bin": the path has the control character U+009B: leave it out [control-character])"));
    EXPECT_THAT(
        records(),
        ElementsAre(
            R"({"rule":"control-character","severity":"warning","file":0,"board":null,"pointer":"/files/0/name","line":2,"column":2,"message":"the name has the control character U+000A: leave it out"})",
            R"({"rule":"control-character","severity":"warning","file":1,"board":null,"pointer":"/files/1/targetPath","line":3,"column":81,"message":"the path has the control character U+009B: leave it out"})"));
}

TEST_F(PathFindings, AreNoneOfPlainNamesAndPaths)
{
    addFile("a.bin", "123456789");
    addFile("b \xC2\xA0\xC3\xA9;.bin", "123456789");
    describeEntries(
        {R"({"name": "a.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "targetPath": "config/\u00a0\u00e9%+,-.:=@_1.cfg"})",
         R"({"name": "b \u00a0\u00e9;.bin", "sequence": 1, "boardType": "A", "checksumCrc32": 3421780262, "id": 1})"});
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
}
