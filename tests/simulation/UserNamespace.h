// A user namespace of a test's own.
#pragma once

#include <sched.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <string>
#include <system_error>

// Makes this process, for good, the only user of a new user namespace, with all rights there but over nobody else's
// files.
inline void enterUserNamespace()
{
    const std::string user = std::to_string(::geteuid());
    const std::string group = std::to_string(::getegid());
    if (::unshare(CLONE_NEWUSER) != 0) {
        throw std::system_error(errno, std::generic_category());
    }
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << user + ' ' + user + " 1";
    std::ofstream("/proc/self/gid_map") << group + ' ' + group + " 1";
}
