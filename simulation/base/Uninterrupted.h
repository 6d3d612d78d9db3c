// Calls of the system that the host's signals interrupt: where a handler does not ask for it, the system leaves it to
// the caller to go on.
#pragma once

#include <cerrno>

namespace TrellanSimulation {

// Makes `call`, which returns a negative number when it fails, until no signal interrupts it; what it returns then.
template <class Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

}  // namespace TrellanSimulation
