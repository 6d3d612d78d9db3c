// The kinds of items and parameters of an inventory tree: each kind's name and its category number.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

#include "libZoInventoryTree/ZoCInventoryAddress.h"

namespace TrellanSimulation {

// All kinds, ordered by name; a kind's category is its position here plus 1.
inline constexpr auto kindNames = std::to_array<std::string_view>({
    "ACTIVE",
    "BACKPLANE",
    "BOARD_TYPE",
    "CHECKSUM_CRC32",
    "CN",
    "CONFIGURATION",
    "CUSTOM",
    "FBMODULE",
    "FILESYSTEM_ELEMENT",
    "FIRMWARE",
    "HCN",
    "HW_COMPATIBILITY_ID",
    "ID",
    "IOMODULE",
    "ION",
    "IOROUTER",
    "LOCATION",
    "MAX_HW_COMPATIBILITY_ID",
    "MAX_SW_COMPATIBILITY_ID",
    "MIN_HW_COMPATIBILITY_ID",
    "MIN_SW_COMPATIBILITY_ID",
    "NAME",
    "NETC",
    "NETWORK",
    "PACKAGE_NAME",
    "PIGGYBACK_MODULE",
    "PRODUCT",
    "RACKNAME",
    "ROOT",
    "SERIAL_NUMBER",
    "SLOT",
    "SLOT_COUNT",
    "SUB_BOARDS",
    "SW_COMPATIBILITY_ID",
    "TYPE_ID",
    "UNITNAME",
    "UPDATE_ELEMENT",
    "UPDATE_INFO",
    "VALID",
    "VARIANT",
    "VERSION",
    "VERSION_HISTORY",
});
static_assert(std::is_sorted(kindNames.begin(), kindNames.end()), "categories are found by binary search");

// Category of the kind called `name`; noCategory when there is no such kind.
constexpr ZoCInventoryAddress::Category categoryOf(std::string_view name)
{
    const auto* found = std::lower_bound(kindNames.begin(), kindNames.end(), name);
    if (found == kindNames.end() || *found != name) {
        return ZoCInventoryAddress::noCategory;
    }
    return static_cast<ZoCInventoryAddress::Category>(found - kindNames.begin()) + 1;
}

// Name of the kind with the number `category`; "?" when there is no such kind.
constexpr std::string_view kindName(ZoCInventoryAddress::Category category)
{
    return category == 0 || category > kindNames.size() ? std::string_view("?") : kindNames[category - 1];
}

}  // namespace TrellanSimulation
