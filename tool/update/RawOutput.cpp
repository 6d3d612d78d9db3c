#include "tool/update/RawOutput.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>

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

void writeLastOutput(std::string_view text) noexcept
{
    if (!writeRaw(STDOUT_FILENO, text)) {
        for (const std::string_view words :
             {std::string_view("trellan-update: "), outputLost, std::string_view("\n")}) {
            writeRaw(STDERR_FILENO, words);
        }
    }
}

}  // namespace TrellanTool
