// What the board objects of an entry ask of boards and elements, as sets of values.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "archive/ZoSUpdateFile.h"
#include "assignment/MatchCriteria.h"

namespace ZoNUpdateInspection {

// What one board object of an entry decides: the first one that names a board's type. An entry without "boards" is its
// own board object.
struct Demand {
    using Values = std::vector<ZoNUpdateAssignment::MatchValue>;

    const ZoNUpdateArchive::ZoSUpdateFile* file;
    const ZoNJson::json* object;          // the board object
    std::int32_t board;                   // its position in "boards"; -1: it is the entry
    std::vector<std::string> boardTypes;  // for which it decides; each once, as stated
    std::optional<std::uint32_t> id;      // of an entry that is not for the flash drive
    std::string path;                     // on the flash drive, as it is stated
    std::int32_t pathBoard;               // position in "boards" of the object that states the path; -1: the entry
    std::array<Values, ZoNUpdateAssignment::listedCriteria.size()>
        accepted;  // that a board can have, in ascending order
};

// The demands of an entry, in the order of its board objects.
std::vector<Demand> demandsOf(const ZoNUpdateArchive::ZoSUpdateFile& file);

// True when there may be a board that both accept, its type aside.
bool haveCommonBoard(const Demand& a, const Demand& b);

}  // namespace ZoNUpdateInspection
