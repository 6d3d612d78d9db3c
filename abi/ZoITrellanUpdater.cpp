// What abidw reads of the header with the same base name: with debug information for records of that header alone.
#include "ZoITrellanUpdater.h"

ZoITrellanUpdater* ZoITrellanUpdater::createInstance(ZoNTrellanUpdater::ZoTOptions)
{
    return nullptr;
}

// Options hold a command as a number: this has the enumeration recorded.
extern const ZoNTrellanUpdater::ZoTCommand recordedCommand = ZoNTrellanUpdater::TOOL_VERSION;
