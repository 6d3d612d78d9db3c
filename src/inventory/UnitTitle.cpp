#include "inventory/UnitTitle.h"

#include "base/PlatformText.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;

namespace ZoNUpdateInventory {

std::string unitTitle(const ZoSUpdateElementValues& element)
{
    std::string title = textBeforeNul(element.unitProductName);
    const char* separator = ": ";
    for (const ZoCString* name : {&element.rackName, &element.unitName}) {
        if (!name->isEmpty()) {
            title += separator + textBeforeNul(*name);
            separator = " / ";
        }
    }
    return title;
}

}  // namespace ZoNUpdateInventory
