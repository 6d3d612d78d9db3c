#include <gtest/gtest.h>

#include <memory>

#include "libZoInventoryTree/ZoCInventoryData.h"
#include "libZoInventoryTree/ZoNInventoryIDs.h"
#include "simulation/base/Resources.h"
#include "support/ErrorPool.h"
#include "support/TempDir.h"
#include "support/UpdateFiles.h"

using namespace ZoNInventoryIDs;

namespace {

// What extracting the tree of the file at `path` gives.
struct Extraction {
    explicit Extraction(const std::string& path)
    {
        ZoCInventoryItem* item = nullptr;
        ZoCInventoryData::extractInventoryTreeFromFile(errors, path.c_str(), item, hasChecksum, checksum);
        root.reset(item);
    }

    ErrorPool errors;
    std::unique_ptr<ZoCInventoryItem> root;
    bool hasChecksum = true;
    unsigned checksum = 99;
};

}  // namespace

TEST(InventoryData, GivesTheTreeAndTheChecksumOfAFile)
{
    const TempDir folder;
    const Extraction file(folder.write("a.json", UpdateFiles::inventoryFile({{"FIRMWARE/TYPE_ID", 7}}, 0xFFFFFFFF)));
    ASSERT_NE(file.root, nullptr);
    EXPECT_EQ(file.errors.count(), 0U);
    EXPECT_TRUE(file.hasChecksum);
    EXPECT_EQ(file.checksum, 0xFFFFFFFFU);
    ErrorPool errors;
    EXPECT_EQ(file.root->getValue<unsigned>(errors, FIRMWARE / TYPE_ID), 7U);
    EXPECT_EQ(errors.count(), 0U);
}

TEST(InventoryData, GivesNoChecksumWhereTheFileStatesNone)
{
    const TempDir folder;
    const Extraction file(folder.write("a.json", UpdateFiles::inventoryFile({{"FIRMWARE/CHECKSUM_CRC32", 7}})));
    ASSERT_NE(file.root, nullptr);
    EXPECT_FALSE(file.hasChecksum);
    EXPECT_EQ(file.checksum, 0U);
}

TEST(InventoryData, ReportsAFileThatHoldsNoTree)
{
    const TempDir folder;
    for (const char* content :
         {"", "plain image", "[]", "{}", R"({"inventoryTree": 1})", R"({"inventoryTree": {"id": "NOWHERE"}})",
          R"({"inventoryTree": {"id": "ROOT"}, "checksumCrc32": -1})",
          R"({"inventoryTree": {"id": "ROOT"}, "checksumCrc32": 4294967296})",
          R"({"inventoryTree": {"id": "ROOT"}, "more": 1})", R"({"inventoryTree": {"id": "ROOT"}} x)"}) {
        const std::string path = folder.write("a.json", content);
        const Extraction file(path);
        EXPECT_EQ(file.root, nullptr) << content;
        EXPECT_FALSE(file.hasChecksum) << content;
        ASSERT_EQ(file.errors.count(), 1U) << content;
        EXPECT_EQ(file.errors.code(0), 0x26300008U) << content;
        EXPECT_EQ(file.errors.text(0), path + " holds no inventory tree.") << content;
    }
}

TEST(InventoryData, ReportsAFileThatCannotBeRead)
{
    for (const char* path : {"", "/nowhere/a.json", "/tmp"}) {
        const Extraction file(path);
        EXPECT_EQ(file.root, nullptr);
        ASSERT_EQ(file.errors.count(), 1U);
        EXPECT_EQ(file.errors.code(0), 0x26300008U);
    }
}

TEST(InventoryData, CountsTheTreesThatItGives)
{
    const TempDir folder;
    const std::string path = folder.write("a.json", UpdateFiles::inventoryFile({{"ID", 7}}));
    const int before = TrellanSimulation::resources().inventoryTrees;
    {
        const Extraction file(path);
        EXPECT_EQ(TrellanSimulation::resources().inventoryTrees, before + 1);
    }
    EXPECT_EQ(TrellanSimulation::resources().inventoryTrees, before);
}
