// ParameterNames: the names that the parameters of a tree have, each parsed once.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "libZoInventoryTree/ZoCInventoryAddress.h"
#include "simulation/json/JsonNodes.h"

namespace TrellanSimulation {

struct ParameterName {
    ZoCInventoryAddress address;
    std::vector<JsonBits> keys;  // by which the tree's document has it: nearly always one, none where it is not there
};

class ParameterNames {
public:
    // The name that is this key of the tree's document; null when no parameter can have it. A name stays where it is.
    const ParameterName* ofKey(const JsonBits& key);

    // The name of this address; null when no parameter of the tree has it.
    const ParameterName* find(const ZoCInventoryAddress& address) const;

    // The name of this address, new where no parameter of the tree has it.
    const ParameterName& of(const ZoCInventoryAddress& address);

private:
    struct KnownKey {
        JsonBits key = 0;
        const ParameterName* name = nullptr;
    };

    ParameterName& add(std::string_view text, const ZoCInventoryAddress& address);
    const ParameterName* parseKey(const JsonBits& key);

    std::map<std::string, ParameterName, std::less<>> names;  // by their texts
    std::unordered_multimap<std::uint64_t, const ParameterName*> byNumber;

    // The same few come again and again. A place is null as long as no name has it.
    std::array<KnownKey, 64> lateKeys{};
    mutable std::array<const ParameterName*, 128> lateNames{};
};

}  // namespace TrellanSimulation
