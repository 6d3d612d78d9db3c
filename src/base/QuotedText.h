// Names and paths of a description as findings tell them: somebody reads them, however long they are.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ZoNUpdateBase {

// `name`, and of one that is longer than 256 bytes its beginning with "..." behind it, as the tool shows names.
// Characters of UTF-8 stay whole.
inline std::string shortName(std::string_view name)
{
    constexpr std::size_t longest = 256;
    if (name.size() <= longest) {
        return std::string(name);
    }
    std::size_t length = longest;
    while (length > longest - 4 && (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80) {
        --length;
    }
    return std::string(name.substr(0, length)) + "...";
}

// The same in quotes.
inline std::string inQuotes(std::string_view name)
{
    return "\"" + shortName(name) + "\"";
}

}  // namespace ZoNUpdateBase
