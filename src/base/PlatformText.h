// Texts of the platform's strings and of the standard library's: a conversion for each meaning.
#pragma once

#include <string>

#include "libZoComposite/ZoCString.h"

namespace ZoNUpdateBase {

// All characters of `text`, NULs included: for whatever is compared, stored or written.
inline std::string allText(const ZoCString& text)
{
    return std::string(text.c_str(), text.length());
}

// The characters of `text` before its first NUL: for whatever is shown.
inline std::string textBeforeNul(const ZoCString& text)
{
    return text.c_str();
}

// All characters of `text`, NULs included.
inline ZoCString platformText(const std::string& text)
{
    return ZoCString(text.data(), text.size());
}

}  // namespace ZoNUpdateBase
