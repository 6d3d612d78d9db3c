// The title of the unit that an element's board sits in.
#pragma once

#include <string>

#include "inventory/ZoSUpdateElement.h"

namespace ZoNUpdateInventory {

// The unit's product name, then ": " and its rack's and its own name, as far as it has them: "Box: Rack 1 / Unit 2".
std::string unitTitle(const ZoSUpdateElementValues& element);

}  // namespace ZoNUpdateInventory
