// The binary header of an update file: where its fields lie, and when a file has none.
#include <gtest/gtest.h>

#include "HeaderValues.h"
#include "support/TempDir.h"
#include "support/UpdateFiles.h"

using UpdateFiles::binaryFile;
using UpdateFiles::BinaryHeader;

namespace {

BinaryHeader fullHeader()
{
    BinaryHeader header;
    header.checksum = 0x89ABCDEF;
    header.version = {23, 2, 200};
    header.releaseCode = 10;
    header.versionComponent5 = 0xF102;
    header.versionComponent6 = 0x8304;
    header.minHwCompatibilityId = 0x01020304;
    header.maxHwCompatibilityId = 0xF1F2F3F4;
    header.minSwCompatibilityId = 0x11121314;
    header.maxSwCompatibilityId = 0xE1E2E3E4;
    header.typeId = 0x21222324;
    return header;
}

class UpdateFileHeader : public ::testing::Test {
protected:
    HeaderValues read(const std::string& content)
    {
        return readHeader(&ZoCUpdateArchive::readUpdateFileHeader, folder.write("update.bin", content).string());
    }

    HeaderValues readPath(const std::string& path) { return readHeader(&ZoCUpdateArchive::readUpdateFileHeader, path); }

    TempDir folder;
};

}  // namespace

TEST_F(UpdateFileHeader, GivesAllValues)
{
    const HeaderValues values = read(binaryFile(fullHeader()));
    EXPECT_EQ(values.code, 0);
    EXPECT_EQ(values.checksum, 0x89ABCDEFu);
    EXPECT_EQ(values.minHw, 0x01020304u);
    EXPECT_EQ(values.maxHw, 0xF1F2F3F4u);
    EXPECT_EQ(values.minSw, 0x11121314u);
    EXPECT_EQ(values.maxSw, 0xE1E2E3E4u);
    EXPECT_EQ(values.typeId, 0x21222324u);
    EXPECT_EQ(values.version, ZoCVersion(23, 2, 200, 1, 0xF102, 0x8304));
}

TEST_F(UpdateFileHeader, FieldsLieAtTheirOffsets)
{
    std::string bytes(1000, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(i % 251);
    }
    bytes.replace(40, 8, "\x12\x55\xAA\x34\xAA\x18\x47\x55");
    const HeaderValues values = read(bytes);
    EXPECT_EQ(values.code, 0);
    EXPECT_EQ(values.checksum, 0x3C3D3E3Fu);                               // bytes 60 to 63
    EXPECT_EQ(values.version, ZoCVersion(76, 77, 78, 0, 0x5051, 0x5253));  // bytes 76 to 83
    EXPECT_EQ(values.minHw, 0x5D5E5F60u);                                  // bytes 344 to 347: 344 - 251 is 0x5D
    EXPECT_EQ(values.maxHw, 0x61626364u);
    EXPECT_EQ(values.minSw, 0x65666768u);
    EXPECT_EQ(values.maxSw, 0x696A6B6Cu);
    EXPECT_EQ(values.typeId, 0x6D6E6F70u);
}

TEST_F(UpdateFileHeader, ReleaseCodeGivesTheStage)
{
    BinaryHeader header = fullHeader();
    for (unsigned code = 0; code < 256; ++code) {
        header.releaseCode = static_cast<std::uint8_t>(code);
        const unsigned stage = code == 10 ? 1 : code == 11 ? 2 : 0;
        EXPECT_EQ(read(binaryFile(header)).version.getSpb(), stage) << "release code " << code;
    }
}

TEST_F(UpdateFileHeader, NeedsEveryByteOfTheMagic)
{
    for (std::size_t offset = 40; offset < 48; ++offset) {
        std::string bytes = binaryFile(fullHeader());
        bytes[offset] = static_cast<char>(bytes[offset] ^ 1);
        EXPECT_EQ(read(bytes).code, 1) << "offset " << offset;
    }
}

TEST_F(UpdateFileHeader, MagicIsComparedAsStored)
{
    std::string bytes = binaryFile(fullHeader());
    bytes.replace(40, 8, "\x55\x47\x18\xAA\x34\xAA\x55\x12");
    EXPECT_EQ(read(bytes).code, 1);
}

TEST_F(UpdateFileHeader, MagicMustLieAtItsOffset)
{
    EXPECT_EQ(read(binaryFile(fullHeader()).substr(1)).code, 1);
    EXPECT_EQ(read("x" + binaryFile(fullHeader())).code, 1);
}

TEST_F(UpdateFileHeader, ShorterFileLeavesZeros)
{
    const HeaderValues values = read(binaryFile(fullHeader(), 346));
    EXPECT_EQ(values.code, 0);
    EXPECT_EQ(values.checksum, 0x89ABCDEFu);
    EXPECT_EQ(values.minHw, 0x01020000u);
    EXPECT_EQ(values.maxHw, 0u);
    EXPECT_EQ(values.minSw, 0u);
    EXPECT_EQ(values.maxSw, 0u);
    EXPECT_EQ(values.typeId, 0u);
}

TEST_F(UpdateFileHeader, FileThatEndsWithTheMagicHasAHeaderOfZeros)
{
    const HeaderValues values = read(binaryFile(fullHeader(), 48));
    EXPECT_EQ(values.code, 0);
    EXPECT_EQ(values.checksum, 0u);
    EXPECT_EQ(values.version.getAsULong64(), 0u);
}

TEST_F(UpdateFileHeader, FileThatEndsWithinTheMagicHasNone)
{
    for (std::size_t size : {0u, 1u, 40u, 47u}) {
        EXPECT_EQ(read(binaryFile(fullHeader(), size)).code, 1) << size << " bytes";
    }
}

TEST_F(UpdateFileHeader, PayloadIsNotLookedAt)
{
    const HeaderValues values = read(binaryFile(fullHeader()) + std::string(100000, '\xFF'));
    EXPECT_EQ(values.code, 0);
    EXPECT_EQ(values.typeId, 0x21222324u);
}

TEST_F(UpdateFileHeader, OfAnotherKindOfFileIsNotThere)
{
    EXPECT_EQ(read(UpdateFiles::bitstreamFile(7)).code, 1);
    EXPECT_EQ(read(UpdateFiles::inventoryFile({{"FIRMWARE/TYPE_ID", 3}})).code, 1);
}

TEST_F(UpdateFileHeader, FileThatCannotBeOpenedIsToldFromAnotherKind)
{
    EXPECT_EQ(readPath("").code, 2);
    EXPECT_EQ(readPath((folder.path() / "missing.bin").string()).code, 2);
    EXPECT_EQ(readPath((folder.path() / "missing" / "update.bin").string()).code, 2);
}

TEST_F(UpdateFileHeader, FolderIsNotOfThisKind)
{
    EXPECT_EQ(readPath(folder.path().string()).code, 1);
}
