// Numbers and versions as they stand in the cells of tables.
#pragma once

#include <cstdint>
#include <string>

#include "libZoCompositeFactory/ZoCVersion.h"

namespace ZoNUpdateBase {

inline std::string cellText(std::uint32_t number)
{
    return std::to_string(number);
}

// "---" for the empty version.
inline std::string cellText(const ZoCVersion& version)
{
    return version.getAsULong64() != 0 ? version.getAsString().c_str() : "---";
}

}  // namespace ZoNUpdateBase
