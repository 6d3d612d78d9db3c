#include "inspection/ElementFinder.h"

#include <algorithm>

#include "base/PlatformText.h"

using namespace ZoNUpdateBase;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace ZoNUpdateInspection {
namespace {

// By which the inventory manager and the writer know the element. No address has a blank.
std::string keyOf(const ZoSUpdateElement& element)
{
    const std::string board = allText(element.boardAddress.toString());
    return element.isFileSystemElement ? board + " file " + allText(element.location)
                                       : board + " id " + std::to_string(element.id);
}

}  // namespace

ElementFinder::ElementFinder(const ZoCUpdateInventory::ElementList& elements)
{
    for (const ZoSUpdateElement& element : elements) {
        if (element.isListed) {
            elementsByKey[keyOf(element)].push_back(&element);
        }
    }
}

const ZoSUpdateElement* ElementFinder::find(const ZoSUpdateElement& element) const
{
    const auto found = elementsByKey.find(keyOf(element));
    if (found == elementsByKey.end()) {
        return nullptr;
    }
    const auto& alike = found->second;
    const auto same = std::find_if(alike.begin(), alike.end(), [&](const ZoSUpdateElement* candidate) {
        return candidate->address == element.address;
    });
    return same != alike.end() ? *same : alike.front();
}

}  // namespace ZoNUpdateInspection
