// Preloaded into a program, it lets its locks be waited for longer than any test waits. With TRELLAN_SIGNAL_AT_LOCK in
// the environment the signal of that number comes while the program waits.
#include <signal.h>
#include <stdlib.h>
#include <time.h>
#include <unistd.h>

extern "C" int flock(int, int) noexcept
{
    if (const char* const number = getenv("TRELLAN_SIGNAL_AT_LOCK"); number != nullptr) {
        kill(getpid(), atoi(number));
    }
    timespec left = {20, 0};
    while (nanosleep(&left, &left) != 0) {
    }
    return 0;
}
