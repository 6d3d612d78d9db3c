// Places in a text, as people count them.
#pragma once

#include <cstddef>
#include <string_view>

namespace TrellanTool {

// Line and column, both from 1, columns in bytes.
struct TextPlace {
    std::size_t line = 0;
    std::size_t column = 0;
};

// Tells where bytes of a text stand.
class TextPlaces {
public:
    // `text` must outlive this.
    explicit TextPlaces(std::string_view text) : text(text), lineEnd(text.find('\n')) {}

    // The place of the byte at `offset`, at most the text's length. In ascending order all of them cost one walk over
    // the text.
    TextPlace at(std::size_t offset);

private:
    std::string_view text;
    std::size_t line = 1;
    std::size_t lineBegin = 0;
    std::size_t lineEnd;  // of the present line
};

}  // namespace TrellanTool
