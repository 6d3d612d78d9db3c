// Doing something in another process.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

// Runs `action` in a process of its own and returns its exit status.
template <class Action>
int inAnotherProcess(Action action)
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(action());
    }
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
