// A thread that must not wait for others to make room.
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>
#include <thread>

#include "support/Unprivileged.h"
#include "tool/update/PromptThread.h"

namespace {

bool mayRunBeforeOrdinaryThreads()
{
    bool may = false;
    std::thread([&may] {
        sched_param parameters = {};
        parameters.sched_priority = ::sched_get_priority_max(SCHED_FIFO);
        may = ::pthread_setschedparam(::pthread_self(), SCHED_FIFO, &parameters) == 0;
    }).join();
    return may;
}

// The kernel's struct sched_attr of its first version.
struct SchedulingAttributes {
    std::uint32_t size, policy;
    std::uint64_t flags;
    std::int32_t nice;
    std::uint32_t priority;
    std::uint64_t runtime, deadline, period;
};

// Of a thread whose niceness is `niceness`, and which is to run promptly.
void expectAShortSlice(int niceness)
{
    const Unprivileged user;
    if (mayRunBeforeOrdinaryThreads()) {
        GTEST_SKIP() << "every user may run before others here";
    }
    SchedulingAttributes before = {}, after = {};
    std::thread([&] {
        SchedulingAttributes wanted = {sizeof(SchedulingAttributes), SCHED_OTHER, 0, niceness, 0, 300'000, 0, 0};
        ASSERT_EQ(::syscall(SYS_sched_setattr, 0, &wanted, 0), 0);
        ASSERT_EQ(::syscall(SYS_sched_getattr, 0, &before, sizeof before, 0), 0);
        TrellanTool::runPromptly();
        ASSERT_EQ(::syscall(SYS_sched_getattr, 0, &after, sizeof after, 0), 0);
    }).join();
    if (before.runtime != 300'000) {
        GTEST_SKIP() << "this kernel's ordinary threads have no slices of their own";
    }
    EXPECT_EQ(after.policy, static_cast<std::uint32_t>(SCHED_OTHER));
    EXPECT_EQ(after.runtime, 100'000u);
    EXPECT_EQ(after.nice, niceness);
}

}  // namespace

TEST(PromptThread, RunsBeforeAllOrdinaryThreadsAndAfterAllOthers)
{
    if (!mayRunBeforeOrdinaryThreads()) {
        GTEST_SKIP() << "this process may not ask for that";
    }
    int policy = SCHED_OTHER;
    sched_param parameters = {};
    std::thread([&] {
        TrellanTool::runPromptly();
        ::pthread_getschedparam(::pthread_self(), &policy, &parameters);
    }).join();
    EXPECT_EQ(policy, SCHED_FIFO);
    EXPECT_EQ(parameters.sched_priority, 1);
}

TEST(PromptThread, HasAShortSliceOfTimeWhereItMayNotRunBeforeOthers)
{
    expectAShortSlice(::getpriority(PRIO_PROCESS, 0));
}

TEST(PromptThread, StaysAsNiceAsItWas)
{
    expectAShortSlice(12);
}
