// One walk over the text for all of them: where each line begins need not be kept.
#include "tool/documents/TextPlace.h"

#include <algorithm>
#include <numeric>

namespace TrellanTool {

std::vector<TextPlace> placesOf(std::string_view text, const std::vector<std::size_t>& offsets)
{
    std::vector<std::size_t> order(offsets.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return offsets[a] < offsets[b]; });
    std::vector<TextPlace> places(offsets.size());
    std::size_t line = 1;
    std::size_t lineBegin = 0;
    std::size_t lineEnd = text.find('\n');
    for (const std::size_t next : order) {
        while (lineEnd < offsets[next]) {
            ++line;
            lineBegin = lineEnd + 1;
            lineEnd = text.find('\n', lineBegin);
        }
        places[next] = {line, offsets[next] - lineBegin + 1};
    }
    return places;
}

}  // namespace TrellanTool
