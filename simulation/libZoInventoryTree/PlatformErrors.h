// The errors that the platform's inventory libraries report themselves.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "libZoErrorHandling/ZoCErrorListPool.h"

namespace TrellanSimulation {

enum class PlatformError : unsigned {
    parameterMissing = 0x26300001,      // arguments: parameter, item
    parameterType = 0x26300002,         // parameter, item
    targetLocked = 0x26300003,          // none
    handleInvalid = 0x26300004,         // handle
    elementUnknown = 0x26300005,        // element id, board
    updateFileUnreadable = 0x26300006,  // path
    targetUnreadable = 0x26300007,      // path, reason
    noInventoryTree = 0x26300008        // path
};

// The text of `error` with its arguments filled in.
std::string platformErrorText(PlatformError error, std::initializer_list<std::string_view> arguments);

// Adds `error` to `errors`: from node 0, without time stamp, module and function.
void addPlatformError(ZoCErrorListPool& errors, PlatformError error, std::initializer_list<std::string_view> arguments);

}  // namespace TrellanSimulation
