// Whether the device can be rebooted. It never is: for local access a reboot is refused.
#include "inventory/ZoCUpdateInventory.h"
#include "updater/ZoCTrellanUpdater.h"

namespace {

constexpr const char* rebootMessages[] = {
    "",
    "ERROR: Device cannot be rebooted automatically (wrong command sequence).\n",
    "WARNING: Device cannot be rebooted automatically (not supported by the firmware version installed on this "
    "device).\n",
    "WARNING: Device cannot be rebooted automatically (not supported by this device).\n",
    "ERROR: Device cannot be rebooted automatically (an error occurred while checking the reboot support status).\n",
};

}  // namespace

bool ZoCTrellanUpdater::checkRebootSupport(unsigned& state)
{
    state = inventory->getRebootSupportState();
    if (state < std::size(rebootMessages)) {
        print("%s", rebootMessages[state]);
    }
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
