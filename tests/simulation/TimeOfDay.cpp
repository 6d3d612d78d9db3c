#include "TimeOfDay.h"

#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

namespace {

long secondsLater = 0;

}  // namespace

LaterTimeOfDay::LaterTimeOfDay(long seconds)
{
    secondsLater = seconds;
}

LaterTimeOfDay::~LaterTimeOfDay()
{
    secondsLater = 0;
}

// Takes the place of the system's for the whole test program.
extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept
{
    const long result = ::syscall(SYS_clock_gettime, clock, time);
    if (clock == CLOCK_REALTIME && result == 0) {
        time->tv_sec += secondsLater;
    }
    return static_cast<int>(result);
}
