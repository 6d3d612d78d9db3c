// Progress of the reading of files, for a person who waits for it.
#pragma once

#include <chrono>
#include <cstdint>
#include <iosfwd>

namespace TrellanTool {

class CheckProgress {
public:
    using Clock = std::chrono::steady_clock;

    // Shows on `err`, where that `isShown`, a line that is written over, from one second after `start` on: what the
    // tool is `doing`, and the share of it that is done.
    CheckProgress(std::ostream& err, bool isShown, Clock::time_point start, const char* doing = "checking the files");

    // Clears the line.
    ~CheckProgress();
    CheckProgress(const CheckProgress&) = delete;
    CheckProgress& operator=(const CheckProgress&) = delete;

    // At the time `now`, `read` of `all` bytes, or of whatever is counted, have been read.
    void report(std::uint64_t read, std::uint64_t all, Clock::time_point now);

    // The same now, for the inspector: `progress` is a CheckProgress.
    static void take(void* progress, std::uint64_t read, std::uint64_t all);

private:
    std::ostream& err;
    const bool isShown;
    const Clock::time_point start;
    const char* const doing;
    int lastPercent = -1;
};

}  // namespace TrellanTool
