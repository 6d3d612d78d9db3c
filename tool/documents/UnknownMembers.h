// Members of a description that the format does not have.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "ZoITrellanInspector.h"

namespace TrellanTool {

struct UnknownMember {
    ZoNTrellanInspector::ZoTDescriptionObject object;  // that it stands in
    std::optional<std::int32_t> file;                  // position of the entry in "files"
    std::optional<std::int32_t> board;                 // position of the board object in "boards" of the entry
    std::string key;
};

// Those of `description`, valid JSON, for whose objects `isKnown(object, key)` is false. Of members with the same key
// the last one counts.
std::vector<UnknownMember> findUnknownMembers(
    std::string_view description,
    const std::function<bool(ZoNTrellanInspector::ZoTDescriptionObject, std::string_view)>& isKnown);

// The names of these entries of `description`, as far as they are there and have one that is a text; nothing where the
// description has no list of entries.
std::optional<std::map<std::int32_t, std::string>> findEntryNames(std::string_view description,
                                                                  const std::set<std::int32_t>& entries);

}  // namespace TrellanTool
