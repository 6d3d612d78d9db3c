// Whether this machine lets a process have namespaces of its own. Not every one does: tests that need them are skipped
// there.
#pragma once

#include <gtest/gtest.h>

// Whether a flash drive can be mounted, in a mount namespace, and whether a process can have a user namespace. Each is
// tried once, by a child.
bool canMount();
bool canHaveUserNamespace();

// Skips the rest of a test, or of all of a fixture's tests in its SetUp().
#define SKIP_WITHOUT_MOUNT() \
    if (!canMount())         \
    GTEST_SKIP() << "this machine allows no mount namespace, which a flash drive needs"
#define SKIP_WITHOUT_USER_NAMESPACE() \
    if (!canHaveUserNamespace())      \
    GTEST_SKIP() << "this machine allows no user namespace"
