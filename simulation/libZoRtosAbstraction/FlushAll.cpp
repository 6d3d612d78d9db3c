// A process of its own does the flushing, and a pipe tells when it is done.
#include "simulation/libZoRtosAbstraction/FlushAll.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <limits>

namespace {

// A pipe whose reading end reports when the last holder of the writing end is gone.
class Pipe {
public:
    Pipe() { open = pipe2(ends, O_CLOEXEC) == 0; }
    ~Pipe()
    {
        if (open) {
            close(ends[0]);
        }
        closeWriter();
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    bool isOpen() const { return open; }
    int reader() const { return ends[0]; }
    int writer() const { return ends[1]; }

    void closeWriter()
    {
        if (open && ends[1] >= 0) {
            close(ends[1]);
        }
        ends[1] = -1;
    }

private:
    int ends[2] = {-1, -1};
    bool open = false;
};

// Gives up everything of the parent's but the pipe, its locks included, so that none of it outlives the parent.
void keepOnly(int descriptor)
{
    const int kept = dup2(descriptor, 0);
    close_range(static_cast<unsigned>(kept) + 1, std::numeric_limits<unsigned>::max(), 0);
}

// Only async-signal-safe calls are made between fork and _exit, as other threads may have been running.
[[noreturn]] void flushInGrandchild(int descriptor)
{
    keepOnly(descriptor);  // before the parent, which waits for this child alone, goes on
    if (fork() == 0) {
        sync();
        const char done = 1;
        _exit(write(0, &done, 1) == 1 ? 0 : 1);
    }
    _exit(0);
}

bool waitFor(int reader, unsigned timeout)
{
    using Clock = std::chrono::steady_clock;
    using std::chrono::milliseconds;
    const auto deadline = Clock::now() + milliseconds(timeout);
    const milliseconds longest(std::numeric_limits<int>::max());
    pollfd flushed{reader, POLLIN, 0};
    int ready = 0;
    do {  // signals that keep coming must not put the end off
        const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
        ready = poll(&flushed, 1, static_cast<int>(std::clamp(left, milliseconds(0), longest).count()));
    } while (ready < 0 && errno == EINTR);
    char done = 0;
    return ready == 1 && read(reader, &done, 1) == 1;
}

}  // namespace

// sync() can neither be given a time limit nor be interrupted, so a process of its own waits for it. It is a
// grandchild: the child ends at once and is collected here, and whoever collects orphans takes care of the rest.
bool flushAllFileSystems(unsigned timeout)
{
    Pipe pipe;
    if (!pipe.isOpen()) {
        return false;
    }
    const pid_t child = fork();
    if (child < 0) {
        return false;
    }
    if (child == 0) {
        flushInGrandchild(pipe.writer());
    }
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    pipe.closeWriter();
    return waitFor(pipe.reader(), timeout);
}
