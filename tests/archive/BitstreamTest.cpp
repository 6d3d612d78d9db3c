// The header of an FPGA bitstream file.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "archive/ZoCUpdateArchive.h"
#include "support/TempDir.h"
#include "support/UpdateFiles.h"

using UpdateFiles::bitstreamFile;

namespace {

constexpr std::uint32_t missing = 0xFFFFFFFE;

struct Result {
    int code;
    std::uint32_t checksum;

    bool operator==(const Result&) const = default;
};

void PrintTo(const Result& result, std::ostream* out)
{
    *out << "code " << result.code << ", checksum " << result.checksum;
}

const Result notABitstream = {1, missing};

class Bitstream : public ::testing::Test {
protected:
    static Result readPath(const std::string& path)
    {
        Result result{-1, 0x5A5A5A5A};
        result.code = ZoCUpdateArchive::readPgiBitstreamFileHeader(path, result.checksum);
        return result;
    }

    Result read(const std::string& content) { return readPath(folder.write("fpga.bit", content).string()); }

    TempDir folder;
};

}  // namespace

TEST_F(Bitstream, GivesTheChecksum)
{
    EXPECT_EQ(read(bitstreamFile(0x89ABCDEF)), (Result{0, 0x89ABCDEF}));
    EXPECT_EQ(read(bitstreamFile(0)), (Result{0, 0}));
}

TEST_F(Bitstream, FieldsLieAtTheirOffsets)
{
    std::string bytes(92, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(0x80 + i);
    }
    bytes.replace(0, 8, "ZoFPGABS");
    bytes.replace(8, 8, std::string("\x00\x00\x00\x5C\x00\x00\x00\x01", 8));
    EXPECT_EQ(read(bytes), (Result{0, 0xD8D9DADB}));  // bytes 88 to 91
}

TEST_F(Bitstream, HasAChecksumWhenItsHeaderIsLongEnough)
{
    for (std::uint32_t length : {92u, 93u, 256u, 0x5C000000u, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(read(bitstreamFile(7, length)), (Result{0, 7})) << "header length " << length;
    }
}

TEST_F(Bitstream, ShortHeaderHasNoChecksumAndIsNoError)
{
    for (std::uint32_t length : {0u, 88u, 91u}) {
        EXPECT_EQ(read(bitstreamFile(7, length)), (Result{0, missing})) << "header length " << length;
    }
}

TEST_F(Bitstream, NeedsTheFormatVersion)
{
    for (std::uint32_t version : {0u, 2u, 0x01000000u, 0x00010001u, 0x101u, 0xFFFFFFFFu}) {
        EXPECT_EQ(read(bitstreamFile(7, 92, version)), notABitstream) << "format version " << version;
    }
}

TEST_F(Bitstream, NeedsEveryByteOfTheMagic)
{
    for (std::size_t offset = 0; offset < 8; ++offset) {
        std::string bytes = bitstreamFile(7);
        bytes[offset] = static_cast<char>(bytes[offset] ^ 0x20);
        EXPECT_EQ(read(bytes), notABitstream) << "offset " << offset;
    }
}

TEST_F(Bitstream, NeedsItsWholeHeader)
{
    for (std::size_t size : {0u, 8u, 16u, 91u}) {
        EXPECT_EQ(read(bitstreamFile(7).substr(0, size)), notABitstream) << size << " bytes";
    }
    EXPECT_EQ(read(bitstreamFile(7, 40).substr(0, 40)), notABitstream);
}

TEST_F(Bitstream, ContentIsNotLookedAt)
{
    EXPECT_EQ(read(bitstreamFile(7) + std::string(100000, '\xFF')), (Result{0, 7}));
}

TEST_F(Bitstream, OtherFilesAreNotOfThisKind)
{
    EXPECT_EQ(read(UpdateFiles::binaryFile({})), notABitstream);
    EXPECT_EQ(read(UpdateFiles::inventoryFile({{"FIRMWARE/TYPE_ID", 3}})), notABitstream);
}

TEST_F(Bitstream, FileThatCannotBeReadIsNotOfThisKind)
{
    EXPECT_EQ(readPath(""), notABitstream);
    EXPECT_EQ(readPath((folder.path() / "missing.bit").string()), notABitstream);
    EXPECT_EQ(readPath(folder.path().string()), notABitstream);
}
