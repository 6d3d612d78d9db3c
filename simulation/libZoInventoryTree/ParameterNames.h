// ParameterNames: the names that the parameters of a tree have, each parsed once.
#pragma once

#include <array>
#include <map>
#include <string>
#include <string_view>

#include "libZoInventoryTree/ZoCInventoryAddress.h"

namespace TrellanSimulation {

struct ParameterName {
    std::string text;  // "PRODUCT/NAME"
    ZoCInventoryAddress address;
};

class ParameterNames {
public:
    // The name that is written so; null when no parameter can have it. It stays where it is.
    const ParameterName* find(std::string_view text);

    // The name of this address, which must have one.
    const ParameterName& of(const ZoCInventoryAddress& address);

private:
    std::map<std::string, ParameterName, std::less<>> names;  // by their texts
    std::array<const ParameterName*, 64> lately{};            // by a hash; the same few come again and again
};

}  // namespace TrellanSimulation
