// What the board objects of an entry ask of boards and elements, as sets of values.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "archive/ZoSUpdateFile.h"
#include "assignment/MatchCriteria.h"

namespace ZoNUpdateInspection {

// For each of the listed criteria, the property that states what is accepted: of the board object, or of the entry, or
// a default; null where no board is accepted. What is stated once is one address, whatever number of board objects
// shares it.
using StatedLists = std::array<const ZoNJson::json*, ZoNUpdateAssignment::listedCriteria.size()>;

// What one board object of an entry decides: the first one that names a board's type. An entry without "boards" is its
// own board object.
struct Demand {
    const ZoNUpdateArchive::ZoSUpdateFile* file;
    const ZoNJson::json* object;          // the board object
    std::vector<std::string> boardTypes;  // for which it decides; each once, as stated
    std::optional<std::uint32_t> id;      // of an entry that is not for the flash drive
    std::int32_t pathBoard;               // position in "boards" of the object that states the path; -1: the entry
};

// Calls `action` for each demand of an entry, in the order of its board objects. What a demand refers to is the
// entry's.
void forEachDemand(const ZoNUpdateArchive::ZoSUpdateFile& file, const std::function<void(const Demand&)>& action);

// What a board object of the entry asks for.
StatedLists statedLists(const ZoNUpdateArchive::ZoSUpdateFile& file, const ZoNJson::json& object);

// The path on the flash drive, as it is stated for a board object of an entry that is for the drive.
std::string statedPath(const ZoNUpdateArchive::ZoSUpdateFile& file, const ZoNJson::json& object);

// The values of a list that a board can have, in ascending order, each once; none for null.
std::vector<ZoNUpdateAssignment::MatchValue> acceptedValues(const ZoNJson::json* stated);

}  // namespace ZoNUpdateInspection
