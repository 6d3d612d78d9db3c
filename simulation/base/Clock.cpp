// The two kinds of clock: the machine's, and one that moves by sleeping alone.
#include "simulation/base/Clock.h"

#include <chrono>
#include <thread>
#include <utility>
#include <vector>

namespace TrellanSimulation {

namespace {

struct State {
    ClockKind kind = ClockKind::real;
    std::uint64_t virtualTime = 0;
    std::vector<const WorkBeforeSleep*> works;
};

// Never destroyed: work may end while static objects are being destroyed.
State& state()
{
    static State& clock = *new State;
    return clock;
}

}  // namespace

void useClock(ClockKind kind)
{
    state().kind = kind;
}

ClockKind clockKind()
{
    return state().kind;
}

std::uint64_t now()
{
    if (state().kind == ClockKind::virtualTime) {
        return state().virtualTime;
    }
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(sinceStart).count());
}

void sleep(std::uint64_t microseconds)
{
    for (const WorkBeforeSleep* work : state().works) {
        (*work)();
    }
    if (state().kind == ClockKind::virtualTime) {
        state().virtualTime += microseconds;
    } else {
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
    }
}

WorkBeforeSleep::WorkBeforeSleep(std::function<void()> work) : work(std::move(work))
{
    state().works.push_back(this);
}

WorkBeforeSleep::~WorkBeforeSleep()
{
    std::erase(state().works, this);
}

}  // namespace TrellanSimulation
