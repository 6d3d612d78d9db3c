#include "tool/documents/TextPlace.h"

namespace TrellanTool {

TextPlace TextPlaces::at(std::size_t offset)
{
    if (offset < lineBegin) {
        *this = TextPlaces(text);
    }
    while (lineEnd < offset) {
        ++line;
        lineBegin = lineEnd + 1;
        lineEnd = text.find('\n', lineBegin);
    }
    return {line, offset - lineBegin + 1};
}

}  // namespace TrellanTool
