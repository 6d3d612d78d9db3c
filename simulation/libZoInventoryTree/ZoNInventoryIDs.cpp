// The constants, each made of its entry in the table of kinds.
#include "libZoInventoryTree/ZoNInventoryIDs.h"

#include "simulation/libZoInventoryTree/Kinds.h"

namespace {

// The category of a kind that exists; a name that does not is a compile-time error.
consteval ZoCInventoryAddress::Category kind(std::string_view name)
{
    const auto category = TrellanSimulation::categoryOf(name);
    if (category == ZoCInventoryAddress::noCategory) {
        throw "no such kind";
    }
    return category;
}

}  // namespace

namespace ZoNInventoryIDs {

// NOLINTBEGIN(cert-err58-cpp): short addresses take no memory

const ZoCInventoryAddress ROOT(kind("ROOT"));
const ZoCInventoryAddress HCN(kind("HCN"));
const ZoCInventoryAddress CN(kind("CN"));
const ZoCInventoryAddress NETC(kind("NETC"));
const ZoCInventoryAddress BACKPLANE(kind("BACKPLANE"));
const ZoCInventoryAddress NETWORK(kind("NETWORK"));
const ZoCInventoryAddress IOROUTER(kind("IOROUTER"));
const ZoCInventoryAddress ION(kind("ION"));
const ZoCInventoryAddress IOMODULE(kind("IOMODULE"));
const ZoCInventoryAddress PIGGYBACK_MODULE(kind("PIGGYBACK_MODULE"));
const ZoCInventoryAddress SUB_BOARDS(kind("SUB_BOARDS"));
const ZoCInventoryAddress FBMODULE(kind("FBMODULE"));
const ZoCInventoryAddress UPDATE_INFO(kind("UPDATE_INFO"));
const ZoCInventoryAddress UPDATE_ELEMENT(kind("UPDATE_ELEMENT"));
const ZoCInventoryAddress FILESYSTEM_ELEMENT(kind("FILESYSTEM_ELEMENT"));
const ZoCInventoryAddress PRODUCT(kind("PRODUCT"));
const ZoCInventoryAddress FIRMWARE(kind("FIRMWARE"));
const ZoCInventoryAddress BOARD_TYPE(kind("BOARD_TYPE"));
const ZoCInventoryAddress VARIANT(kind("VARIANT"));
const ZoCInventoryAddress SERIAL_NUMBER(kind("SERIAL_NUMBER"));
const ZoCInventoryAddress SLOT(kind("SLOT"));
const ZoCInventoryAddress SLOT_COUNT(kind("SLOT_COUNT"));
const ZoCInventoryAddress UNITNAME(kind("UNITNAME"));
const ZoCInventoryAddress PACKAGE_NAME(kind("PACKAGE_NAME"));
const ZoCInventoryAddress RACKNAME(kind("RACKNAME"));
const ZoCInventoryAddress ID(kind("ID"));
const ZoCInventoryAddress NAME(kind("NAME"));
const ZoCInventoryAddress LOCATION(kind("LOCATION"));
const ZoCInventoryAddress HW_COMPATIBILITY_ID(kind("HW_COMPATIBILITY_ID"));
const ZoCInventoryAddress SW_COMPATIBILITY_ID(kind("SW_COMPATIBILITY_ID"));
const ZoCInventoryAddress TYPE_ID(kind("TYPE_ID"));
const ZoCInventoryAddress CUSTOM(kind("CUSTOM"));
const ZoCInventoryAddress CONFIGURATION(kind("CONFIGURATION"));
const ZoCInventoryAddress VALID(kind("VALID"));
const ZoCInventoryAddress ACTIVE(kind("ACTIVE"));
const ZoCInventoryAddress CHECKSUM_CRC32(kind("CHECKSUM_CRC32"));
const ZoCInventoryAddress VERSION(kind("VERSION"));
const ZoCInventoryAddress VERSION_HISTORY(kind("VERSION_HISTORY"));
const ZoCInventoryAddress MIN_HW_COMPATIBILITY_ID(kind("MIN_HW_COMPATIBILITY_ID"));
const ZoCInventoryAddress MAX_HW_COMPATIBILITY_ID(kind("MAX_HW_COMPATIBILITY_ID"));
const ZoCInventoryAddress MIN_SW_COMPATIBILITY_ID(kind("MIN_SW_COMPATIBILITY_ID"));
const ZoCInventoryAddress MAX_SW_COMPATIBILITY_ID(kind("MAX_SW_COMPATIBILITY_ID"));

// NOLINTEND(cert-err58-cpp)

}  // namespace ZoNInventoryIDs
