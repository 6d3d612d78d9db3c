// The text of the platform's strings, NULs included.
#pragma once

#include <string>

#include "libZoComposite/ZoCString.h"

// All characters of `text`. For whatever is compared, stored or written; what is printed ends at the first NUL.
inline std::string allText(const ZoCString& text)
{
    return std::string(text.c_str(), text.length());
}
