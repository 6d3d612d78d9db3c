// Members of a description that the format does not have.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "ZoITrellanInspector.h"
#include "tool/documents/FoundMembers.h"

namespace TrellanTool {

// The members of `description`, valid JSON, for whose objects `isKnown(object, key)` is false. Of members with the same
// key the last one counts.
FoundMembers findUnknownMembers(
    std::string_view description,
    const std::function<bool(ZoNTrellanInspector::ZoTDescriptionObject, std::string_view)>& isKnown);

// Where in the description the name of an entry begins.
struct EntryName {
    std::int32_t entry;  // position in "files"
    std::size_t offset;
};

// The names of the entries of `description` that have one that is a text, in the order of the entries; nothing where
// the description has no list of entries.
std::optional<std::vector<EntryName>> findEntryNames(std::string_view description);

}  // namespace TrellanTool
