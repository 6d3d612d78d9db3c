// File entries: feature level, mandatory members, the id and target path rule, and the record made of an entry.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ArchiveReader.h"

using nlohmann::ordered_json;
using ::testing::ElementsAre;
using ZoNUpdateArchive::UpdateMode;

namespace {

const char* const mandatoryMessage = "ERROR: File entry 0 is invalid. A mandatory property is missing or invalid.\n";
const char* const bothTargetsMessage =
    "ERROR: File entry 0 is invalid. Properties \"id\" and \"targetPath\" must not be specified at the same time.\n";
const char* const noTargetMessage =
    "ERROR: File entry 0 is invalid. Either \"id\" or \"targetPath\" must be specified.\n";

// One value of each JSON type but the unsigned integer and the string.
const ordered_json neitherUnsignedNorString[] = {
    nullptr, true, -1, 1.0, ordered_json::array(), ordered_json::array({1}), ordered_json::object()};

ordered_json entryWith(const std::string& key, const ordered_json& value)
{
    ordered_json entry = fileEntry("a.bin");
    entry[key] = value;
    return entry;
}

// Reads an archive whose only entry is `entry`, and gives the record.
ZoNUpdateArchive::ZoSUpdateFile recordOf(const ordered_json& entry)
{
    TestArchive archive(description({entry}));
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.archive().readDescriptionFile(reader.errors));
    EXPECT_EQ(reader.text(), "");
    return reader.file(0);
}

}  // namespace

TEST(FileEntry, MustBeAnObject)
{
    for (const ordered_json& value : neitherUnsignedNorString) {
        if (!value.is_object()) {
            expectRefused(description({value}), "ERROR: File entry 0 is invalid.\n");
        }
    }
    expectRefused(description({"a.bin"}), "ERROR: File entry 0 is invalid.\n");
    expectRefused(description({fileEntry("a.bin"), 7}), "ERROR: File entry 1 is invalid.\n");
}

TEST(FileEntry, EmptyObjectLacksMandatoryMembers)
{
    expectRefused(description({ordered_json::object()}), mandatoryMessage);
}

TEST(FileEntry, NumberCountsSkippedEntries)
{
    TestArchive archive(description({fileEntry("a.bin"), entryWith("featureLevel", 3), 5}));
    ArchiveReader reader(archive);
    EXPECT_FALSE(reader.read());
    EXPECT_THAT(reader.messages.fragments(),
                ElementsAre("WARNING: File entry 1 is not supported. Ignoring this entry.\n",
                            "ERROR: File entry 2 is invalid.\n"));
}

TEST(FileEntry, FeatureLevelsUpToTwoAreSupported)
{
    for (unsigned level : {0u, 1u, 2u}) {
        expectAccepted(description({entryWith("featureLevel", level)}));
    }
}

TEST(FileEntry, HigherFeatureLevelsAreSkippedWithAWarning)
{
    for (unsigned long long level :
         {3ull, 4ull, 4294967295ull, 4294967296ull, 4294967298ull, 18446744073709551615ull}) {
        SCOPED_TRACE(level);
        TestArchive archive(description({entryWith("featureLevel", level)}));
        ArchiveReader reader(archive);
        EXPECT_TRUE(reader.read());
        EXPECT_THAT(reader.messages.fragments(),
                    ElementsAre("WARNING: File entry 0 is not supported. Ignoring this entry.\n"));
        EXPECT_EQ(reader.fileCount(), 0u);
        EXPECT_EQ(reader.archive().getUnsupportedElements(), 1u);
    }
}

TEST(FileEntry, SkippedEntryLeavesNoGap)
{
    TestArchive archive(
        description({fileEntry("a.bin", {{"sequence", 2}}), fileEntry("b.bin", {{"sequence", 99}, {"featureLevel", 7}}),
                     fileEntry("c.bin", {{"sequence", 1}})}));
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    EXPECT_THAT(reader.messages.fragments(),
                ElementsAre("WARNING: File entry 1 is not supported. Ignoring this entry.\n"));
    ASSERT_EQ(reader.fileCount(), 2u);
    EXPECT_STREQ(reader.file(0).name.c_str(), "a.bin");
    EXPECT_STREQ(reader.file(1).name.c_str(), "c.bin");
    EXPECT_EQ(reader.archive().getUnsupportedElements(), 1u);
    EXPECT_EQ(reader.archive().getMaxSequence(), 2u);
}

TEST(FileEntry, EverySkippedEntryIsCounted)
{
    TestArchive archive(description({entryWith("featureLevel", 3), fileEntry("a.bin"), entryWith("featureLevel", 4)}));
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    EXPECT_EQ(reader.archive().getUnsupportedElements(), 2u);
}

TEST(FileEntry, NothingElseOfASkippedEntryIsChecked)
{
    TestArchive archive(description({{{"featureLevel", 3}, {"name", 5}, {"boards", 5}, {"mode", "none"}}}));
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    EXPECT_EQ(reader.text(), "WARNING: File entry 0 is not supported. Ignoring this entry.\n");
}

TEST(FileEntry, FeatureLevelMustBeAnUnsignedInteger)
{
    for (const ordered_json& value : neitherUnsignedNorString) {
        expectRefused(description({entryWith("featureLevel", value)}),
                      "ERROR: File entry 0 is invalid. Property \"featureLevel\" is invalid.\n");
    }
    expectRefused(description({fileEntry("a.bin"), entryWith("featureLevel", "1")}),
                  "ERROR: File entry 1 is invalid. Property \"featureLevel\" is invalid.\n");
}

TEST(FileEntry, FeatureLevelIsCheckedBeforeTheMandatoryMembers)
{
    expectRefused(description({{{"featureLevel", -1}}}),
                  "ERROR: File entry 0 is invalid. Property \"featureLevel\" is invalid.\n");
}

TEST(FileEntry, NameIsAMandatoryString)
{
    expectRefused(description({without(fileEntry("a.bin"), "name")}), mandatoryMessage);
    for (const ordered_json& value : neitherUnsignedNorString) {
        expectRefused(description({entryWith("name", value)}), mandatoryMessage);
    }
    expectRefused(description({entryWith("name", 5)}), mandatoryMessage);
}

TEST(FileEntry, SequenceIsAMandatoryUnsignedInteger)
{
    expectRefused(description({without(fileEntry("a.bin"), "sequence")}), mandatoryMessage);
    for (const ordered_json& value : neitherUnsignedNorString) {
        expectRefused(description({entryWith("sequence", value)}), mandatoryMessage);
    }
    expectRefused(description({entryWith("sequence", "1")}), mandatoryMessage);
}

TEST(FileEntry, NeedsExactlyOneOfBoardTypeAndBoards)
{
    const ordered_json boards = ordered_json::array({{{"boardType", "KR5120"}}});
    expectRefused(description({without(fileEntry("a.bin"), "boardType")}), mandatoryMessage);
    expectRefused(description({entryWith("boards", boards)}), mandatoryMessage);
    expectAccepted(description({fileEntry("a.bin", {{"boards", boards}, {"id", 1}})}));
}

TEST(FileEntry, MandatoryMembersAreCheckedBeforeTheOptionalOnes)
{
    expectRefused(description({{{"name", "a.bin"}, {"boardType", 5}, {"id", "1"}, {"mode", 7}}}), mandatoryMessage);
}

TEST(FileEntry, TypeOfBoardTypeIsCheckedWithTheOptionalMembers)
{
    for (const ordered_json& value :
         {ordered_json(nullptr), ordered_json(5), ordered_json(true), ordered_json::object()}) {
        expectRefused(description({entryWith("boardType", value)}),
                      "ERROR: File entry 0 is invalid. Property \"boardType\" has an invalid value.\n");
    }
}

TEST(FileEntry, NumberOfTheEntryIsNamed)
{
    expectRefused(description({fileEntry("a.bin"), fileEntry("b.bin"), without(fileEntry("c.bin"), "name")}),
                  "ERROR: File entry 2 is invalid. A mandatory property is missing or invalid.\n");
    expectRefused(
        description({fileEntry("a.bin"), fileEntry("b.bin", {{"targetPath", "/b"}, {"id", 1}})}),
        "ERROR: File entry 1 is invalid. Properties \"id\" and \"targetPath\" must not be specified at the same "
        "time.\n");
    expectRefused(description({fileEntry("a.bin"), without(fileEntry("b.bin"), "id")}),
                  "ERROR: File entry 1 is invalid. Either \"id\" or \"targetPath\" must be specified.\n");
}

TEST(FileEntry, OnlyTheFirstDefectIsReported)
{
    expectRefused(description({fileEntry("a.bin", {{"mode", "none"}}), 5, entryWith("featureLevel", 3)}),
                  "ERROR: File entry 0 is invalid. Property \"mode\" is invalid.\n");
}

TEST(FileEntry, CannotHaveBothIdAndTargetPath)
{
    expectRefused(description({fileEntry("a.bin", {{"id", 1}, {"targetPath", "/a"}})}), bothTargetsMessage);
}

TEST(FileEntry, NeedsIdOrTargetPath)
{
    expectRefused(description({without(fileEntry("a.bin"), "id")}), noTargetMessage);
    expectAccepted(description({fileEntry("a.bin", {{"id", 0}})}));
    expectAccepted(description({fileEntry("a.bin", {{"targetPath", ""}})}));
}

TEST(FileEntry, OptionalMembersAreCheckedBeforeIdAndTargetPath)
{
    expectRefused(description({fileEntry("a.bin", {{"id", 1}, {"targetPath", "/a"}, {"mode", 1}})}),
                  "ERROR: File entry 0 is invalid. Property \"mode\" has an invalid value.\n");
    expectRefused(description({without(fileEntry("a.bin", {{"version", ""}}), "id")}),
                  "ERROR: File entry 0 is invalid. Property \"version\" is invalid.\n");
}

TEST(FileEntry, GivesTheRecordItsMembers)
{
    const auto file = recordOf({{"name", "firmware.bin"},
                                {"sequence", 4294967295u},
                                {"boardType", "KR5120"},
                                {"id", 3},
                                {"version", "23.2a12"},
                                {"checksumCrc32", 4294967295u},
                                {"mode", "upgrade"}});
    EXPECT_STREQ(file.name.c_str(), "firmware.bin");
    EXPECT_EQ(file.sequence, 4294967295u);
    EXPECT_EQ(file.version, ZoCVersion(23, 2, 0, 1, 12, 0));
    EXPECT_EQ(file.checksumCrc32, 4294967295u);
    EXPECT_EQ(file.mode, UpdateMode::upgrade);
    EXPECT_FALSE(file.hasTargetPath);
    EXPECT_EQ(file.assignedElementCount, 0u);
    EXPECT_FALSE(file.fileMissing);
}

TEST(FileEntry, AbsentVersionIsTheArchivesVersion)
{
    EXPECT_EQ(recordOf(fileEntry("a.bin")).version, ZoCVersion(2, 3, 4, 0, 0, 0));
}

TEST(FileEntry, NullVersionIsEmpty)
{
    EXPECT_EQ(recordOf(fileEntry("a.bin", {{"version", nullptr}})).version.getAsULong64(), 0u);
}

TEST(FileEntry, EmptyVersionIsRefused)
{
    expectRefused(description({fileEntry("a.bin", {{"version", ""}})}),
                  "ERROR: File entry 0 is invalid. Property \"version\" is invalid.\n");
}

TEST(FileEntry, VersionIsNotCutAtANul)
{
    expectRefused(description({fileEntry("a.bin", {{"version", std::string("1.0\0x", 5)}})}),
                  "ERROR: File entry 0 is invalid. Property \"version\" is invalid.\n");
}

TEST(FileEntry, NumbersBeyondThirtyTwoBitsBecomeTheLargest)
{
    TestArchive archive(description({fileEntry("a.bin", {{"sequence", 4294967297u}, {"checksumCrc32", 8589934590u}})}));
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    ASSERT_EQ(reader.fileCount(), 1u);
    EXPECT_EQ(reader.file(0).sequence, 4294967295u);
    EXPECT_EQ(reader.archive().getMaxSequence(), 4294967295u);
    EXPECT_EQ(reader.file(0).checksumCrc32, 4294967295u);
}

TEST(FileEntry, AbsentChecksumIsNotAvailable)
{
    EXPECT_EQ(recordOf(without(fileEntry("a.bin"), "checksumCrc32")).checksumCrc32, 0xFFFFFFFEu);
    EXPECT_EQ(recordOf(fileEntry("a.bin", {{"checksumCrc32", 4294967294u}})).checksumCrc32, 0xFFFFFFFEu);
    EXPECT_EQ(recordOf(fileEntry("a.bin", {{"checksumCrc32", 0}})).checksumCrc32, 0u);
}

TEST(FileEntry, ModeIsStandardUnlessUpgrade)
{
    EXPECT_EQ(recordOf(fileEntry("a.bin")).mode, UpdateMode::standard);
    EXPECT_EQ(recordOf(fileEntry("a.bin", {{"mode", "standard"}})).mode, UpdateMode::standard);
    EXPECT_EQ(recordOf(fileEntry("a.bin", {{"mode", "upgrade"}})).mode, UpdateMode::upgrade);
}

TEST(FileEntry, TargetPathIsNotedWhereverItStands)
{
    EXPECT_TRUE(recordOf(fileEntry("a.bin", {{"targetPath", "/a"}})).hasTargetPath);
    EXPECT_FALSE(recordOf(fileEntry("a.bin", {{"id", 5}})).hasTargetPath);
    const ordered_json boards = ordered_json::array({{{"boardType", "A"}, {"targetPath", "/a"}}});
    EXPECT_TRUE(recordOf(fileEntry("a.bin", {{"boards", boards}})).hasTargetPath);
}

TEST(FileEntry, IsKeptWhole)
{
    const ordered_json boards = ordered_json::array({{{"boardType", "A"}, {"id", 1}, {"color", "red"}}});
    const auto file = recordOf({{"name", "a.bin"}, {"sequence", 1}, {"boards", boards}, {"note", {1, nullptr, -2.5}}});
    EXPECT_EQ(
        file.jsonEntry.dump(),
        "{\"boards\":[{\"boardType\":\"A\",\"color\":\"red\",\"id\":1}],\"name\":\"a.bin\",\"note\":[1,null,-2.5],"
        "\"sequence\":1}");
}

TEST(FileEntry, LargestSequenceIsKept)
{
    TestArchive archive(description({fileEntry("a.bin", {{"sequence", 3}}), fileEntry("b.bin", {{"sequence", 40}}),
                                     fileEntry("c.bin", {{"sequence", 39}})}));
    ArchiveReader reader(archive);
    ASSERT_TRUE(reader.read());
    EXPECT_EQ(reader.archive().getMaxSequence(), 40u);
    EXPECT_EQ(reader.file(2).sequence, 39u);
}
