// The platform's text as the standard library's.
#pragma once

#include <string>

#include "libZoComposite/ZoCString.h"

// All of it, also behind a NUL.
inline std::string str(const ZoCString& text)
{
    return std::string(text.c_str(), text.length());
}
