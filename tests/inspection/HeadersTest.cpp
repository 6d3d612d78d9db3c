// What an inspector tells of update files by themselves.
#include <filesystem>

#include "Inspecting.h"
#include "support/UpdateFiles.h"

using namespace ZoNTrellanInspector;

namespace {

class Headers : public testing::Test {
protected:
    const ZoTFileHeader& read(const std::string& content)
    {
        return inspector->readFileHeader(folder.write("file.bin", content).string());
    }

    TempDir folder;
    std::unique_ptr<ZoITrellanUpdater> updater{ZoITrellanUpdater::createInstance({})};
    std::unique_ptr<ZoITrellanInspector> inspector{ZoITrellanInspector::createInstance(*updater)};
};

}  // namespace

TEST_F(Headers, OfABinaryFileTellChecksumVersionAndRanges)
{
    UpdateFiles::BinaryHeader header;
    header.checksum = 77;
    header.version = {2, 3, 4};
    header.minHwCompatibilityId = 5;
    header.maxHwCompatibilityId = 6;
    header.minSwCompatibilityId = 0;
    header.maxSwCompatibilityId = 8;
    const ZoTFileHeader& told = read(UpdateFiles::binaryFile(header, 2000));
    EXPECT_EQ(told.kind, ZoTFileKind::BINARY);
    EXPECT_TRUE(told.hasChecksum);
    EXPECT_EQ(told.checksum, 77u);
    EXPECT_EQ(told.version, "2.3.4");
    EXPECT_TRUE(told.hasHwCompatibilityRange);
    EXPECT_EQ(told.minHwCompatibilityId, 5u);
    EXPECT_EQ(told.maxHwCompatibilityId, 6u);
    EXPECT_TRUE(told.hasSwCompatibilityRange);
    EXPECT_EQ(told.minSwCompatibilityId, 0u);
    EXPECT_EQ(told.maxSwCompatibilityId, 8u);
}

TEST_F(Headers, TakeARangeOfZerosAndAnEmptyVersionForNone)
{
    const ZoTFileHeader& told = read(UpdateFiles::binaryFile({}));
    EXPECT_EQ(told.kind, ZoTFileKind::BINARY);
    EXPECT_EQ(told.version, "");
    EXPECT_FALSE(told.hasHwCompatibilityRange);
    EXPECT_FALSE(told.hasSwCompatibilityRange);
}

TEST_F(Headers, OfAnInventoryTreeTellWhatItHas)
{
    const ZoTFileHeader& told = read(UpdateFiles::inventoryFile(
        {{"FIRMWARE/VERSION", "3.1"}, {"FIRMWARE/MIN_HW_COMPATIBILITY_ID", 1}, {"FIRMWARE/MAX_HW_COMPATIBILITY_ID", 2}},
        88));
    EXPECT_EQ(told.kind, ZoTFileKind::INVENTORY_TREE);
    EXPECT_EQ(told.checksum, 88u);
    EXPECT_EQ(told.version, "3.1");
    EXPECT_TRUE(told.hasHwCompatibilityRange);
    EXPECT_EQ(told.maxHwCompatibilityId, 2u);
    EXPECT_FALSE(told.hasSwCompatibilityRange);

    const ZoTFileHeader& bare = read(UpdateFiles::inventoryFile(nlohmann::ordered_json::object()));
    EXPECT_EQ(bare.kind, ZoTFileKind::INVENTORY_TREE);
    EXPECT_FALSE(bare.hasChecksum);
    EXPECT_EQ(bare.version, "");
}

TEST_F(Headers, TakeARangeWithOneEndForNone)
{
    const ZoTFileHeader& told = read(
        UpdateFiles::inventoryFile({{"FIRMWARE/MIN_HW_COMPATIBILITY_ID", 1}, {"FIRMWARE/MAX_SW_COMPATIBILITY_ID", 2}}));
    EXPECT_EQ(told.kind, ZoTFileKind::INVENTORY_TREE);
    EXPECT_FALSE(told.hasHwCompatibilityRange);
    EXPECT_FALSE(told.hasSwCompatibilityRange);
}

TEST_F(Headers, OfABitstreamTellTheChecksumWhereItHasOne)
{
    EXPECT_EQ(read(UpdateFiles::bitstreamFile(99)).kind, ZoTFileKind::BITSTREAM);
    EXPECT_EQ(read(UpdateFiles::bitstreamFile(99)).checksum, 99u);
    EXPECT_FALSE(read(UpdateFiles::bitstreamFile(99, 88)).hasChecksum);
    EXPECT_EQ(read(UpdateFiles::bitstreamFile(99, 88)).checksum, 0u);
}

TEST_F(Headers, OfAnyOtherFileTellTheCrc32OfItsBytes)
{
    const ZoTFileHeader& told = read("123456789");
    EXPECT_EQ(told.kind, ZoTFileKind::PLAIN);
    EXPECT_TRUE(told.hasChecksum);
    EXPECT_EQ(told.checksum, 0xCBF43926u);
    EXPECT_EQ(told.version, "");

    EXPECT_EQ(read(std::string(1'000'000, '\0')).checksum, 0x1279CB9Eu);
    EXPECT_EQ(read("").kind, ZoTFileKind::PLAIN);
    EXPECT_EQ(read("").checksum, 0u);
}

TEST_F(Headers, TellHowFarTheReadingOfAFileWithoutOneIs)
{
    std::vector<std::pair<std::uint64_t, std::uint64_t>> reported;
    const auto progress = [](void* context, std::uint64_t done, std::uint64_t all) {
        static_cast<decltype(reported)*>(context)->emplace_back(done, all);
    };
    const std::string path = folder.write("big", std::string(600'000, '\0')).string();
    EXPECT_EQ(inspector->readFileHeaderWithProgress(path, progress, &reported).checksum, 0xD0FDD3B3u);
    EXPECT_EQ(reported, (decltype(reported){{262'144, 600'000}, {524'288, 600'000}, {600'000, 600'000}}));

    reported.clear();
    const std::string binary = folder.write("binary", UpdateFiles::binaryFile({}, 600'000)).string();
    EXPECT_EQ(inspector->readFileHeaderWithProgress(binary, progress, &reported).kind, ZoTFileKind::BINARY);
    EXPECT_TRUE(reported.empty());
}

TEST_F(Headers, OfWhatCannotBeReadTellNothingButWhy)
{
    const std::string missing = "there is no such file";
    const std::string unreadable = "this is no regular file that can be read";
    for (const auto& [path, problem] :
         {std::pair(folder.path().string(), unreadable), std::pair((folder.path() / "nothing").string(), missing),
          std::pair(std::string(), missing)}) {
        const ZoTFileHeader& told = inspector->readFileHeader(path);
        EXPECT_EQ(told.kind, ZoTFileKind::UNREADABLE) << path;
        EXPECT_FALSE(told.hasChecksum);
        EXPECT_EQ(told.problem, problem);
    }
    EXPECT_EQ(read("123456789").problem, "");
}
