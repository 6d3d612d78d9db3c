// Checksums that the description leaves out: taken from the update files, one message when that fails.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "ArchiveReader.h"
#include "support/Unprivileged.h"
#include "support/UpdateFiles.h"

using nlohmann::ordered_json;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

std::string binaryFileWith(std::uint32_t checksum)
{
    UpdateFiles::BinaryHeader header;
    header.checksum = checksum;
    header.version = {9, 9, 9};
    header.typeId = 77;
    return UpdateFiles::binaryFile(header);
}

// An entry that leaves its checksum to the file.
ordered_json open(const std::string& name)
{
    return without(fileEntry(name), "checksumCrc32");
}

// An archive with a file of each kind, and one entry that states its checksum and whose file is missing.
void addAllKinds(TestArchive& archive)
{
    archive.addFile("binary.bin", binaryFileWith(0x89ABCDEF));
    archive.addFile("tree.json", UpdateFiles::inventoryFile({{"FIRMWARE/CHECKSUM_CRC32", 200}}));
    archive.addFile("fpga.bit", UpdateFiles::bitstreamFile(300));
}

const ordered_json allKinds = description(
    {open("binary.bin"), fileEntry("stated.bin", {{"checksumCrc32", 42}}), open("tree.json"), open("fpga.bit")});

void expectFailure(ArchiveReader& reader, const std::string& message)
{
    EXPECT_FALSE(reader.read());
    EXPECT_THAT(reader.messages.fragments(), ElementsAre(message));
    EXPECT_EQ(reader.errors.count(), 0u);
}

std::string notFound(const TestArchive& archive, const std::string& name)
{
    return "ERROR: Cannot read checksum from update file. '" + archive.path() + "/" + name + "' not found.\n";
}

}  // namespace

TEST(ReadUpdateFiles, TakesChecksumsFromAllKindsOfFiles)
{
    TestArchive archive(allKinds);
    addAllKinds(archive);
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    EXPECT_EQ(reader.file(0).checksumCrc32, 0x89ABCDEFu);
    EXPECT_EQ(reader.file(1).checksumCrc32, 42u);
    EXPECT_EQ(reader.file(2).checksumCrc32, 200u);
    EXPECT_EQ(reader.file(3).checksumCrc32, 300u);
    EXPECT_THAT(reader.messages.fragments(), ElementsAre("3 update files needed to be opened to get parameters not "
                                                         "contained in the description file.\n\n"));
    EXPECT_EQ(reader.errors.count(), 0u);
}

TEST(ReadUpdateFiles, TakesNothingButTheChecksum)
{
    TestArchive archive(description({open("binary.bin")}));
    archive.addFile("binary.bin", binaryFileWith(5));
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    EXPECT_EQ(reader.file(0).version, ZoCVersion(2, 3, 4, 0, 0, 0));
    EXPECT_FALSE(reader.file(0).jsonEntry.contains("checksumCrc32"));
    EXPECT_FALSE(reader.file(0).fileMissing);
}

TEST(ReadUpdateFiles, CountsASingleFileInTheSameWords)
{
    TestArchive archive(description({open("binary.bin")}));
    archive.addFile("binary.bin", binaryFileWith(5));
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    EXPECT_EQ(reader.text(),
              "1 update files needed to be opened to get parameters not contained in the description file.\n\n");
}

TEST(ReadUpdateFiles, OpensNoFileWhenAllChecksumsAreStated)
{
    TestArchive archive(description({fileEntry("missing.bin"), fileEntry("missing too.bin")}));
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    EXPECT_THAT(reader.messages.fragments(), IsEmpty());
    EXPECT_FALSE(reader.file(0).fileMissing);
}

TEST(ReadUpdateFiles, DoesNotCountForTheDescriptionCommand)
{
    TestArchive archive(allKinds);
    addAllKinds(archive);
    ArchiveReader reader(archive, ZoNTrellanUpdater::OUTPUT_DESCRIPTION);
    EXPECT_TRUE(reader.read());
    EXPECT_THAT(reader.messages.fragments(), IsEmpty());
    EXPECT_EQ(reader.file(3).checksumCrc32, 300u);
}

TEST(ReadUpdateFiles, CountsForEveryOtherCommand)
{
    using namespace ZoNTrellanUpdater;
    TestArchive archive(description({open("binary.bin")}));
    archive.addFile("binary.bin", binaryFileWith(5));
    for (std::uint32_t command : {ARCHIVE_VERSION, PRINT_ARCHIVE, COMPARE_VERSIONS, UPDATE}) {
        ArchiveReader reader(archive, command);
        EXPECT_TRUE(reader.read());
        EXPECT_EQ(reader.text(),
                  "1 update files needed to be opened to get parameters not contained in the description file.\n\n")
            << "command " << command;
    }
}

TEST(ReadUpdateFiles, OpensFilesWhoseStatedChecksumMeansNone)
{
    TestArchive archive(description({fileEntry("binary.bin", {{"checksumCrc32", 4294967294u}})}));
    archive.addFile("binary.bin", binaryFileWith(5));
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    EXPECT_EQ(reader.file(0).checksumCrc32, 5u);
}

TEST(ReadUpdateFiles, DoesNotOpenFilesOfSkippedEntries)
{
    ordered_json entry = open("missing.bin");
    entry["featureLevel"] = 3;
    TestArchive archive(description({entry}));
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    EXPECT_EQ(reader.text(), "WARNING: File entry 0 is not supported. Ignoring this entry.\n");
}

TEST(ReadUpdateFiles, FindsFilesInSubfolders)
{
    TestArchive archive(description({open("boards/a file.bin")}));
    archive.addFile("boards/a file.bin", binaryFileWith(5));
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    EXPECT_EQ(reader.file(0).checksumCrc32, 5u);
}

TEST(ReadUpdateFiles, BitstreamWithoutChecksumIsCountedAndLeavesNone)
{
    TestArchive archive(description({open("fpga.bit")}));
    archive.addFile("fpga.bit", UpdateFiles::bitstreamFile(300, 88));
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    EXPECT_EQ(reader.file(0).checksumCrc32, 0xFFFFFFFEu);
    EXPECT_EQ(reader.text(),
              "1 update files needed to be opened to get parameters not contained in the description file.\n\n");
}

TEST(ReadUpdateFiles, InventoryTreeWithoutChecksumLeavesNone)
{
    TestArchive archive(description({open("tree.json")}));
    archive.addFile("tree.json", UpdateFiles::inventoryFile({{"FIRMWARE/TYPE_ID", 2}}));
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    EXPECT_EQ(reader.file(0).checksumCrc32, 0xFFFFFFFEu);
}

TEST(ReadUpdateFiles, FileTooShortForABinaryHeaderIsTriedAsAnInventoryTree)
{
    const std::string tree = R"({"inventoryTree":{"id":"CN"},"checksumCrc32":7})";
    ASSERT_LT(tree.size(), 48u);
    TestArchive archive(description({open("short.json")}));
    archive.addFile("short.json", tree);
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    EXPECT_EQ(reader.file(0).checksumCrc32, 7u);
}

TEST(ReadUpdateFiles, MissingFileIsReportedWithItsPathAndMarked)
{
    TestArchive archive(description({open("missing.bin")}));
    ArchiveReader reader(archive);
    expectFailure(reader, notFound(archive, "missing.bin"));
    EXPECT_TRUE(reader.file(0).fileMissing);
    EXPECT_EQ(reader.file(0).checksumCrc32, 0xFFFFFFFEu);
}

TEST(ReadUpdateFiles, UnreadableFileCountsAsMissing)
{
    TestArchive archive(description({open("secret.bin")}));
    archive.addFile("secret.bin", binaryFileWith(5));
    makeUnreadable(archive.path(), "secret.bin");
    ArchiveReader reader(archive);
    const Unprivileged user;
    expectFailure(reader, notFound(archive, "secret.bin"));
    EXPECT_TRUE(reader.file(0).fileMissing);
}

TEST(ReadUpdateFiles, FirstBadFileEndsTheReading)
{
    TestArchive archive(
        description({open("binary.bin"), open("missing.bin"), open("missing too.bin"), open("fpga.bit")}));
    addAllKinds(archive);
    ArchiveReader reader(archive);
    expectFailure(reader, notFound(archive, "missing.bin"));
    EXPECT_EQ(reader.file(0).checksumCrc32, 0x89ABCDEFu);
    EXPECT_FALSE(reader.file(0).fileMissing);
    EXPECT_TRUE(reader.file(1).fileMissing);
    EXPECT_FALSE(reader.file(2).fileMissing);
    EXPECT_EQ(reader.file(3).checksumCrc32, 0xFFFFFFFEu);
}

TEST(ReadUpdateFiles, FileOfNoKnownKindIsReportedByItsName)
{
    for (const std::string& content :
         {std::string(), std::string("plain text"), std::string(5000, '\0'), UpdateFiles::binaryFile({}, 47),
          UpdateFiles::bitstreamFile(1).substr(0, 91), UpdateFiles::bitstreamFile(1, 92, 2)}) {
        TestArchive archive(description({open("folder/odd %s.bin")}));
        archive.addFile("folder/odd %s.bin", content);
        ArchiveReader reader(archive);
        expectFailure(reader, "ERROR: Cannot read checksum from update file folder/odd %s.bin.\n");
        EXPECT_FALSE(reader.file(0).fileMissing);
    }
}

TEST(ReadUpdateFiles, FolderIsOfNoKnownKind)
{
    TestArchive archive(description({open("folder")}));
    std::filesystem::create_directory(archive.path() + "/folder");
    ArchiveReader reader(archive);
    expectFailure(reader, "ERROR: Cannot read checksum from update file folder.\n");
}

TEST(ReadUpdateFiles, DefectiveDescriptionOpensNoFile)
{
    TestArchive archive(description({open("missing.bin"), 5}));
    ArchiveReader reader(archive);
    expectFailure(reader, "ERROR: File entry 1 is invalid.\n");
    EXPECT_FALSE(reader.file(0).fileMissing);
}
