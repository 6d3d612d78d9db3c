#include "tool/update/CheckProgress.h"

#include <ostream>

namespace TrellanTool {

CheckProgress::CheckProgress(std::ostream& err, bool isShown, Clock::time_point start, const char* doing)
    : err(err), isShown(isShown), start(start), doing(doing)
{
}

CheckProgress::~CheckProgress()
{
    if (lastPercent >= 0) {
        err << "\r                                             \r";
        err.flush();
    }
}

void CheckProgress::report(std::uint64_t read, std::uint64_t all, Clock::time_point now)
{
    const int percent = all == 0 ? 100 : static_cast<int>(100.0 * static_cast<double>(read) / static_cast<double>(all));
    if (isShown && percent != lastPercent && now - start >= std::chrono::seconds(1)) {
        lastPercent = percent;
        err << "\rtrellan-update: " << doing << ": " << percent << " %";
        err.flush();
    }
}

void CheckProgress::take(void* progress, std::uint64_t read, std::uint64_t all)
{
    static_cast<CheckProgress*>(progress)->report(read, all, Clock::now());
}

}  // namespace TrellanTool
