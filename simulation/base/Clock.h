// The simulated target's clock, one for the process.
//
// A real clock is the machine's own. A virtual clock starts at 0 with the process and moves only by sleep(), which then
// returns at once: simulated waiting costs no time and every run is the same.
#pragma once

#include <cstdint>
#include <functional>

namespace TrellanSimulation {

enum class ClockKind { real, virtualTime };

// Chooses the clock; it is real until then. The virtual time goes on where it was.
void useClock(ClockKind kind);
ClockKind clockKind();

// Microseconds since some fixed moment; for a virtual clock the time slept on it.
std::uint64_t now();

// Lets `microseconds` pass, after the work that is due before.
void sleep(std::uint64_t microseconds);

// Work that each sleep() does before any time passes, for the time of a scope.
class WorkBeforeSleep {
public:
    explicit WorkBeforeSleep(std::function<void()> work);
    ~WorkBeforeSleep();
    WorkBeforeSleep(const WorkBeforeSleep&) = delete;
    WorkBeforeSleep& operator=(const WorkBeforeSleep&) = delete;

    void operator()() const { work(); }

private:
    std::function<void()> work;
};

}  // namespace TrellanSimulation
