#include <gtest/gtest.h>
#include <sys/stat.h>
#include <zlib.h>

#include "simulation/target/UpdateContent.h"
#include "support/TempDir.h"
#include "support/UpdateFiles.h"

using TrellanSimulation::fileChecksum;
using TrellanSimulation::readUpdateContent;
using TrellanSimulation::UpdateContent;

namespace {

UpdateContent contentOf(std::string_view bytes)
{
    const TempDir folder;
    return readUpdateContent(folder.write("update.bin", bytes)).value();
}

constexpr auto noText = std::nullopt;

// CRC-32 of these nine digits, the usual check value.
constexpr std::string_view digits = "123456789";
constexpr std::uint32_t digitsChecksum = 0xCBF43926;

}  // namespace

TEST(UpdateContent, OfABinaryFileIsInItsHeader)
{
    UpdateFiles::BinaryHeader header;
    header.checksum = 0x89ABCDEF;
    header.version = {23, 2, 1};
    header.releaseCode = 10;
    header.versionComponent5 = 258;
    header.versionComponent6 = 3;
    const UpdateContent content = contentOf(UpdateFiles::binaryFile(header, 1500));
    EXPECT_EQ(content.size, 1500U);
    EXPECT_EQ(content.checksum, 0x89ABCDEFU);
    EXPECT_EQ(content.version, "23.2.1a258p3");
}

TEST(UpdateContent, OfABinaryFileHasAStageByItsReleaseCode)
{
    UpdateFiles::BinaryHeader header;
    header.version = {5, 0, 0};
    header.versionComponent5 = 4;
    header.releaseCode = 11;
    EXPECT_EQ(contentOf(UpdateFiles::binaryFile(header)).version, "5.0b4");
    header.releaseCode = 12;
    EXPECT_EQ(contentOf(UpdateFiles::binaryFile(header)).version, "5.0r4");
}

TEST(UpdateContent, OfABinaryFileMayEndBehindTheMagic)
{
    const UpdateContent content = contentOf(UpdateFiles::binaryFile({}, 48));
    EXPECT_EQ(content.checksum, 0U);
    EXPECT_EQ(content.version, "0.0");
}

TEST(UpdateContent, OfABitstreamIsItsChecksum)
{
    const UpdateContent content = contentOf(UpdateFiles::bitstreamFile(0x89ABCDEF) + "bits");
    EXPECT_EQ(content.size, 96U);
    EXPECT_EQ(content.checksum, 0x89ABCDEFU);
    EXPECT_EQ(content.version, noText);
}

TEST(UpdateContent, OfABitstreamMayHaveAHeaderOfAnyLength)
{
    EXPECT_EQ(contentOf(UpdateFiles::bitstreamFile(0x89ABCDEF, 256)).checksum, 0x89ABCDEFU);
    EXPECT_EQ(contentOf(UpdateFiles::bitstreamFile(0x89ABCDEF, 0x5C000000)).checksum, 0x89ABCDEFU);
}

TEST(UpdateContent, OfABitstreamWithAShortHeaderIsNothing)
{
    const UpdateContent content = contentOf(UpdateFiles::bitstreamFile(0x89ABCDEF, 91));
    EXPECT_EQ(content.checksum, std::nullopt);
    EXPECT_EQ(content.version, noText);
}

TEST(UpdateContent, OfAnInventoryFileIsInItsTree)
{
    const UpdateContent content =
        contentOf(UpdateFiles::inventoryFile({{"FIRMWARE/CHECKSUM_CRC32", 7}, {"FIRMWARE/VERSION", "1.02"}}));
    EXPECT_EQ(content.checksum, 7U);
    EXPECT_EQ(content.version, "1.02");
}

TEST(UpdateContent, OfAnInventoryFileHasTheChecksumThatTheFileStates)
{
    const UpdateContent content = contentOf(UpdateFiles::inventoryFile({{"FIRMWARE/CHECKSUM_CRC32", 7}}, 8));
    EXPECT_EQ(content.checksum, 8U);
    EXPECT_EQ(content.version, noText);
}

TEST(UpdateContent, OfAnInventoryFileIsNothingWhereTheTreeHasNothing)
{
    const UpdateContent content = contentOf(UpdateFiles::inventoryFile({{"FIRMWARE/CHECKSUM_CRC32", "7"}}));
    EXPECT_EQ(content.checksum, std::nullopt);
    EXPECT_EQ(content.version, noText);
    const UpdateContent beyond = contentOf(UpdateFiles::inventoryFile({{"FIRMWARE/CHECKSUM_CRC32", 4294967303}}));
    EXPECT_EQ(beyond.checksum, std::nullopt);
}

TEST(UpdateContent, OfAnyOtherFileIsTheChecksumOfItsBytes)
{
    const UpdateContent content = contentOf(digits);
    EXPECT_EQ(content.size, 9U);
    EXPECT_EQ(content.checksum, digitsChecksum);
    EXPECT_EQ(content.version, noText);
    EXPECT_EQ(contentOf("").checksum, 0U);
    EXPECT_EQ(contentOf("{}").checksum, 0xA3A6BF43U);
    EXPECT_EQ(contentOf(std::string(200000, 'x')).checksum, 0x51BF0272U);
}

TEST(UpdateContent, OfABrokenHeaderIsTheChecksumOfTheBytes)
{
    for (const std::string& bytes : {UpdateFiles::bitstreamFile(1, 92, 2), UpdateFiles::bitstreamFile(1).substr(0, 91),
                                     UpdateFiles::binaryFile({}, 47), std::string(R"({"inventoryTree": {}})")}) {
        const auto expected = crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size()));
        EXPECT_EQ(contentOf(bytes).checksum, expected);
    }
}

TEST(UpdateContent, IsMissingWhereNoFileCanBeRead)
{
    EXPECT_FALSE(readUpdateContent("/nowhere/update.bin"));
    EXPECT_FALSE(readUpdateContent("/tmp"));
    EXPECT_FALSE(readUpdateContent("/dev/null"));
    EXPECT_FALSE(readUpdateContent(""));
    EXPECT_FALSE(fileChecksum("/tmp"));
}

TEST(UpdateContent, IsMissingWhereANameHoldsANul)
{
    const TempDir folder;
    const std::string file = folder.write("update.bin", digits);
    EXPECT_EQ(fileChecksum(file), digitsChecksum);
    EXPECT_FALSE(fileChecksum(file + std::string("\0junk", 5)));
    EXPECT_FALSE(readUpdateContent(file + std::string("\0junk", 5)));
}

TEST(UpdateContent, OfAnInventoryFileMayFollowAnyNumberOfBlanks)
{
    const std::string inventory = UpdateFiles::inventoryFile({{"FIRMWARE/CHECKSUM_CRC32", 7}});
    for (const std::size_t count : {999U, 1000U, 65533U, 65536U, 200000U}) {
        EXPECT_EQ(contentOf(std::string(count, ' ') + inventory).checksum, 7U) << count;
        EXPECT_EQ(contentOf("\xEF\xBB\xBF" + std::string(count, '\n') + inventory).checksum, 7U) << count;
    }
    const std::string blanks(3000, ' ');
    EXPECT_EQ(contentOf(blanks).checksum,
              crc32(0, reinterpret_cast<const Bytef*>(blanks.data()), static_cast<uInt>(blanks.size())));
}

TEST(UpdateContent, OfAnInventoryFileEndsWithIt)
{
    const std::string bytes = UpdateFiles::inventoryFile({{"FIRMWARE/CHECKSUM_CRC32", 7}}) + std::string(1, '\0');
    EXPECT_EQ(contentOf(bytes).checksum,
              crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size())));
}

TEST(UpdateContent, IsMissingWhereReadingFails)
{
    EXPECT_FALSE(readUpdateContent("/proc/self/mem"));  // a regular file whose first page cannot be read
    EXPECT_FALSE(fileChecksum("/proc/self/mem"));
}

TEST(UpdateContent, IsMissingInAPipe)
{
    const TempDir folder;
    const std::string pipe = folder.path() / "update.bin";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(readUpdateContent(pipe));
}
