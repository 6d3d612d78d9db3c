// A thread that must not wait for others to make room.
#include <gtest/gtest.h>
#include <pthread.h>

#include <thread>

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
