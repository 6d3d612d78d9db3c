#include "updater/RebootMessage.h"

#include <iterator>

namespace {

constexpr const char* messages[] = {
    "",
    "ERROR: Device cannot be rebooted automatically (wrong command sequence).\n",
    ("WARNING: Device cannot be rebooted automatically (not supported by the firmware version installed on this "
     "device).\n"),
    "WARNING: Device cannot be rebooted automatically (not supported by this device).\n",
    "ERROR: Device cannot be rebooted automatically (an error occurred while checking the reboot support status).\n",
};

}  // namespace

const char* rebootMessage(unsigned state)
{
    return state < std::size(messages) ? messages[state] : "";
}
