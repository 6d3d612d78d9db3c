// Texts of table cells.
#pragma once

#include <cstdint>
#include <string>

#include "libZoComposite/ZoCString.h"
#include "libZoCompositeFactory/ZoCVersion.h"

inline std::string cellText(const ZoCString& text)
{
    return text.c_str();
}

inline std::string cellText(std::uint32_t number)
{
    return ZoCString(number).c_str();
}

// "---" for the empty version.
inline std::string cellText(const ZoCVersion& version)
{
    return version.getAsULong64() != 0 ? version.getAsString().c_str() : "---";
}
