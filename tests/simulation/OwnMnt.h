// A /mnt of a test's own.
#pragma once

#include <sched.h>
#include <sys/mount.h>

#include <cerrno>
#include <system_error>

#include "UserNamespace.h"

// Puts an empty file system over the folder `place`, where a test has mounts of its own.
inline void mountMemory(const char* place)
{
    if (::mount("tmpfs", place, "tmpfs", 0, nullptr) != 0) {
        throw std::system_error(errno, std::generic_category(), place);
    }
}

// Gives this process a /mnt that is empty and that nobody else sees, for good: for processes that end with their test.
inline void makeOwnMnt()
{
    if (::unshare(CLONE_NEWNS) != 0) {
        enterUserNamespace();
        if (::unshare(CLONE_NEWNS) != 0) {
            throw std::system_error(errno, std::generic_category(), "a mount namespace");
        }
    }
    if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
        throw std::system_error(errno, std::generic_category(), "private mounts");
    }
    mountMemory("/mnt");
}
