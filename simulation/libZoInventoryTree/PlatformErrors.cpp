#include "simulation/libZoInventoryTree/PlatformErrors.h"

#include <array>

namespace TrellanSimulation {

namespace {

constexpr auto firstCode = static_cast<unsigned>(PlatformError::parameterMissing);

// By code, from firstCode on.
constexpr auto texts = std::to_array<std::string_view>({
    "Parameter %1 of %2 does not exist.",
    "Parameter %1 of %2 has another type.",
    "The target is locked by another process.",
    "The lock handle %1 is not valid.",
    "There is no update element %1 on %2.",
    "The update file %1 cannot be read.",
    "The target file %1 cannot be read: %2.",
    "%1 holds no inventory tree.",
});

}  // namespace

std::string platformErrorText(PlatformError error, std::initializer_list<std::string_view> arguments)
{
    const std::string_view pattern = texts.at(static_cast<unsigned>(error) - firstCode);
    std::string text;
    for (std::size_t at = 0; at < pattern.size(); ++at) {
        if (pattern[at] == '%') {
            text += arguments.begin()[pattern[++at] - '1'];
        } else {
            text += pattern[at];
        }
    }
    return text;
}

void addPlatformError(ZoCErrorListPool& errors, PlatformError error, std::initializer_list<std::string_view> arguments)
{
    ZoSErrorRecord record;
    record.code = static_cast<unsigned>(error);
    record.text = platformErrorText(error, arguments);
    errors.addError(record);
}

}  // namespace TrellanSimulation
