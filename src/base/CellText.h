// Numbers and versions as text, and as they stand in the cells of tables.
#pragma once

#include <cstdint>
#include <string>

#include "libZoCompositeFactory/ZoCVersion.h"

namespace ZoNUpdateBase {

inline std::string cellText(std::uint32_t number)
{
    return std::to_string(number);
}

// Empty for the empty version, which stands for one that is not known.
inline std::string versionText(const ZoCVersion& version)
{
    return version.getAsULong64() != 0 ? version.getAsString().c_str() : "";
}

// "---" for the empty version.
inline std::string cellText(const ZoCVersion& version)
{
    return version.getAsULong64() != 0 ? versionText(version) : "---";
}

}  // namespace ZoNUpdateBase
