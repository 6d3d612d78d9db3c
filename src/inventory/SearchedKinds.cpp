#include "inventory/SearchedKinds.h"

#include <algorithm>
#include <array>

#include "libZoInventoryTree/ZoNInventoryIDs.h"

using namespace ZoNInventoryIDs;

namespace ZoNUpdateInventory {

bool mayHoldElements(const ZoCInventoryItem& item)
{
    static const std::array searchedKinds{ROOT.getCategory(),       HCN.getCategory(),
                                          CN.getCategory(),         NETC.getCategory(),
                                          BACKPLANE.getCategory(),  NETWORK.getCategory(),
                                          IOROUTER.getCategory(),   ION.getCategory(),
                                          IOMODULE.getCategory(),   PIGGYBACK_MODULE.getCategory(),
                                          SUB_BOARDS.getCategory(), FBMODULE.getCategory(),
                                          UPDATE_INFO.getCategory()};
    const auto kind = item.getID().getCategory();
    return std::find(searchedKinds.begin(), searchedKinds.end(), kind) != searchedKinds.end();
}

bool isUpdateElement(const ZoCInventoryItem& item)
{
    const auto kind = item.getID().getCategory();
    return kind == UPDATE_ELEMENT.getCategory() || kind == FILESYSTEM_ELEMENT.getCategory();
}

}  // namespace ZoNUpdateInventory
