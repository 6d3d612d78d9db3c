#include "support/Namespaces.h"

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

bool succeedsInAChild(bool (*attempt)())
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(attempt() ? 0 : 1);
    }
    int status = 1;
    return child > 0 && ::waitpid(child, &status, 0) == child && status == 0;
}

bool mountPrivately()
{
    return (::unshare(CLONE_NEWNS) == 0 || ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0) &&
           ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool enterUserNamespace()
{
    return ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0;
}

}  // namespace

bool canMount()
{
    static const bool can = succeedsInAChild(mountPrivately);
    return can;
}

bool canHaveUserNamespace()
{
    static const bool can = succeedsInAChild(enterUserNamespace);
    return can;
}
