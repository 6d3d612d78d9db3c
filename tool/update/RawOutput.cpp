#include "tool/update/RawOutput.h"

#include <unistd.h>

#include <cerrno>

namespace TrellanTool {

void writeRaw(int descriptor, const std::string& text) noexcept
{
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t count = ::write(descriptor, text.data() + written, text.size() - written);
        if (count < 0 && errno != EINTR) {
            return;  // a terminal or a reader that is gone
        }
        written += count < 0 ? 0 : static_cast<std::size_t>(count);
    }
}

}  // namespace TrellanTool
