// What becomes, or became, of an element.
#pragma once

#include "ZoITrellanInspector.h"
#include "inventory/ZoSUpdateElement.h"
#include "updater/ZoCTrellanUpdater.h"

namespace ZoNUpdateInspection {

// The state of an element of `updater`, by what is known now.
ZoNTrellanInspector::ZoTState stateOf(const ZoNUpdateInventory::ZoSUpdateElement& element,
                                      const ZoCTrellanUpdater& updater);

}  // namespace ZoNUpdateInspection
