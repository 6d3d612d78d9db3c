#include "simulation/libZoInventoryTree/MemberIndex.h"

#include <algorithm>

namespace TrellanSimulation {

MemberIndex::MemberIndex(const Json& object)
{
    const JsonValues members = object.values();
    names.reserve(members.count / 2);
    for (const JsonBits* name = members.first; name != members.first + members.count; name += 2) {
        names.push_back(name);
    }
    std::sort(names.begin(), names.end(),
              [](const JsonBits* left, const JsonBits* right) { return textOf(*left) < textOf(*right); });
}

std::optional<Json> MemberIndex::find(std::string_view name) const
{
    const auto found =
        std::lower_bound(names.begin(), names.end(), name,
                         [](const JsonBits* member, std::string_view wanted) { return textOf(*member) < wanted; });
    return found == names.end() || textOf(**found) != name ? std::nullopt : std::optional(Json(*(*found + 1)));
}

}  // namespace TrellanSimulation
