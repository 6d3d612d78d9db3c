// Inventory addresses written as text, as in target files: the way back from ZoCInventoryAddress::toString().
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "libZoInventoryTree/ZoCInventoryAddress.h"

namespace TrellanSimulation {

// The address of one element from a kind's name with an optional "[n]" ("HCN", "ION[1]"): n is decimal, of 32 bits and
// without leading zeros. Nothing when `text` is anything else.
std::optional<ZoCInventoryAddress> parseElement(std::string_view text);

// The address of an item from its path from the root, written as toString() writes it ("/ROOT/HCN").
std::optional<ZoCInventoryAddress> parseItemAddress(std::string_view text);

// The address of a parameter, relative to its item, written as toString() writes it but without the first "/"
// ("PRODUCT/BOARD_TYPE").
std::optional<ZoCInventoryAddress> parseParameterAddress(std::string_view text);

// The text of an item's address, and of a parameter's address.
std::string itemAddressText(const ZoCInventoryAddress& address);
std::string parameterAddressText(const ZoCInventoryAddress& address);

}  // namespace TrellanSimulation
