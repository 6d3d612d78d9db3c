#include "assignment/MatchCriteria.h"

#include "updater/ZoCTrellanUpdater.h"

using ZoNJson::json;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace ZoNUpdateAssignment {
namespace {

json variantOf(const ZoSUpdateElement& element)
{
    const std::string variant = ZoCTrellanUpdater::ZoCString2tstring(element.variant);
    return variant.empty() ? json(nullptr) : json(variant);
}

json productIdOf(const ZoSUpdateElement& element)
{
    return json(element.productId);
}

json hwCompatibilityIdOf(const ZoSUpdateElement& element)
{
    return json(element.hwCompatibilityId);
}

json swCompatibilityIdOf(const ZoSUpdateElement& element)
{
    return json(element.swCompatibilityId);
}

}  // namespace

const std::array<MatchCriterion, 4>& matchCriteria()
{
    static const std::array<MatchCriterion, 4> criteria{{
        {"boardVariant", variantOf, nullptr},
        {"boardId", productIdOf, 0U},
        {"hwCompatibilityId", hwCompatibilityIdOf, 0U},
        {"swCompatibilityId", swCompatibilityIdOf, 0U},
    }};
    return criteria;
}

const json* EntryProperties::id() const
{
    static const std::string key = "id";
    return find(key);
}

const json* EntryProperties::targetPath() const
{
    static const std::string key = "targetPath";
    return find(key);
}

}  // namespace ZoNUpdateAssignment
