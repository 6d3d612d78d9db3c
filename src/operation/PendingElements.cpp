#include "operation/PendingElements.h"

#include <algorithm>
#include <functional>
#include <iterator>

using namespace ZoNUpdateInventory;

namespace {

bool isPending(const ZoSUpdateElement* element)
{
    return element->updateState == PENDING;
}

}  // namespace

PendingElements::PendingElements(ZoCUpdateInventory::ElementList& elements)
{
    for (ZoSUpdateElement& element : elements) {
        if (isPending(&element)) {
            byPhase[element.phase].push_back(&element);
            byBoard[element.boardAddress.toString().c_str()].push_back(&element);
        }
    }
}

PendingElements::List PendingElements::ofPhase(unsigned phase) const
{
    List list;
    if (const auto found = byPhase.find(phase); found != byPhase.end()) {
        std::copy_if(found->second.begin(), found->second.end(), std::back_inserter(list), isPending);
    }
    return list;
}

PendingElements::List PendingElements::ofBoard(const ZoCInventoryAddress& boardAddress)
{
    const auto found = byBoard.find(boardAddress.toString().c_str());
    if (found == byBoard.end()) {
        return {};
    }
    std::erase_if(found->second, std::not_fn(isPending));
    return found->second;
}
