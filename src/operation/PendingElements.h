// PendingElements: the elements that are to be updated, found by their phase and by their board.
//
// Made once for an update, so that neither a phase nor a failure has to search the inventory's whole list. That is
// sound because an update makes its elements pending before anything else, and none of them afterwards.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "inventory/ZoCUpdateInventory.h"

class PendingElements {
public:
    using List = std::vector<ZoNUpdateInventory::ZoSUpdateElement*>;

    // Takes up the elements that are pending now. They must outlive it.
    explicit PendingElements(ZoCUpdateInventory::ElementList& elements);

    // The elements of a phase that are still pending, in list order.
    List ofPhase(unsigned phase) const;

    // The elements of a board that are still pending, in list order. Forgets the others, so that many failures on one
    // board do not walk over the same elements each time.
    List ofBoard(const ZoCInventoryAddress& boardAddress);

private:
    std::unordered_map<unsigned, List> byPhase;
    std::unordered_map<std::string, List> byBoard;  // by the address as text: equal addresses have equal texts
};
