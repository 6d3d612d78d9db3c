// ParameterNames: the names that the parameters of a tree have, each parsed once.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "libZoInventoryTree/ZoCInventoryAddress.h"

namespace TrellanSimulation {

// A number of an address that few others have.
inline std::uint64_t numberOf(const ZoCInventoryAddress& address)
{
    return std::uint64_t{address.getIndex()} << 32 | std::uint64_t{address.getCategory()} << 8 | address.getLength();
}

struct ParameterName {
    ParameterName(std::string_view text, const ZoCInventoryAddress& address)
        : text(text), address(address), number(numberOf(address))
    {
    }

    bool isOf(const ZoCInventoryAddress& other, std::uint64_t otherNumber) const
    {
        return number == otherNumber && address == other;
    }

    const std::string text;  // "PRODUCT/NAME"
    const ZoCInventoryAddress address;
    const std::uint64_t number;
};

class ParameterNames {
public:
    // The name that is written so; null when no parameter can have it. It stays where it is.
    const ParameterName* find(std::string_view text);

    // The name of this address, which must have one.
    const ParameterName& of(const ZoCInventoryAddress& address);

private:
    std::map<std::string, ParameterName, std::less<>> names;  // by their texts
};

}  // namespace TrellanSimulation
