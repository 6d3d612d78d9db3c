// What an inspector tells of the archive's update files.
#include <stdexcept>

#include "Inspecting.h"
#include "support/UpdateFiles.h"

using namespace ZoNTrellanInspector;

using Files = Inspecting;

TEST_F(Files, StandInTheOrderOfTheHostsListAndKnowTheirPlaceInTheDescription)
{
    entries = {ioEntry("zero.bin", 1, {{"featureLevel", 3}}), ioEntry("one.bin", 1),
               ioEntry("two.bin", 2, {{"featureLevel", 9}}), ioEntry("three.bin", 3)};
    ASSERT_EQ(apply(), 0u);

    ASSERT_EQ(inspector->getFileCount(), 2u);
    EXPECT_EQ(inspector->getFile(0).name, "one.bin");
    EXPECT_EQ(inspector->getFile(0).entry, 1u);
    EXPECT_EQ(inspector->getFile(1).name, "three.bin");
    EXPECT_EQ(inspector->getFile(1).entry, 3u);
    try {
        inspector->getFile(2);
        FAIL() << "there are two";
    } catch (const std::out_of_range& fault) {
        EXPECT_STREQ(fault.what(), "ZoITrellanInspector: there is no such file");
    }
}

TEST_F(Files, TellWhatTheirEntriesState)
{
    entries = {ioEntry("sub/one.bin", 1, {{"sequence", 7}, {"mode", "upgrade"}})};
    ASSERT_EQ(apply(), 0u);

    const ZoTFile& file = inspector->getFile(0);
    EXPECT_EQ(file.path, archive->path() + "/sub/one.bin");
    EXPECT_EQ(file.sequence, 7u);
    EXPECT_TRUE(file.isUpgrade);
    EXPECT_EQ(file.version, "2.0");
    EXPECT_TRUE(file.hasChecksum);
    EXPECT_EQ(file.checksum, 6u);
    EXPECT_TRUE(file.statesChecksum);
    EXPECT_FALSE(file.isForFlashDrive);
    EXPECT_EQ(file.elementCount, 0u);
}

TEST_F(Files, HaveNoVersionWhereItIsNotKnown)
{
    entries = {ioEntry("one.bin", 1, {{"version", nullptr}})};
    ASSERT_EQ(apply(), 0u);
    EXPECT_EQ(inspector->getFile(0).version, "");
}

TEST_F(Files, HaveTheChecksumOfTheirHeadersWhereTheirEntriesStateNone)
{
    entries = {without(ioEntry("one.bin", 1), "checksumCrc32"),
               ioEntry("two.bin", 2, {{"checksumCrc32", 4294967294u}})};
    contents["one.bin"] = UpdateFiles::bitstreamFile(77);
    contents["two.bin"] = UpdateFiles::bitstreamFile(88);
    ASSERT_EQ(apply(), 0u);

    EXPECT_EQ(inspector->getFile(0).checksum, 77u);
    EXPECT_FALSE(inspector->getFile(0).statesChecksum);
    EXPECT_EQ(inspector->getFile(1).checksum, 88u);
    EXPECT_FALSE(inspector->getFile(1).statesChecksum);
}

TEST_F(Files, HaveNoChecksumWhereTheirHeadersStateNoneEither)
{
    entries = {without(ioEntry("one.bin", 1), "checksumCrc32")};
    contents["one.bin"] = UpdateFiles::bitstreamFile(77, 88);
    ASSERT_EQ(apply(), 0u);

    EXPECT_FALSE(inspector->getFile(0).hasChecksum);
    EXPECT_EQ(inspector->getFile(0).checksum, 0u);
}

TEST_F(Files, KnowHowManyElementsTheyWereGivenTo)
{
    boards = {ioBoard({installed(1), installed(1)}), ioBoard({installed(2)})};
    boards[1]["id"] = "IOMODULE[2]";
    entries = {ioEntry("one.bin", 1), ioEntry("two.bin", 2), ioEntry("three.bin", 3)};
    ASSERT_EQ(apply(), 0u);

    EXPECT_EQ(inspector->getFile(0).elementCount, 2u);
    EXPECT_EQ(inspector->getFile(1).elementCount, 1u);
    EXPECT_EQ(inspector->getFile(2).elementCount, 0u);
}

TEST_F(Files, AreForTheFlashDriveWhereAnyBoardHasATargetPath)
{
    entries = {fileEntry("site.cfg", {{"boards", {{{"boardType", "IO7"}, {"targetPath", "site.cfg"}}}}})};
    ASSERT_EQ(apply(), 0u);
    EXPECT_TRUE(inspector->getFile(0).isForFlashDrive);
}
