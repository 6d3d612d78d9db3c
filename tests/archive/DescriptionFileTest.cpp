// The description file as a whole: where it lies, that it is JSON, and its two mandatory members.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ArchiveReader.h"

using nlohmann::ordered_json;
using ::testing::ElementsAre;

namespace {

const char* const infoMessage =
    "ERROR: The archive description file is corrupt. Property \"info\" is missing or invalid.\n";
const char* const filesMessage =
    "ERROR: The archive description file is corrupt. Property \"files\" is missing or invalid.\n";

std::string notJson(const TestArchive& archive)
{
    return "ERROR: The archive description file " + archive.path() + "/archive.json is corrupt. Invalid JSON data.\n";
}

ordered_json descriptionWith(const std::string& member, const ordered_json& value)
{
    ordered_json document = description({});
    document[member] = value;
    return document;
}

}  // namespace

TEST(DescriptionFile, IsReadFromTheArchivesFolder)
{
    TestArchive archive(description({fileEntry("a.bin")}));
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    ASSERT_EQ(reader.fileCount(), 1u);
    EXPECT_STREQ(reader.file(0).name.c_str(), "a.bin");
}

TEST(DescriptionFile, MayHaveAnotherName)
{
    TestArchive archive("not read");
    archive.addFile("other.json", description({fileEntry("a.bin"), fileEntry("b.bin")}).dump());
    ArchiveReader reader(archive.path(), "other.json");
    EXPECT_TRUE(reader.read());
    EXPECT_EQ(reader.fileCount(), 2u);
}

TEST(DescriptionFile, ReadDescriptionFileReadsNoUpdateFile)
{
    TestArchive archive(description({without(fileEntry("missing.bin"), "checksumCrc32")}));
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.archive().readDescriptionFile(reader.errors));
    EXPECT_EQ(reader.text(), "");
    EXPECT_FALSE(reader.file(0).fileMissing);
}

TEST(DescriptionFile, ReadDescriptionFileJsonReadsTheGivenPath)
{
    TestArchive archive("not read");
    archive.addFile("folder/third.json", description({fileEntry("a.bin")}).dump());
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.archive().readDescriptionFileJson(reader.errors, archive.path() + "/folder/third.json"));
    EXPECT_EQ(reader.fileCount(), 1u);
}

TEST(DescriptionFile, ThatIsMissingIsReportedWithItsPath)
{
    TestArchive archive("");
    ArchiveReader reader(archive.path(), "missing.json");
    EXPECT_FALSE(reader.read());
    EXPECT_THAT(reader.messages.fragments(),
                ElementsAre("ERROR: Cannot open archive description file " + archive.path() + "/missing.json\n"));
    EXPECT_EQ(reader.errors.count(), 0u);
}

TEST(DescriptionFile, PathIsPrintedAsItIs)
{
    ArchiveReader reader("/nowhere/%s%n", "100%d.json");
    EXPECT_FALSE(reader.read());
    EXPECT_EQ(reader.text(), "ERROR: Cannot open archive description file /nowhere/%s%n/100%d.json\n");
}

TEST(DescriptionFile, ThatIsNotJsonIsReportedWithItsPath)
{
    for (const char* text :
         {"nonsense", "{", "{} {}", "{\"info\": {},}", "// comment\n{}", "{'info': 1}", "[1, 2", "nul"}) {
        SCOPED_TRACE(text);
        TestArchive archive(text);
        expectRefused(archive, notJson(archive));
    }
}

TEST(DescriptionFile, MayBeginWithAByteOrderMark)
{
    expectAccepted(TestArchive("\xEF\xBB\xBF" + description({fileEntry("a.bin")}).dump()));
}

TEST(DescriptionFile, ThatIsNoObjectHasNoInfo)
{
    for (const char* text : {"[]", "5", "\"info\"", "null", "true", "[{\"info\": {}}]", "{}"}) {
        SCOPED_TRACE(text);
        expectRefused(TestArchive(text), infoMessage);
    }
}

TEST(DescriptionFile, NeedsInfo)
{
    expectRefused(without(description({}), "info"), infoMessage);
}

TEST(DescriptionFile, InfoMustBeAnObject)
{
    for (const ordered_json& value : {ordered_json(nullptr), ordered_json(true), ordered_json("text"), ordered_json(1),
                                      ordered_json(1.5), ordered_json::array(), ordered_json::array({info()})}) {
        expectRefused(descriptionWith("info", value), infoMessage);
    }
}

TEST(DescriptionFile, NeedsFiles)
{
    expectRefused(without(description({}), "files"), filesMessage);
}

TEST(DescriptionFile, FilesMustBeAnArray)
{
    for (const ordered_json& value : {ordered_json(nullptr), ordered_json(true), ordered_json("text"), ordered_json(1),
                                      ordered_json(1.5), ordered_json::object(), fileEntry("a.bin")}) {
        expectRefused(descriptionWith("files", value), filesMessage);
    }
}

TEST(DescriptionFile, InfoIsCheckedBeforeFiles)
{
    expectRefused(ordered_json{{"info", 5}, {"files", 5}}, infoMessage);
    expectRefused(ordered_json{{"info", without(info(), "archiveName")}, {"files", 5}},
                  "ERROR: The archive description file is corrupt. \"archiveName\" is missing or invalid.\n");
}

TEST(DescriptionFile, WithoutEntriesIsValid)
{
    TestArchive archive(description({}));
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    EXPECT_EQ(reader.fileCount(), 0u);
    EXPECT_EQ(reader.archive().getMaxSequence(), 0u);
    EXPECT_EQ(reader.archive().getUnsupportedElements(), 0u);
    EXPECT_EQ(reader.text(), "");
}

TEST(DescriptionFile, OtherMembersAreIgnored)
{
    ordered_json document = description({fileEntry("a.bin")});
    document["comment"] = {{"files", 5}};
    document["Info"] = 5;
    expectAccepted(document);
}

TEST(DescriptionFile, LastOfDuplicateMembersCounts)
{
    const std::string text = description({}).dump();
    expectAccepted(TestArchive("{\"info\": 5, " + text.substr(1)));
    expectRefused(TestArchive(text.substr(0, text.size() - 1) + ", \"info\": 5}"), infoMessage);
}

TEST(DescriptionFile, ReadAgainReplacesWhatWasRead)
{
    TestArchive archive(
        description({fileEntry("a.bin", {{"sequence", 9}}), fileEntry("b.bin", {{"featureLevel", 3}})}));
    ArchiveReader reader(archive);
    ASSERT_TRUE(reader.read());
    archive.addFile("archive.json", description({fileEntry("c.bin", {{"sequence", 2}})}).dump());
    ASSERT_TRUE(reader.read());
    ASSERT_EQ(reader.fileCount(), 1u);
    EXPECT_STREQ(reader.file(0).name.c_str(), "c.bin");
    EXPECT_EQ(reader.archive().getMaxSequence(), 2u);
    EXPECT_EQ(reader.archive().getUnsupportedElements(), 0u);
}

TEST(DescriptionFile, FailedReadKeepsTheRecordsBeforeTheDefect)
{
    TestArchive archive(description({fileEntry("a.bin"), fileEntry("b.bin"), 5, fileEntry("c.bin")}));
    ArchiveReader reader(archive);
    EXPECT_FALSE(reader.read());
    EXPECT_EQ(reader.text(), "ERROR: File entry 2 is invalid.\n");
    ASSERT_EQ(reader.fileCount(), 2u);
    EXPECT_STREQ(reader.file(1).name.c_str(), "b.bin");
}
