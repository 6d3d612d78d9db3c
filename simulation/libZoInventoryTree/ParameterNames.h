// ParameterNames: the names that the parameters of a tree have, as far as they are few.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "libZoInventoryTree/ZoCInventoryAddress.h"
#include "simulation/json/JsonNodes.h"

namespace TrellanSimulation {

struct ParameterName {
    ZoCInventoryAddress address;
    std::vector<JsonBits> keys;  // by which the tree's document has it: nearly always one, none where it is not there
    bool hasAllKeys = true;      // false: the document may have it by others, too, with the same text
    // Among the members of the item that had it last: the next one mostly has it there, too.
    mutable std::size_t latePlace = 0;
};

class ParameterNames {
public:
    // Notes that the tree's document has this key; false when no parameter can have it.
    bool add(const JsonBits& key);

    // The name of this address; null when none is noted. A name stays where it is.
    const ParameterName* find(const ZoCInventoryAddress& address) const;

    // Whether every name of the document is noted. The same few come again and again in nearly every tree.
    bool areAll() const { return all; }

    // The name of this address, new where none is noted.
    const ParameterName& of(const ZoCInventoryAddress& address);

private:
    ParameterName& addName(std::string_view text, const ZoCInventoryAddress& address);
    bool parse(const JsonBits& key);
    static void noteKey(ParameterName& name, const JsonBits& key);

    std::map<std::string, ParameterName, std::less<>> names;  // by their texts
    bool all = true;

    // A place is null as long as no key, no name has it.
    std::array<JsonBits, 256> lateKeys{};
    mutable std::array<const ParameterName*, 128> lateNames{};
};

}  // namespace TrellanSimulation
