#include "tool/update/StallWatch.h"

#include <algorithm>

namespace TrellanTool {

void StallWatch::beginPhase()
{
    lastPercent.reset();
}

bool StallWatch::report(unsigned percent, Clock::time_point now)
{
    if (lastPercent != percent) {
        lastPercent = percent;
        since = now;
        repetitions = 0;
        return false;
    }
    ++repetitions;
    const std::chrono::duration<double> slept = reportInterval * repetitions;
    return std::max<std::chrono::duration<double>>(now - since, slept) >= limit;
}

}  // namespace TrellanTool
