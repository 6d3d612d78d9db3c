// Preloaded into a program, it stretches the moments between the calls that change its files. Sleeps end at once, and
// the machine's other media are left alone.
//
// With TRELLAN_FORGET_FLUSHES in the environment nothing is flushed either, as if the program did not ask for it.
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

namespace {

constexpr long longestPause = 3'000'000;  // nanoseconds

void pause()
{
    timespec time = {0, random() % longestPause};
    syscall(SYS_nanosleep, &time, nullptr);
}

template <class... Arguments>
long callBetweenPauses(long number, Arguments... arguments)
{
    pause();
    const long result = syscall(number, arguments...);
    const int error = errno;
    pause();
    errno = error;
    return result;
}

// Every program has moments of its own.
__attribute__((constructor)) void seed()
{
    srandom(static_cast<unsigned>(getpid()));
}

}  // namespace

extern "C" {

int rename(const char* from, const char* to) noexcept
{
    return static_cast<int>(callBetweenPauses(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

int unlink(const char* path) noexcept
{
    return static_cast<int>(callBetweenPauses(SYS_unlinkat, AT_FDCWD, path, 0));
}

int remove(const char* path) noexcept
{
    return unlink(path);
}

int fsync(int file)
{
    return getenv("TRELLAN_FORGET_FLUSHES") != nullptr ? 0 : static_cast<int>(callBetweenPauses(SYS_fsync, file));
}

ssize_t write(int file, const void* bytes, size_t count)
{
    return file <= 2 ? syscall(SYS_write, file, bytes, count) : callBetweenPauses(SYS_write, file, bytes, count);
}

int nanosleep(const timespec*, timespec*)
{
    return 0;
}

int clock_nanosleep(clockid_t, int, const timespec*, timespec*)
{
    return 0;
}

void sync() noexcept {}
}
