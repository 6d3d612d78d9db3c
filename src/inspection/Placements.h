// Where an entry for the flash drive puts its file, and on which boards.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "archive/ZoSUpdateFile.h"
#include "assignment/MatchCriteria.h"

namespace ZoNUpdateInspection {

// What one board object of an entry decides: the first one that names a board's type. An entry without "boards" is its
// own board object.
struct Placement {
    const ZoNUpdateArchive::ZoSUpdateFile* file;
    std::int32_t pathBoard;               // position in "boards" of the object that states the path; -1: the entry
    std::string path;                     // on the drive, as it is stated
    std::vector<std::string> boardTypes;  // for which it decides; each once
    // For each other thing that is asked of a board, the values that are accepted and that a board can have, in
    // ascending order.
    std::vector<std::vector<ZoNUpdateAssignment::MatchValue>> accepted;
};

// The placements of an entry, in the order of its board objects; none for what is not for the flash drive.
std::vector<Placement> placementsOf(const ZoNUpdateArchive::ZoSUpdateFile& file);

// True when there may be a board that both accept, its type aside.
bool haveCommonBoard(const Placement& a, const Placement& b);

}  // namespace ZoNUpdateInspection
