#include "operation/PendingElements.h"

using namespace ZoNUpdateInventory;

PendingElements::PendingElements(ZoCUpdateInventory::ElementList& elements)
{
    for (ZoSUpdateElement& element : elements) {
        if (element.updateState == PENDING) {
            byPhase[element.phase].push_back(&element);
            byBoard[element.boardAddress.toString().c_str()].push_back(&element);
        }
    }
}

PendingElements::List PendingElements::ofPhase(unsigned phase) const
{
    const auto found = byPhase.find(phase);
    return found != byPhase.end() ? found->second : List();
}

PendingElements::List PendingElements::ofBoard(const ZoCInventoryAddress& boardAddress)
{
    const auto found = byBoard.find(boardAddress.toString().c_str());
    if (found == byBoard.end()) {
        return {};
    }
    std::erase_if(found->second, [](const ZoSUpdateElement* element) { return element->updateState != PENDING; });
    return found->second;
}
