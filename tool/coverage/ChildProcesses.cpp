// The children take their numbers from a counter that they share, and write what they have found into pipes.
#include "tool/coverage/ChildProcesses.h"

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <exception>
#include <new>
#include <system_error>
#include <vector>

#include "tool/coverage/ChildMessage.h"
#include "tool/update/StopSignals.h"

namespace TrellanTool {

namespace {

// The numbers that no child has taken yet; all processes see the same.
class SharedNumbers {
public:
    explicit SharedNumbers(unsigned count) : count(count)
    {
        void* const memory = ::mmap(nullptr, sizeof *next, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) {
            throw std::system_error(errno, std::generic_category(), "no memory can be shared");
        }
        next = new (memory) std::atomic<unsigned>(0);
    }
    ~SharedNumbers() { ::munmap(next, sizeof *next); }
    SharedNumbers(const SharedNumbers&) = delete;
    SharedNumbers& operator=(const SharedNumbers&) = delete;

    bool isEmpty() const { return *next >= count; }

    std::optional<unsigned> take()
    {
        const unsigned number = isEmpty() ? count : (*next)++;
        return number < count ? std::optional(number) : std::nullopt;
    }

private:
    static_assert(std::atomic<unsigned>::is_always_lock_free);
    const unsigned count;
    std::atomic<unsigned>* next = nullptr;
};

// No signal comes to this thread for the time of a scope.
class BlockedSignals {
public:
    BlockedSignals()
    {
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &before);
    }
    ~BlockedSignals() { restore(); }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

    void restore() const { ::pthread_sigmask(SIG_SETMASK, &before, nullptr); }

private:
    sigset_t before{};
};

bool writeAll(int descriptor, const std::string& text)
{
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t written = ::write(descriptor, text.data() + done, text.size() - done);
        if (written >= 0) {
            done += static_cast<std::size_t>(written);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

ChildMessage outcomeOf(const ChildWork& work, unsigned number, bool isFirst)
{
    try {
        std::optional<std::string> result = work.result(number, isFirst);
        if (!result && isFirst) {
            return {ChildMessage::FAILED, number, "there is no result"};
        }
        return result ? ChildMessage{ChildMessage::DONE, number, *std::move(result)}
                      : ChildMessage{ChildMessage::NEEDS_FIRST, number, ""};
    } catch (const std::exception& error) {
        return {ChildMessage::FAILED, number, error.what()};
    }
}

// What a child does, up to its exit status: the number that it was made for, or all that are left.
int carryOut(const ChildWork& work, std::optional<unsigned> only, SharedNumbers& numbers, int pipe)
{
    bool isFirst = true;
    for (std::optional<unsigned> number = only ? only : numbers.take(); number;
         number = only ? std::nullopt : numbers.take()) {
        if (!writeAll(pipe, bytesOf({ChildMessage::BEGUN, *number, ""})) ||
            !writeAll(pipe, bytesOf(outcomeOf(work, *number, isFirst)))) {
            return 1;
        }
        isFirst = false;
    }
    return 0;
}

std::string endOf(int status)
{
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        return "the process that read it was ended by signal " + std::to_string(signal) + " (" + ::strsignal(signal) +
               ")";
    }
    return "the process that read it ended with status " + std::to_string(WEXITSTATUS(status));
}

class Children {
public:
    Children(unsigned count, const ChildWork& work) : work(work), numbers(count), isTold(count) {}

    ~Children()
    {
        for (const Child& child : children) {
            ::kill(child.process, SIGKILL);
            end(child);
        }
    }
    Children(const Children&) = delete;
    Children& operator=(const Children&) = delete;

    std::size_t count() const { return children.size(); }

    // Whether there is something for one more child to do.
    bool haveWork() const { return !waiting.empty() || !numbers.isEmpty(); }

    // False when no further child can be started now.
    bool start()
    {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0) {
            return false;
        }
        const std::optional<unsigned> only = waiting.empty() ? std::nullopt : std::optional(waiting.back());
        Child child = {0, ends[0], {}, only};
        children.reserve(children.size() + 1);
        const pid_t parent = ::getpid();
        const BlockedSignals blocked;
        child.process = ::fork();
        if (child.process == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            for (const int signal : stopSignals()) {
                std::signal(signal, SIG_DFL);
            }
            blocked.restore();
            ::close(ends[0]);
            ::_exit(::getppid() == parent ? carryOut(work, only, numbers, ends[1]) : 1);
        }
        const int error = errno;
        ::close(ends[1]);
        if (child.process < 0) {
            ::close(ends[0]);
            errno = error;
            return false;
        }
        children.push_back(std::move(child));
        if (only) {
            waiting.pop_back();
        }
        return true;
    }

    // Waits until something comes from a child, and tells it.
    void listen()
    {
        std::vector<pollfd> pipes;
        for (const Child& child : children) {
            pipes.push_back({child.pipe, POLLIN, 0});
        }
        if (::poll(pipes.data(), pipes.size(), -1) < 0) {
            return;  // a signal has come
        }
        for (std::size_t i = pipes.size(); i-- > 0;) {
            if (pipes[i].revents != 0 && !receive(children[i])) {
                const Child ended = std::move(children[i]);
                children.erase(children.begin() + static_cast<std::ptrdiff_t>(i));
                conclude(ended, end(ended));
            }
        }
    }

    // Once there is no child any more: a number that one had taken, and was killed before it could say so, is left.
    void concludeUntold()
    {
        for (unsigned number = 0; number < isTold.size(); ++number) {
            if (!isTold[number]) {
                tellUndone(number, lastEnd);
            }
        }
    }

private:
    struct Child {
        pid_t process;
        int pipe;
        ChildMessages messages;
        std::optional<unsigned> begun;  // the number that it is at, or was made for
    };

    // False at the end of what it writes.
    bool receive(Child& child)
    {
        const ssize_t length = ::read(child.pipe, piece.data(), piece.size());
        if (length <= 0) {
            return length < 0 && errno == EINTR;
        }
        child.messages.add(piece.data(), static_cast<std::size_t>(length));
        while (const auto message = child.messages.next()) {
            child.begun = message->kind == ChildMessage::BEGUN ? std::optional(message->number) : std::nullopt;
            tell(*message);
        }
        return true;
    }

    void tell(const ChildMessage& message)
    {
        switch (message.kind) {
            case ChildMessage::BEGUN:
                break;
            case ChildMessage::DONE:
                isTold.at(message.number) = true;
                work.done(message.number, message.text);
                break;
            case ChildMessage::FAILED:
                tellUndone(message.number, message.text);
                break;
            case ChildMessage::NEEDS_FIRST:
                waiting.push_back(message.number);
                break;
        }
    }

    void tellUndone(unsigned number, const std::string& why)
    {
        isTold.at(number) = true;
        work.hasNotBeenDone(number, why);
    }

    // Its wait status, once it has ended.
    static int end(const Child& child)
    {
        ::close(child.pipe);
        int status = 0;
        while (::waitpid(child.process, &status, 0) < 0 && errno == EINTR) {
        }
        return status;
    }

    // One that could not even begin stands for a number too: otherwise such children might be started for ever.
    void conclude(const Child& child, int status)
    {
        if (WIFEXITED(status) && WEXITSTATUS(status) == 0) {
            return;
        }
        lastEnd = endOf(status);
        if (const std::optional<unsigned> number = child.begun ? child.begun : numbers.take()) {
            tellUndone(*number, lastEnd);
        }
    }

    const ChildWork& work;
    SharedNumbers numbers;
    std::vector<bool> isTold;       // whether it is known of a number what has become of it
    std::string lastEnd;            // of the child that was the last to end early
    std::vector<unsigned> waiting;  // numbers that need a child that has done nothing yet
    std::vector<Child> children;
    std::vector<char> piece = std::vector<char>(1 << 16);
};

}  // namespace

unsigned usableProcessors()
{
    cpu_set_t processors;
    CPU_ZERO(&processors);
    const int known = ::sched_getaffinity(0, sizeof processors, &processors) == 0 ? CPU_COUNT(&processors) : 0;
    const long online = known > 0 ? known : ::sysconf(_SC_NPROCESSORS_ONLN);
    return static_cast<unsigned>(std::max(online, 1L));
}

void workInChildren(unsigned count, unsigned atOnce, const ChildWork& work)
{
    Children children(count, work);
    while (children.haveWork() || children.count() > 0) {
        if (children.haveWork() && children.count() < atOnce) {
            if (children.start()) {
                continue;
            }
            if (children.count() == 0) {
                throw std::system_error(errno, std::generic_category(), "no further process can be started");
            }
        }
        children.listen();
    }
    children.concludeUntold();
}

}  // namespace TrellanTool
