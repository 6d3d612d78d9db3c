#include "tool/update/RawOutput.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace TrellanTool {

namespace {

// Who shares a pipe or a terminal with the tool may have made it one that does not wait for room.
bool waitForRoom(int descriptor)
{
    pollfd room = {descriptor, POLLOUT, 0};
    return ::poll(&room, 1, -1) > 0 || errno == EINTR;
}

}  // namespace

bool writeRaw(int descriptor, std::string_view text) noexcept
{
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR && !(errno == EAGAIN && waitForRoom(descriptor))) {
            return false;
        }
    }
    return true;
}

}  // namespace TrellanTool
