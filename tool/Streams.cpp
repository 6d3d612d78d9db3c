#include "tool/Streams.h"

#include <algorithm>
#include <ostream>

namespace TrellanTool {

void say(std::ostream& err, std::string_view text)
{
    do {
        const std::size_t end = std::min(text.find('\n'), text.size());
        err << "trellan-update: " << text.substr(0, end) << '\n';
        text.remove_prefix(std::min(end + 1, text.size()));
    } while (!text.empty());
    err.flush();
}

}  // namespace TrellanTool
