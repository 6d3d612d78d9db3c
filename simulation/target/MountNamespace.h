// Mounts that nobody else sees.
#pragma once

#include "simulation/base/FileDescriptor.h"

namespace TrellanSimulation {

class MountNamespace {
public:
    // Gives the calling thread, and those that it starts from then on, mounts of their own: a mount namespace (where
    // the process may not have one, together with a user namespace). Once; later calls do nothing. Working directory
    // and relative paths stay good. Throws std::system_error, saying what was refused and why, or std::runtime_error,
    // saying what to do.
    void enter();

    // Throws std::runtime_error when the namespace was entered and the calling thread is not in it: it sees the
    // machine's own mounts.
    void requireInside() const;

private:
    FileDescriptor entered;  // the namespace, open so that no later one is taken for it
};

}  // namespace TrellanSimulation
