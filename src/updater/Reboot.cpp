// Whether the device can be rebooted. It never is: for local access a reboot is refused.
#include <iterator>

#include "inventory/ZoCUpdateInventory.h"
#include "updater/ZoCTrellanUpdater.h"

const char* ZoCTrellanUpdater::rebootMessage(unsigned state)
{
    constexpr const char* messages[] = {
        "",
        "ERROR: Device cannot be rebooted automatically (wrong command sequence).\n",
        ("WARNING: Device cannot be rebooted automatically (not supported by the firmware version installed on this "
         "device).\n"),
        "WARNING: Device cannot be rebooted automatically (not supported by this device).\n",
        ("ERROR: Device cannot be rebooted automatically (an error occurred while checking the reboot support "
         "status).\n"),
    };
    return state < std::size(messages) ? messages[state] : "";
}

bool ZoCTrellanUpdater::checkRebootSupport(unsigned& state)
{
    state = inventory->getRebootSupportState();
    print("%s", rebootMessage(state));
    return state == 0;
}

bool ZoCTrellanUpdater::reboot()
{
    unsigned state = 0;
    if (checkRebootSupport(state)) {
        print("ERROR: Device cannot be rebooted (currently not supported for local access).\n");
    }
    return false;
}
