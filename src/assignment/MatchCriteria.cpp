#include "assignment/MatchCriteria.h"

#include "assignment/ValueKey.h"
#include "base/PlatformText.h"

using namespace ZoNUpdateBase;
using ZoNJson::json;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace ZoNUpdateAssignment {
namespace {

std::string variantKey(const ZoSUpdateElement& element)
{
    return element.variant.isEmpty() ? valueKey(nullptr) : textKey(allText(element.variant));
}

}  // namespace

const std::array<MatchCriterion, 4>& matchCriteria()
{
    static const std::array<MatchCriterion, 4> criteria{{
        {"boardVariant", variantKey, nullptr},
        {"boardId", [](const ZoSUpdateElement& element) { return numberKey(element.productId); }, 0U},
        {"hwCompatibilityId", [](const ZoSUpdateElement& element) { return numberKey(element.hwCompatibilityId); }, 0U},
        {"swCompatibilityId", [](const ZoSUpdateElement& element) { return numberKey(element.swCompatibilityId); }, 0U},
    }};
    return criteria;
}

std::string boardTypeKey(const ZoSUpdateElement& element)
{
    return textKey(allText(element.boardType));
}

bool takesAnyPath(const ZoSUpdateElement& element)
{
    static const ZoCString wildcard("*");
    return element.location == wildcard;
}

std::optional<std::uint32_t> EntryProperties::id() const
{
    static const std::string property = "id";
    const json* const id = find(property);
    return id != nullptr ? std::optional(static_cast<unsigned>(*id)) : std::nullopt;
}

std::optional<std::string> EntryProperties::targetPath() const
{
    static const std::string property = "targetPath";
    const json* const path = find(property);
    return path != nullptr ? std::optional(std::string(*path)) : std::nullopt;
}

}  // namespace ZoNUpdateAssignment
