#include "simulation/base/Clock.h"

#include <chrono>
#include <thread>

namespace TrellanSimulation {

namespace {

struct State {
    ClockKind kind = ClockKind::real;
    std::uint64_t virtualTime = 0;
};

State& state()
{
    static State clock;
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
    if (state().kind == ClockKind::virtualTime) {
        state().virtualTime += microseconds;
    } else {
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
    }
}

}  // namespace TrellanSimulation
