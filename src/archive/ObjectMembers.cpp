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

// What most entries have comes first: once as many members are found as there are, none of the others is asked for.
constexpr std::array<Property, propertyCount> searchOrder{
    Property::name,    Property::sequence,      Property::boardType,         Property::id,
    Property::version, Property::checksumCrc32, Property::hwCompatibilityId, Property::swCompatibilityId,
    Property::boards,  Property::targetPath,    Property::boardVariant,      Property::boardId,
    Property::mode,    Property::featureLevel,
};

}  // namespace

const char* nameOf(Property property)
{
    return names[static_cast<std::size_t>(property)].data();
}

ObjectMembers::ObjectMembers(const ZoNJson::json& object) : source(&object)
{
    if (!object.is_object()) {
        return;
    }
    static const std::vector<std::string> keys(names.begin(), names.end());  // a key is looked up as a string
    std::size_t left = object.size();
    for (auto property = searchOrder.begin(); left != 0 && property != searchOrder.end(); ++property) {
        const auto position = static_cast<std::size_t>(*property);
        const ZoNJson::json& member = object[keys[position]];
        if (!member.is_null() || object.contains(keys[position])) {  // one that is not there is null, too
            members[position] = &member;
            --left;
        }
    }
}

}  // namespace ZoNUpdateArchive
