// OpenUpdater: an updater whose working classes can be reached, to test each of them by itself.
#pragma once

#include "ZoITrellanUpdater.h"
#include "updater/ZoCTrellanUpdater.h"

class OpenUpdater : public ZoCTrellanUpdater {
public:
    using ZoCTrellanUpdater::ZoCTrellanUpdater;

    ZoCUpdateArchive& getArchive() { return *archive; }
    ZoCUpdateInventory& getInventory() { return *inventory; }
    ZoCUpdateAssignment& getAssignment() { return *assignment; }
    ZoCUpdateOperation& getOperation() { return *operation; }
};
