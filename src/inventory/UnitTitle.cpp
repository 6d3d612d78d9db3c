#include "inventory/UnitTitle.h"

#include "updater/ZoCTrellanUpdater.h"

namespace ZoNUpdateInventory {

std::string unitTitle(const ZoSUpdateElementValues& element)
{
    std::string title = ZoCTrellanUpdater::ZoCString2tstring(element.unitProductName);
    const char* separator = ": ";
    for (const ZoCString* name : {&element.rackName, &element.unitName}) {
        if (!name->isEmpty()) {
            title += separator + ZoCTrellanUpdater::ZoCString2tstring(*name);
            separator = " / ";
        }
    }
    return title;
}

}  // namespace ZoNUpdateInventory
