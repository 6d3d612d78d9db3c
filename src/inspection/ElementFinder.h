// ElementFinder: finds an element among those of another scan of the same target.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "inventory/ZoCUpdateInventory.h"

namespace ZoNUpdateInspection {

class ElementFinder {
public:
    // Takes up the elements that the target lists. They must outlive the finder.
    explicit ElementFinder(const ZoCUpdateInventory::ElementList& elements);

    // The same element: of the same board, the same kind and the same id or location; of several such the one at the
    // same address, or else the first. Null when there is none.
    const ZoNUpdateInventory::ZoSUpdateElement* find(const ZoNUpdateInventory::ZoSUpdateElement& element) const;

private:
    std::unordered_map<std::string, std::vector<const ZoNUpdateInventory::ZoSUpdateElement*>> elementsByKey;
};

}  // namespace ZoNUpdateInspection
