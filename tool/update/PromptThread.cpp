#include "tool/update/PromptThread.h"

#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>

namespace TrellanTool {

namespace {

// What Linux takes for sched_setattr; the C library has no name for it everywhere.
struct SchedulingAttributes {
    std::uint32_t size = sizeof(SchedulingAttributes);
    std::uint32_t policy = SCHED_OTHER;
    std::uint64_t flags = 0;
    std::int32_t nice = 0;
    std::uint32_t priority = 0;
    std::uint64_t runtime = 0;  // nanoseconds; of ordinary threads, a slice: who asks for less gets it sooner
    std::uint64_t deadline = 0;
    std::uint64_t period = 0;
};

constexpr std::uint64_t shortestSlice = 100'000;

}  // namespace

void runPromptly()
{
    sched_param first = {};
    first.sched_priority = ::sched_get_priority_min(SCHED_FIFO);
    if (::pthread_setschedparam(::pthread_self(), SCHED_FIFO, &first) == 0) {
        return;
    }
    SchedulingAttributes attributes;
    attributes.nice = ::getpriority(PRIO_PROCESS, 0);  // of this thread; only a superuser may lower it
    attributes.runtime = shortestSlice;
    ::syscall(SYS_sched_setattr, 0, &attributes, 0);  // Linux before 6.12 makes no difference
}

}  // namespace TrellanTool
