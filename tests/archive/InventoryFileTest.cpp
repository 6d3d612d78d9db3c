// Update files that carry an inventory tree: which of its values are taken, and what stands for those it lacks.
#include <gtest/gtest.h>

#include "HeaderValues.h"
#include "simulation/base/Resources.h"
#include "support/TempDir.h"
#include "support/UpdateFiles.h"

using nlohmann::ordered_json;
using UpdateFiles::inventoryFile;

namespace {

constexpr std::uint32_t missing = 0xFFFFFFFE;

const ordered_json fullParameters = {
    {"FIRMWARE/MIN_HW_COMPATIBILITY_ID", 1},
    {"FIRMWARE/MAX_HW_COMPATIBILITY_ID", 20},
    {"FIRMWARE/MIN_SW_COMPATIBILITY_ID", 3},
    {"FIRMWARE/MAX_SW_COMPATIBILITY_ID", 4000000000u},
    {"FIRMWARE/TYPE_ID", 5},
    {"FIRMWARE/CHECKSUM_CRC32", 600},
    {"FIRMWARE/VERSION", "23.2b7p1"},
};

ordered_json lacking(const std::string& key)
{
    ordered_json parameters = fullParameters;
    parameters.erase(key);
    return parameters;
}

ordered_json with(const std::string& key, const ordered_json& value)
{
    ordered_json parameters = fullParameters;
    parameters[key] = value;
    return parameters;
}

class InventoryFile : public ::testing::Test {
protected:
    HeaderValues read(const std::string& content) { return readPath(folder.write("update.json", content).string()); }

    HeaderValues readPath(const std::string& path)
    {
        return readHeader(&ZoCUpdateArchive::readUpdateFileInventory, path);
    }

    TempDir folder;
};

// Expects all values of fullParameters but the one that `spared` points to.
void expectFull(const HeaderValues& values, const std::uint32_t HeaderValues::*spared = nullptr)
{
    const std::pair<std::uint32_t HeaderValues::*, std::uint32_t> expected[] = {
        {&HeaderValues::minHw, 1},           {&HeaderValues::maxHw, 20}, {&HeaderValues::minSw, 3},
        {&HeaderValues::maxSw, 4000000000u}, {&HeaderValues::typeId, 5}, {&HeaderValues::checksum, 600}};
    EXPECT_EQ(values.code, 0);
    for (const auto& [field, value] : expected) {
        EXPECT_EQ(values.*field, field == spared ? missing : value) << "value " << value;
    }
    EXPECT_EQ(values.version, ZoCVersion(23, 2, 0, 2, 7, 1));
}

}  // namespace

TEST_F(InventoryFile, GivesAllValues)
{
    expectFull(read(inventoryFile(fullParameters)));
}

TEST_F(InventoryFile, ValueThatIsMissingOrUnreadableIsNotAvailable)
{
    const std::pair<const char*, std::uint32_t HeaderValues::*> parameters[] = {
        {"FIRMWARE/MIN_HW_COMPATIBILITY_ID", &HeaderValues::minHw},
        {"FIRMWARE/MAX_HW_COMPATIBILITY_ID", &HeaderValues::maxHw},
        {"FIRMWARE/MIN_SW_COMPATIBILITY_ID", &HeaderValues::minSw},
        {"FIRMWARE/MAX_SW_COMPATIBILITY_ID", &HeaderValues::maxSw},
        {"FIRMWARE/TYPE_ID", &HeaderValues::typeId},
        {"FIRMWARE/CHECKSUM_CRC32", &HeaderValues::checksum}};
    for (const auto& [key, field] : parameters) {
        SCOPED_TRACE(key);
        expectFull(read(inventoryFile(lacking(key))), field);
        expectFull(read(inventoryFile(with(key, "7"))), field);
        expectFull(read(inventoryFile(with(key, 4294967296u + 7))), field);
    }
}

TEST_F(InventoryFile, VersionThatIsMissingOrUnreadableIsNotAvailable)
{
    EXPECT_EQ(read(inventoryFile(lacking("FIRMWARE/VERSION"))).version.getAsULong64(), 0xFFFFFFFEull);
    EXPECT_EQ(read(inventoryFile(with("FIRMWARE/VERSION", 23))).version.getAsULong64(), 0xFFFFFFFEull);
}

TEST_F(InventoryFile, VersionThatDoesNotParseIsEmpty)
{
    EXPECT_EQ(read(inventoryFile(with("FIRMWARE/VERSION", "newest"))).version.getAsULong64(), 0u);
}

TEST_F(InventoryFile, ChecksumOfTheFileComesBeforeThatOfTheTree)
{
    EXPECT_EQ(read(inventoryFile(fullParameters, 0x89ABCDEF)).checksum, 0x89ABCDEFu);
    EXPECT_EQ(read(inventoryFile(fullParameters, 0)).checksum, 0u);
    EXPECT_EQ(read(inventoryFile(lacking("FIRMWARE/CHECKSUM_CRC32"), 9)).checksum, 9u);
    EXPECT_EQ(read(inventoryFile(with("FIRMWARE/CHECKSUM_CRC32", "x"), 9)).checksum, 9u);
    EXPECT_EQ(read(inventoryFile(fullParameters)).checksum, 600u);
}

TEST_F(InventoryFile, TreeWithoutValuesIsStillOfThisKind)
{
    const HeaderValues values = read(inventoryFile(ordered_json::object()));
    EXPECT_EQ(values.code, 0);
    EXPECT_EQ(values.minHw, missing);
    EXPECT_EQ(values.maxHw, missing);
    EXPECT_EQ(values.minSw, missing);
    EXPECT_EQ(values.maxSw, missing);
    EXPECT_EQ(values.typeId, missing);
    EXPECT_EQ(values.checksum, missing);
    EXPECT_EQ(values.version.getAsULong64(), 0xFFFFFFFEull);
}

TEST_F(InventoryFile, FileWithoutATreeIsNotOfThisKind)
{
    for (const char* content : {"", "nonsense", "{}", "[]", "{\"checksumCrc32\": 5}", "{\"inventoryTree\": 5}"}) {
        EXPECT_EQ(read(content).code, 1) << content;
    }
    EXPECT_EQ(read(UpdateFiles::binaryFile({})).code, 1);
    EXPECT_EQ(read(UpdateFiles::bitstreamFile(5)).code, 1);
}

TEST_F(InventoryFile, FileThatCannotBeReadIsNotOfThisKind)
{
    EXPECT_EQ(readPath("").code, 1);
    EXPECT_EQ(readPath((folder.path() / "missing.json").string()).code, 1);
    EXPECT_EQ(readPath(folder.path().string()).code, 1);
}

TEST_F(InventoryFile, NothingIsLeftBehind)
{
    const TrellanSimulation::Resources before = TrellanSimulation::resources();
    read(inventoryFile(fullParameters, 5));
    read(inventoryFile(with("FIRMWARE/TYPE_ID", "x")));
    read("nonsense");
    readPath("");
    EXPECT_EQ(TrellanSimulation::resources().errorLists, before.errorLists);
    EXPECT_EQ(TrellanSimulation::resources().inventoryTrees, before.inventoryTrees);
}
