// What abidw reads of the header with the same base name: with debug information for records of that header alone.
#include "ZoITrellanInspector.h"

ZoITrellanInspector* ZoITrellanInspector::createInstance(ZoITrellanUpdater&)
{
    return nullptr;
}
