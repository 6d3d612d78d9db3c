// The two streams that a command writes to, and what the tool itself says on the second one.
#pragma once

#include <iosfwd>
#include <string_view>

namespace TrellanTool {

struct Streams {
    std::ostream& out;  // the command's result; for most commands the library's text and nothing else
    std::ostream& err;  // what the tool itself has to say
};

// Says `text`, one line or several, in the tool's own name: each line begins with "trellan-update: ". At once: nothing
// of it stays in a buffer.
void say(std::ostream& err, std::string_view text);

}  // namespace TrellanTool
