// ObjectMembers: the members of a file entry, or of one of its board objects, that the format has: each is looked up
// once.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "libZoJsonLib/ZoNJson.h"

namespace ZoNUpdateArchive {

enum class Property : std::uint8_t {
    name,
    sequence,
    boards,
    featureLevel,
    version,
    checksumCrc32,
    mode,
    swCompatibilityId,
    hwCompatibilityId,
    targetPath,
    id,
    boardId,
    boardVariant,
    boardType
};

// How many there are; the names of board objects are those from swCompatibilityId on.
inline constexpr std::size_t propertyCount = 14;

const char* nameOf(Property property);

class ObjectMembers {
public:
    // Keeps references to `object` and its members, which must outlive this. A value that is no object has none.
    ObjectMembers(const ZoNJson::json& object);

    const ZoNJson::json& object() const { return *source; }

    bool has(Property property) const { return at(property) != nullptr; }

    // The member, which must be there.
    const ZoNJson::json& operator[](Property property) const { return *at(property); }

    bool hasString(Property property) const { return has(property) && at(property)->is_string(); }
    bool hasUnsigned(Property property) const { return has(property) && at(property)->is_number_unsigned(); }

private:
    const ZoNJson::json* at(Property property) const { return members[static_cast<std::size_t>(property)]; }

    const ZoNJson::json* source;
    std::array<const ZoNJson::json*, propertyCount> members{};
};

}  // namespace ZoNUpdateArchive
