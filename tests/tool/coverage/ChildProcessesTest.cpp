// Work that child processes do, and what their parent is told of it.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <map>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "support/ComesTrue.h"
#include "tool/coverage/ChildProcesses.h"

using TrellanTool::ChildWork;
using TrellanTool::workInChildren;

namespace {

struct Told {
    std::map<unsigned, std::string> results;
    std::map<unsigned, std::string> reasons;
};

using Result = std::function<std::optional<std::string>(unsigned, bool)>;

Told toldOf(unsigned count, unsigned atOnce, Result result)
{
    Told told;
    workInChildren(count, atOnce,
                   {std::move(result), [&](unsigned number, const std::string& text) { told.results[number] = text; },
                    [&](unsigned number, const std::string& why) { told.reasons[number] = why; }});
    return told;
}

// For the time of a scope this process can have `count` descriptors more than it has.
class DescriptorLimit {
public:
    explicit DescriptorLimit(unsigned count)
    {
        ::getrlimit(RLIMIT_NOFILE, &before);
        int end = 0;
        for (; count > 0; ++end) {
            count -= ::fcntl(end, F_GETFD) < 0 ? 1 : 0;
        }
        const rlimit limit{static_cast<rlim_t>(end), before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
    ~DescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &before); }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;

private:
    rlimit before{};
};

// True when this process has no child, not even one that has ended.
bool hasNoChild()
{
    return ::waitpid(-1, nullptr, WNOHANG) < 0 && errno == ECHILD;
}

using Texts = std::map<unsigned, std::string>;

// What children and their parent tell one another past their pipes.
struct Meeting {
    std::atomic<pid_t> child{0};
    std::atomic<bool> mayFinish{false};
    std::atomic<bool> isOver{false};
};

class SharedMeeting {
public:
    SharedMeeting()
        : meeting(new (::mmap(nullptr, sizeof(Meeting), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
                      Meeting)
    {
    }
    ~SharedMeeting() { ::munmap(meeting, sizeof(Meeting)); }
    SharedMeeting(const SharedMeeting&) = delete;
    SharedMeeting& operator=(const SharedMeeting&) = delete;

    Meeting* operator->() const { return meeting; }

private:
    Meeting* const meeting;
};

}  // namespace

TEST(ChildProcesses, GiveAResultForEachNumber)
{
    const pid_t parent = ::getpid();
    const Told told = toldOf(5, 2, [parent](unsigned number, bool) {
        return std::optional(::getpid() == parent ? "in the parent" : std::string(number, 'x'));
    });
    EXPECT_EQ(told.results, (Texts{{0, ""}, {1, "x"}, {2, "xx"}, {3, "xxx"}, {4, "xxxx"}}));
    EXPECT_TRUE(told.reasons.empty());
    EXPECT_TRUE(hasNoChild());
}

TEST(ChildProcesses, AreNoneWhereThereIsNothingToDo)
{
    EXPECT_TRUE(toldOf(0, 2, [](unsigned, bool) { return std::optional<std::string>(""); }).results.empty());
}

TEST(ChildProcesses, GiveResultsOfAnySizeAndOfAnyBytes)
{
    const Told told = toldOf(
        3, 2, [](unsigned number, bool) { return std::optional(std::string(5'000'000, static_cast<char>(number))); });
    ASSERT_EQ(told.results.size(), 3u);
    EXPECT_EQ(told.results.at(0), std::string(5'000'000, '\0'));
    EXPECT_EQ(told.results.at(2), std::string(5'000'000, '\2'));
}

TEST(ChildProcesses, GoOnWhereOneNumberFails)
{
    const Told told = toldOf(4, 2, [](unsigned number, bool) {
        if (number == 1) {
            throw std::runtime_error("broken");
        }
        return std::optional<std::string>("good");
    });
    EXPECT_EQ(told.results, (Texts{{0, "good"}, {2, "good"}, {3, "good"}}));
    EXPECT_EQ(told.reasons, (Texts{{1, "broken"}}));
}

TEST(ChildProcesses, TellOfAChildThatIsKilledAndGoOn)
{
    const Told told = toldOf(20, 2, [](unsigned number, bool) {
        if (number == 3) {
            ::raise(SIGKILL);
        }
        if (number == 7) {
            ::_exit(9);
        }
        return std::optional<std::string>("good");
    });
    EXPECT_EQ(told.results.size(), 18u);
    EXPECT_EQ(told.reasons, (Texts{{3, "the process that read it was ended by signal 9 (Killed)"},
                                   {7, "the process that read it ended with status 9"}}));
    EXPECT_TRUE(hasNoChild());
}

TEST(ChildProcesses, EndAlsoWhereEveryChildIsKilled)
{
    const Told told = toldOf(6, 2, [](unsigned, bool) -> std::optional<std::string> {
        ::raise(SIGKILL);
        return std::nullopt;
    });
    EXPECT_EQ(told.reasons.size(), 6u);
}

// The first child fills its pipe to the last byte while nobody reads it, so that it cannot say any more which number it
// has taken next.
TEST(ChildProcesses, TellOfANumberThatAChildHadTakenButNotSaidSoWhenItWasKilled)
{
    constexpr std::size_t pipeSize = 65536;
    constexpr std::size_t header = 12;
    constexpr std::chrono::milliseconds aWhile(150);
    const SharedMeeting meeting;
    Told told;
    const auto result = [&](unsigned number, bool) {
        if (number == 0) {
            meeting->child = ::getpid();
            EXPECT_TRUE(comesTrue([&] { return meeting->mayFinish.load(); }));
            return std::optional(std::string(pipeSize - header, 'x'));
        }
        if (number == 1) {
            EXPECT_TRUE(comesTrue([&] { return meeting->child.load() != 0; }));
            std::this_thread::sleep_for(aWhile);  // the parent hears of number 0
        }
        if (number == 2) {
            EXPECT_TRUE(comesTrue([&] { return meeting->isOver.load(); }));
        }
        return std::optional<std::string>("short");
    };
    const auto done = [&](unsigned number, const std::string& text) {
        told.results[number] = text.substr(0, 5);
        if (number == 1) {
            std::this_thread::sleep_for(aWhile);  // the other child takes number 2
            meeting->mayFinish = true;
            std::this_thread::sleep_for(aWhile);  // this one takes number 3
            ::kill(meeting->child, SIGKILL);
            std::this_thread::sleep_for(aWhile);  // and says nothing any more
            meeting->isOver = true;
        }
    };
    workInChildren(4, 2, {result, done, [&](unsigned number, const std::string& why) { told.reasons[number] = why; }});
    EXPECT_EQ(told.results, (Texts{{0, "xxxxx"}, {1, "short"}, {2, "short"}}));
    EXPECT_EQ(told.reasons, (Texts{{3, "the process that read it was ended by signal 9 (Killed)"}}));
}

TEST(ChildProcesses, TellOfANumberWhoseOwnChildIsKilled)
{
    const Told told = toldOf(3, 1, [&](unsigned number, bool isFirst) -> std::optional<std::string> {
        if (number == 1 && !isFirst) {
            return std::nullopt;
        }
        if (number == 1) {
            ::raise(SIGKILL);
        }
        return "good";
    });
    EXPECT_EQ(told.results, (Texts{{0, "good"}, {2, "good"}}));
    EXPECT_EQ(told.reasons, (Texts{{1, "the process that read it was ended by signal 9 (Killed)"}}));
}

TEST(ChildProcesses, TakeTheirOwnSignalsAsTheSystemDoes)
{
    std::signal(SIGTERM, [](int) {});
    const Told told = toldOf(1, 1, [](unsigned, bool) {
        ::raise(SIGTERM);
        return std::optional<std::string>("alive");
    });
    std::signal(SIGTERM, SIG_DFL);
    EXPECT_EQ(told.reasons, (Texts{{0, "the process that read it was ended by signal 15 (Terminated)"}}));
}

TEST(ChildProcesses, GoOnIgnoringSignalsThatAreIgnored)
{
    std::signal(SIGHUP, SIG_IGN);
    const Told told = toldOf(1, 1, [](unsigned, bool) {
        ::raise(SIGHUP);
        return std::optional<std::string>("alive");
    });
    std::signal(SIGHUP, SIG_DFL);
    EXPECT_EQ(told.results, (Texts{{0, "alive"}}));
}

TEST(ChildProcesses, DoANumberInAChildOfItsOwnWhereItNeedsOne)
{
    const Told told = toldOf(6, 1, [](unsigned number, bool isFirst) -> std::optional<std::string> {
        if (number % 2 == 1 && !isFirst) {
            return std::nullopt;
        }
        return isFirst ? "first" : "later";
    });
    EXPECT_EQ(told.results,
              (Texts{{0, "first"}, {1, "first"}, {2, "later"}, {3, "first"}, {4, "later"}, {5, "first"}}));
}

TEST(ChildProcesses, FailWhereOneOfItsOwnIsAskedForAgain)
{
    const Told told = toldOf(2, 2, [](unsigned, bool) { return std::optional<std::string>(); });
    EXPECT_TRUE(told.results.empty());
    EXPECT_EQ(told.reasons, (Texts{{0, "there is no result"}, {1, "there is no result"}}));
}

TEST(ChildProcesses, AreGoneAfterAFailureOfTheirParent)
{
    const ChildWork work = {[](unsigned, bool) { return std::optional<std::string>("x"); },
                            [](unsigned, const std::string&) { throw std::runtime_error("full"); },
                            [](unsigned, const std::string&) {}};
    EXPECT_THROW(workInChildren(50, 2, work), std::runtime_error);
    EXPECT_TRUE(hasNoChild());
}

TEST(ChildProcesses, AreAsManyAsThereArePipesFor)
{
    const DescriptorLimit onePipe(2);
    const SharedMeeting meeting;
    const Told told = toldOf(3, 3, [&](unsigned number, bool) -> std::optional<std::string> {
        pid_t none = 0;
        if (!meeting->child.compare_exchange_strong(none, ::getpid()) && none != ::getpid()) {
            return "in a second child";
        }
        return std::string(number, 'x');
    });
    EXPECT_EQ(told.results, (Texts{{0, ""}, {1, "x"}, {2, "xx"}}));
    EXPECT_TRUE(hasNoChild());
}

TEST(ChildProcesses, FailWhereThereIsNoPipeForAnyOfThem)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "a sanitizer opens files of its own to look at an exception";
#endif
    const DescriptorLimit noPipe(1);
    try {
        toldOf(3, 3, [](unsigned, bool) { return std::optional<std::string>("x"); });
        FAIL() << "no failure";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::too_many_files_open);
        EXPECT_STREQ(error.what(), "no further process can be started: Too many open files");
    }
}

TEST(ChildProcesses, AreListenedToWhileSignalsCome)
{
    static std::atomic<int> signals = 0;
    std::signal(SIGUSR1, [](int) { ++signals; });
    const pid_t parent = ::getpid();
    const Told told = toldOf(4, 2, [parent](unsigned number, bool) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));  // their parent waits by now
        ::kill(parent, SIGUSR1);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        return std::optional(std::string(number, 'x'));
    });
    std::signal(SIGUSR1, SIG_DFL);
    EXPECT_EQ(told.results, (Texts{{0, ""}, {1, "x"}, {2, "xx"}, {3, "xxx"}}));
    EXPECT_GE(signals, 1);
}

TEST(ChildProcesses, TellOfAChildThatCanNoLongerTellAnything)
{
    const Told told = toldOf(3, 1, [](unsigned number, bool) {
        if (number == 1) {
            ::close_range(3, ~0U, 0);  // its pipe is among them
        }
        return std::optional<std::string>("good");
    });
    EXPECT_EQ(told.results, (Texts{{0, "good"}, {2, "good"}}));
    EXPECT_EQ(told.reasons, (Texts{{1, "the process that read it ended with status 1"}}));
}
