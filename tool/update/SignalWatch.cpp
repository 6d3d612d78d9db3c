// The signals are blocked and ignored, and a thread takes them as they come.
#include "tool/update/SignalWatch.h"

#include <algorithm>
#include <latch>
#include <utility>

#include "tool/update/PromptThread.h"
#include "tool/update/StopSignals.h"

namespace TrellanTool {

namespace {

using Clock = std::chrono::steady_clock;

// Ends the waiting thread: sent to that thread alone.
int endOfWatch()
{
    return SIGRTMIN;
}

std::optional<Clock::time_point> deadlineAfter(std::optional<std::chrono::duration<double>> patience)
{
    constexpr std::chrono::hours longest(24 * 365);
    if (!patience || *patience > longest) {
        return std::nullopt;
    }
    return Clock::now() + std::chrono::ceil<Clock::duration>(*patience);
}

timespec timeUntil(Clock::time_point deadline)
{
    const auto left = std::max(deadline - Clock::now(), Clock::duration(0));
    const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
    return {static_cast<std::time_t>(seconds.count()),
            static_cast<long>((left - seconds) / std::chrono::nanoseconds(1))};
}

}  // namespace

SignalWatch::SignalWatch(const std::vector<int>& signals, Listener listener,
                         std::optional<std::chrono::duration<double>> patience)
    : listener(std::move(listener)),
      deadline(deadlineAfter(patience)),
      state(deadline ? Patience::LASTS : Patience::NOT_NEEDED)
{
    ::sigemptyset(&waited);
    for (const int signal : signals) {
        ::sigaddset(&waited, signal);
    }
    sigset_t blocked = waited;
    ::sigaddset(&blocked, endOfWatch());
    ::pthread_sigmask(SIG_BLOCK, &blocked, &maskBefore);
    for (const int signal : signals) {
        takePending();  // ignoring them would throw them away
        ignoreSignals({signal});
    }
    ::sigaddset(&waited, endOfWatch());
    // Until the thread has taken a signal, system() may throw it away.
    std::latch isReady(1);
    thread = std::thread([this, &isReady] {
        runPromptly();
        isReady.count_down();
        wait();
    });
    isReady.wait();
}

void SignalWatch::takePending()
{
    constexpr timespec atOnce = {0, 0};
    for (int signal = 0; (signal = ::sigtimedwait(&waited, nullptr, &atOnce)) > 0;) {
        first = first == 0 ? signal : first.load();
    }
}

SignalWatch::~SignalWatch()
{
    isStopping = true;
    ::pthread_kill(thread.native_handle(), endOfWatch());
    thread.join();
    ::pthread_sigmask(SIG_SETMASK, &maskBefore, nullptr);
}

bool SignalWatch::endPatience()
{
    Patience expected = Patience::LASTS;
    return state.compare_exchange_strong(expected, Patience::NOT_NEEDED) || expected == Patience::NOT_NEEDED;
}

void SignalWatch::wait()
{
    while (!isStopping) {
        const int signal = nextSignal();
        if (signal > 0 && signal != endOfWatch()) {
            take(signal);
        }
        Patience expected = Patience::LASTS;
        if (deadline && Clock::now() >= *deadline && state.compare_exchange_strong(expected, Patience::ENDED)) {
            listener.patienceEnded();
        }
    }
}

// Negative when none has come until the deadline.
int SignalWatch::nextSignal()
{
    if (state != Patience::LASTS) {
        return ::sigwaitinfo(&waited, nullptr);
    }
    const timespec limit = timeUntil(*deadline);
    return ::sigtimedwait(&waited, nullptr, &limit);
}

void SignalWatch::take(int signal)
{
    int none = 0;
    const bool again = !first.compare_exchange_strong(none, signal);
    listener.signalCame(signal, again);
}

}  // namespace TrellanTool
