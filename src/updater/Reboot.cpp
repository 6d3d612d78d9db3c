// Whether the device can be rebooted. It never is: for local access a reboot is refused.
#include "inventory/ZoCUpdateInventory.h"
#include "updater/RebootMessage.h"
#include "updater/ZoCTrellanUpdater.h"

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
