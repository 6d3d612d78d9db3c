// Each line goes out by one write, a torn one before it is ended first, and a fault is kept until it is asked for.
#include "tool/update/EventFile.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "tool/OutputFile.h"

namespace TrellanTool {

namespace {

// True when the last line of the file has no end.
bool endsInMiddleOfLine(int file, const std::string& path)
{
    struct stat status = {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size == 0) {
        return false;
    }
    const Descriptor reader(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    char last = '\0';  // what must not be read ends as it likes: a blank line does no harm
    return ::pread(reader.get(), &last, 1, status.st_size - 1) != 1 || last != '\n';
}

// True when it has no name any more: nobody will read it.
bool isRemoved(int file)
{
    struct stat status = {};
    return ::fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 0;
}

}  // namespace

EventFile::EventFile(const std::string& path)
    : path(path), file(::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666))
{
    if (file.isOpen()) {
        endsInLine = endsInMiddleOfLine(file.get(), path);
    } else {
        lose(errno);
    }
}

void EventFile::append(const std::string& line, bool toMedium)
{
    if (!file.isOpen()) {
        return;
    }
    const bool written = writeAll((endsInLine ? "\n" : "") + line + '\n');
    // A pipe or a device has no medium.
    const bool kept = written && (!toMedium || ::fsync(file.get()) == 0 || errno == EINVAL || errno == EROFS);
    if (!kept) {
        lose(errno);
    } else if (isRemoved(file.get())) {
        lose(ENOENT);
    }
}

void EventFile::lose(int error) noexcept
{
    fault = fault == 0 ? error : fault;
}

std::string EventFile::takeFault()
{
    if (fault == 0 || std::exchange(faultTaken, true)) {
        return "";
    }
    return "events cannot be written to " + path + ": " + writingFault(fault) + "; the update goes on without them";
}

// A pipe takes a long line in pieces, and a full medium the beginning alone.
bool EventFile::writeAll(const std::string& text)
{
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t count = ::write(file.get(), text.data() + written, text.size() - written);
        if (count >= 0) {
            written += static_cast<std::size_t>(count);
        } else if (errno != EINTR && !(errno == EAGAIN && waitForReader())) {
            endsInLine = written == 0 ? endsInLine : text[written - 1] != '\n';
            return false;
        }
    }
    endsInLine = false;
    return true;
}

// False, with errno as it was, when the reader takes nothing for too long.
bool EventFile::waitForReader()
{
    using Clock = std::chrono::steady_clock;
    const int reason = errno;
    const auto begin = Clock::now();
    pollfd pipe = {file.get(), POLLOUT, 0};
    const int ready = ::poll(&pipe, 1, static_cast<int>(patience.count()));
    const auto waited = std::chrono::ceil<std::chrono::milliseconds>(Clock::now() - begin);
    patience = std::max(patience - waited, std::chrono::milliseconds(0));
    errno = reason;
    return ready > 0;
}

}  // namespace TrellanTool
