#include "archive/ObjectMembers.h"

#include <string_view>

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
    object.visitMembers([this](std::string_view key, const ZoNJson::json& value) {
        for (std::size_t property = 0; property < propertyCount; ++property) {
            if (names[property] == key) {
                members[property] = &value;
                return;
            }
        }
    });
}

}  // namespace ZoNUpdateArchive
