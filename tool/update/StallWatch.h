// Notices that an update makes no progress.
#pragma once

#include <chrono>
#include <optional>

namespace TrellanTool {

class StallWatch {
public:
    using Clock = std::chrono::steady_clock;

    // An update stalls when its percentage has not changed for `limit`.
    explicit StallWatch(std::chrono::duration<double> limit) : limit(limit) {}

    // Another phase begins. Time counts from its first report on: what is copied before that is waited for.
    void beginPhase();

    // The phase has been reported to be at `percent` at the time `now`; true when the update stalls. Between two
    // reports the library sleeps for reportInterval, and at least that is counted for each, so that on a simulated
    // target too, whose time may pass at once, an update that never ends comes to an end.
    bool report(unsigned percent, Clock::time_point now);

    static constexpr std::chrono::milliseconds reportInterval{200};

private:
    const std::chrono::duration<double> limit;
    std::optional<unsigned> lastPercent;
    Clock::time_point since;
    unsigned long long repetitions = 0;  // reports since then that said the same
};

}  // namespace TrellanTool
