// What the system tells about a file or folder.
#pragma once

#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

// Counts what happens to a file, or in a folder, from now on: the events of `mask`, as inotify names them.
class FileEvents {
public:
    FileEvents(const std::filesystem::path& path, unsigned mask)
        : mask(mask), queue(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        if (::inotify_add_watch(queue, path.c_str(), mask) < 0) {
            throw std::system_error(errno, std::generic_category(), "inotify");
        }
    }
    ~FileEvents() { ::close(queue); }
    FileEvents(const FileEvents&) = delete;
    FileEvents& operator=(const FileEvents&) = delete;

    // How many there were since the last call; one and the same several times in a row may count once.
    int count() const
    {
        int events = 0;
        alignas(inotify_event) char buffer[1 << 14];
        for (ssize_t length = 0; (length = ::read(queue, buffer, sizeof buffer)) > 0;) {
            for (ssize_t at = 0; at < length;) {
                const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
                events += (event->mask & mask) == 0 ? 0 : 1;
                at += static_cast<ssize_t>(sizeof *event + event->len);
            }
        }
        return events;
    }

private:
    unsigned mask;
    int queue;
};
