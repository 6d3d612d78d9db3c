// Wrapping of text for a console.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace ZoNUpdateBase {

// Cuts `text` into pieces of at most `width` characters (at least 1), together the whole text. A piece ends with the
// last blank that fits; where that blank would leave fewer than five characters before it, or there is none, the text
// is cut hard.
std::vector<std::string_view> wrapText(std::string_view text, std::size_t width);

}  // namespace ZoNUpdateBase
