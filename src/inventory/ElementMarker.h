// The mark that tables put beside an element whose content is not in use.
#pragma once

#include "inventory/ZoSUpdateElement.h"

namespace ZoNUpdateInventory {

// "[INVALID]" or "[INACTIVE]"; null when the element needs no mark. A file is never inactive.
inline const char* elementMarker(const ZoSUpdateElementValues& element)
{
    if (!element.valid) {
        return "[INVALID]";
    }
    return element.active || element.isFileSystemElement ? nullptr : "[INACTIVE]";
}

}  // namespace ZoNUpdateInventory
