#include "archive/ObjectMembers.h"

#include <string>
#include <string_view>
#include <vector>

namespace ZoNUpdateArchive {

namespace {

// By the number of the property.
constexpr std::array<std::string_view, propertyCount> names{
    "name",
    "sequence",
    "boards",
    "featureLevel",
    "version",
    "checksumCrc32",
    "mode",
    "swCompatibilityId",
    "hwCompatibilityId",
    "targetPath",
    "id",
    "boardId",
    "boardVariant",
    "boardType",
};

}  // namespace

const char* nameOf(Property property)
{
    return names[static_cast<std::size_t>(property)].data();
}

ObjectMembers::ObjectMembers(const ZoNJson::json& object) : source(&object)
{
    static const std::vector<std::string> keys(names.begin(), names.end());  // a key is looked up as a string
    for (std::size_t property = 0; property < propertyCount; ++property) {
        if (object.contains(keys[property])) {
            members[property] = &object[keys[property]];
        }
    }
}

}  // namespace ZoNUpdateArchive
