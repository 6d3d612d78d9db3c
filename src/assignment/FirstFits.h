// For many elements and many files at once: the first file that fits each element.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "archive/ZoSUpdateFile.h"
#include "inventory/ZoSUpdateElement.h"

namespace ZoNUpdateAssignment {

// For each element, in their order, the position of the first of `files` that fits it; nothing where none does. Gives
// the same as trying each file with each element, in a time that grows with what the files state and the elements have.
// Throws ZoNJson::type_error for an id that is no number and a target path that is no text.
std::vector<std::optional<std::uint32_t>> firstFits(
    std::span<const ZoNUpdateInventory::ZoSUpdateElement* const> elements,
    const std::vector<ZoNUpdateArchive::ZoSUpdateFile>& files);

}  // namespace ZoNUpdateAssignment
