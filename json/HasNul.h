// NUL bytes in what is to be parsed.
#pragma once

#include <string_view>

namespace TrellanJson {

// Whether `text` holds one, as no JSON does. The parsers take it for the end of the text and pass over what stands
// behind it: whoever parses what others have written asks this first.
inline bool hasNul(std::string_view text) noexcept
{
    return text.find('\0') != std::string_view::npos;
}

}  // namespace TrellanJson
