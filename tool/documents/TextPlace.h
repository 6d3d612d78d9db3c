// Places in a text, as people count them.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace TrellanTool {

// Line and column, both from 1, columns in bytes.
struct TextPlace {
    std::size_t line = 0;
    std::size_t column = 0;
};

// Where the bytes at `offsets` (in bytes, at most the text's length) stand, in their order.
std::vector<TextPlace> placesOf(std::string_view text, const std::vector<std::size_t>& offsets);

}  // namespace TrellanTool
