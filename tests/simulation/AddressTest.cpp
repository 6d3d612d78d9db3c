#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "libZoInventoryTree/ZoNInventoryIDs.h"
#include "simulation/libZoInventoryTree/AddressText.h"

using namespace ZoNInventoryIDs;
using namespace TrellanSimulation;

namespace {

std::string text(const ZoCInventoryAddress& address)
{
    return address.toString().c_str();
}

}  // namespace

TEST(InventoryAddress, IsWrittenAsAPath)
{
    EXPECT_EQ(text(ROOT / HCN / UPDATE_INFO / UPDATE_ELEMENT[2]), "/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT[2]");
    EXPECT_EQ(text(ION[0]), "/ION[0]");
    EXPECT_EQ(text(ION[4294967295]), "/ION[4294967295]");
    EXPECT_EQ(text(ZoCInventoryAddress()), "");
}

TEST(InventoryAddress, HasTheNameOfEveryKind)
{
    const std::vector<std::pair<ZoCInventoryAddress, std::string>> kinds = {
        {ROOT, "/ROOT"},
        {HCN, "/HCN"},
        {CN, "/CN"},
        {NETC, "/NETC"},
        {BACKPLANE, "/BACKPLANE"},
        {NETWORK, "/NETWORK"},
        {IOROUTER, "/IOROUTER"},
        {ION, "/ION"},
        {IOMODULE, "/IOMODULE"},
        {PIGGYBACK_MODULE, "/PIGGYBACK_MODULE"},
        {SUB_BOARDS, "/SUB_BOARDS"},
        {FBMODULE, "/FBMODULE"},
        {UPDATE_INFO, "/UPDATE_INFO"},
        {UPDATE_ELEMENT, "/UPDATE_ELEMENT"},
        {FILESYSTEM_ELEMENT, "/FILESYSTEM_ELEMENT"},
        {PRODUCT, "/PRODUCT"},
        {FIRMWARE, "/FIRMWARE"},
        {BOARD_TYPE, "/BOARD_TYPE"},
        {VARIANT, "/VARIANT"},
        {SERIAL_NUMBER, "/SERIAL_NUMBER"},
        {SLOT, "/SLOT"},
        {SLOT_COUNT, "/SLOT_COUNT"},
        {UNITNAME, "/UNITNAME"},
        {PACKAGE_NAME, "/PACKAGE_NAME"},
        {RACKNAME, "/RACKNAME"},
        {ID, "/ID"},
        {NAME, "/NAME"},
        {LOCATION, "/LOCATION"},
        {HW_COMPATIBILITY_ID, "/HW_COMPATIBILITY_ID"},
        {SW_COMPATIBILITY_ID, "/SW_COMPATIBILITY_ID"},
        {TYPE_ID, "/TYPE_ID"},
        {CUSTOM, "/CUSTOM"},
        {CONFIGURATION, "/CONFIGURATION"},
        {VALID, "/VALID"},
        {ACTIVE, "/ACTIVE"},
        {CHECKSUM_CRC32, "/CHECKSUM_CRC32"},
        {VERSION, "/VERSION"},
        {VERSION_HISTORY, "/VERSION_HISTORY"},
        {MIN_HW_COMPATIBILITY_ID, "/MIN_HW_COMPATIBILITY_ID"},
        {MAX_HW_COMPATIBILITY_ID, "/MAX_HW_COMPATIBILITY_ID"},
        {MIN_SW_COMPATIBILITY_ID, "/MIN_SW_COMPATIBILITY_ID"},
        {MAX_SW_COMPATIBILITY_ID, "/MAX_SW_COMPATIBILITY_ID"},
    };
    for (const auto& [address, name] : kinds) {
        EXPECT_EQ(text(address), name);
        EXPECT_EQ(address.getLength(), 1U);
    }
}

TEST(InventoryAddress, GivesACopyWithAnotherIndex)
{
    const ZoCInventoryAddress address = ROOT / ION[7];
    EXPECT_EQ(text(address[3]), "/ROOT/ION[3]");
    EXPECT_EQ(text(address), "/ROOT/ION[7]");
    EXPECT_EQ(address[1], ROOT / ION);
    EXPECT_EQ(text(ZoCInventoryAddress()[3]), "");
}

TEST(InventoryAddress, KnowsItsLastElement)
{
    const ZoCInventoryAddress address = ROOT / HCN[2];
    EXPECT_EQ(address.getCategory(), HCN.getCategory());
    EXPECT_EQ(address.getLastElement(), HCN[2]);
    EXPECT_EQ(address.getLength(), 2U);
    EXPECT_EQ(address.getElement(0), ROOT);
    EXPECT_THROW(address.getElement(2), std::out_of_range);
    EXPECT_THROW(ZoCInventoryAddress().getElement(0), std::out_of_range);
    EXPECT_EQ(ZoCInventoryAddress().getIndex(), 0U);
    EXPECT_EQ(ZoCInventoryAddress().getCategory(), ZoCInventoryAddress::noCategory);
    EXPECT_EQ(ZoCInventoryAddress().getLastElement(), ZoCInventoryAddress());
}

TEST(InventoryAddress, DiffersByKindIndexAndLength)
{
    EXPECT_TRUE(ROOT / HCN == ROOT / HCN[1]);
    EXPECT_TRUE(HCN != CN);
    EXPECT_TRUE(HCN[2] != HCN);
    EXPECT_TRUE(ROOT / HCN != ROOT);
    EXPECT_FALSE(ROOT / HCN != ROOT / HCN);
}

TEST(AddressText, OfAnElementMayStateTheIndex1)
{
    EXPECT_EQ(parseElement("HCN"), HCN);
    EXPECT_EQ(parseElement("HCN[1]"), HCN);
    EXPECT_EQ(parseElement("ION[16777215]"), ION[16777215]);
}

TEST(AddressText, IsRefusedInAnyOtherForm)
{
    for (const char* wrong : {"", "HC", "hcn", "HCN ", "HCN[", "HCN]", "HCN[]", "HCN[-1]", "HCN[+1]", "HCN[01]",
                              "HCN[1", "HCN[1]]", "HCN[4294967296]", "HCN[1][2]", "[1]", "/HCN"}) {
        EXPECT_FALSE(parseElement(wrong)) << wrong;
    }
}

TEST(AddressText, OfItemsAndParametersIsTheirOnlySpelling)
{
    EXPECT_EQ(parseItemAddress("/ROOT/HCN[2]"), ROOT / HCN[2]);
    EXPECT_EQ(parseParameterAddress("PRODUCT/BOARD_TYPE"), PRODUCT / BOARD_TYPE);
    for (const char* wrong : {"", "/", "ROOT", "/ROOT/", "//ROOT", "/ROOT[1]", "/ROOT/HCN[1]", "/NOWHERE"}) {
        EXPECT_FALSE(parseItemAddress(wrong)) << wrong;
    }
    for (const char* wrong : {"", "/ID", "ID/", "ID[1]", "PRODUCT//ID", "PRODUCT/SIZE"}) {
        EXPECT_FALSE(parseParameterAddress(wrong)) << wrong;
    }
}
