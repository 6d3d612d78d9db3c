// Signals that are waited for while an update runs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdlib>
#include <mutex>

#include "tool/update/SignalWatch.h"
#include "tool/update/StopSignals.h"

using namespace std::chrono_literals;
using testing::ElementsAre;
using TrellanTool::SignalWatch;

namespace {

class SignalWatches : public testing::Test {
protected:
    SignalWatches()
    {
        for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
            std::signal(signal, SIG_DFL);
        }
    }
    ~SignalWatches() override
    {
        for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
            std::signal(signal, SIG_DFL);
        }
    }

    SignalWatch::Listener listener()
    {
        return {[this](int signal, bool again) {
                    note(std::string(again ? "again " : "") + TrellanTool::signalName(signal));
                },
                [this] { note("patience has ended"); }};
    }

    // Waits until the listener has heard of `count` things, ten seconds at most.
    std::vector<std::string> heard(std::size_t count)
    {
        std::unique_lock lock(mutex);
        changed.wait_for(lock, 10s, [&] { return events.size() >= count; });
        return events;
    }

    static void send(int signal) { ::kill(::getpid(), signal); }

private:
    void note(const std::string& event)
    {
        const std::lock_guard lock(mutex);
        events.push_back(event);
        changed.notify_all();
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> events;
};

}  // namespace

TEST_F(SignalWatches, TellsOfEachSignalAndKeepsTheFirst)
{
    SignalWatch watch(TrellanTool::stopSignals(), listener(), std::nullopt);
    EXPECT_EQ(watch.firstSignal(), 0);
    send(SIGTERM);
    heard(1);
    send(SIGINT);
    heard(2);
    send(SIGTERM);
    EXPECT_THAT(heard(3), ElementsAre("SIGTERM", "again SIGINT", "again SIGTERM"));
    EXPECT_EQ(watch.firstSignal(), SIGTERM);
}

// The shell and what it starts inherit that they are ignored; the shell would take a mask away.
TEST_F(SignalWatches, KeepsSignalsFromProgramsThatAreStartedMeanwhile)
{
    SignalWatch watch(TrellanTool::stopSignals(), listener(), std::nullopt);
    const int status = std::system(
        "trap 'exit 1' HUP INT TERM; kill -HUP $$; kill -INT $$; kill -TERM $$; "
        "sh -c 'kill -HUP $$; kill -INT $$; kill -TERM $$; exit 7'");
    EXPECT_EQ(WEXITSTATUS(status), 7);
}

TEST_F(SignalWatches, HearsOfASignalWhileSuchAProgramRuns)
{
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
        SCOPED_TRACE(signal);
        const std::string program =
            "sleep 0.05; kill -" + std::to_string(signal) + " " + std::to_string(::getpid()) + "; sleep 0.05";
        for (const int other : {SIGHUP, SIGINT, SIGTERM}) {
            std::signal(other, SIG_DFL);
        }
        SignalWatch watch(TrellanTool::stopSignals(), listener(), std::nullopt);
        EXPECT_EQ(std::system(program.c_str()), 0);
        EXPECT_EQ(watch.firstSignal(), signal);
    }
}

TEST_F(SignalWatches, KnowsASignalThatCameWhileItWasBlocked)
{
    sigset_t blocked;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGINT);
    ::pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
    send(SIGINT);
    EXPECT_EQ(SignalWatch(TrellanTool::stopSignals(), listener(), std::nullopt).firstSignal(), SIGINT);
    ::pthread_sigmask(SIG_UNBLOCK, &blocked, nullptr);
}

TEST_F(SignalWatches, KnowsTheFirstOfSignalsThatCameWhileTheyWereBlocked)
{
    sigset_t blocked;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGINT);
    ::sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
    send(SIGTERM);
    send(SIGINT);
    // The system gives the one with the lowest number first.
    EXPECT_EQ(SignalWatch(TrellanTool::stopSignals(), listener(), std::nullopt).firstSignal(), SIGINT);
    ::pthread_sigmask(SIG_UNBLOCK, &blocked, nullptr);
}

TEST(StopSignals, HaveTheirNamesAndOthersNone)
{
    EXPECT_STREQ(TrellanTool::signalName(SIGHUP), "SIGHUP");
    EXPECT_STREQ(TrellanTool::signalName(SIGTERM), "SIGTERM");
    EXPECT_STREQ(TrellanTool::signalName(SIGUSR1), "a signal");
}

TEST_F(SignalWatches, LeavesSignalsAloneThatWereIgnored)
{
    std::signal(SIGHUP, SIG_IGN);
    SignalWatch watch(TrellanTool::stopSignals(), listener(), std::nullopt);
    send(SIGHUP);
    send(SIGINT);
    EXPECT_THAT(heard(1), ElementsAre("SIGINT"));
}

TEST_F(SignalWatches, LeavesTheSignalsIgnoredAtItsEnd)
{
    {
        const SignalWatch watch(TrellanTool::stopSignals(), listener(), std::nullopt);
    }
    send(SIGHUP);
    send(SIGINT);
    send(SIGTERM);
    EXPECT_THAT(heard(0), ElementsAre());
    EXPECT_THAT(TrellanTool::stopSignals(), ElementsAre());
}

TEST_F(SignalWatches, TellsOnceThatPatienceHasEnded)
{
    SignalWatch watch(TrellanTool::stopSignals(), listener(), 20ms);
    EXPECT_THAT(heard(1), ElementsAre("patience has ended"));
    EXPECT_FALSE(watch.endPatience());
    send(SIGINT);
    EXPECT_THAT(heard(2), ElementsAre("patience has ended", "SIGINT"));
}

TEST_F(SignalWatches, HasPatienceAlsoWithoutSignals)
{
    const SignalWatch watch({}, listener(), 20ms);
    EXPECT_THAT(heard(1), ElementsAre("patience has ended"));
}

TEST_F(SignalWatches, SaysNothingOfPatienceThatIsNoLongerNeeded)
{
    SignalWatch watch(TrellanTool::stopSignals(), listener(), 50ms);
    EXPECT_TRUE(watch.endPatience());
    EXPECT_TRUE(watch.endPatience());
    std::this_thread::sleep_for(100ms);
    send(SIGINT);
    EXPECT_THAT(heard(1), ElementsAre("SIGINT"));
}

TEST_F(SignalWatches, WaitsForALongTimeWithoutEnd)
{
    SignalWatch watch(TrellanTool::stopSignals(), listener(), std::chrono::duration<double>(1e300));
    send(SIGINT);
    EXPECT_THAT(heard(1), ElementsAre("SIGINT"));
}
