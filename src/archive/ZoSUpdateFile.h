// ZoSUpdateFile: one accepted file entry of the archive.
#pragma once

#include <cstdint>

#include "libZoComposite/ZoCString.h"
#include "libZoCompositeFactory/ZoCVersion.h"
#include "libZoJsonLib/ZoNJson.h"

namespace ZoNUpdateArchive {

// A checksum or another value of 32 bits that is not available.
constexpr std::uint32_t notAvailable = 0xFFFFFFFE;

// How an update file replaces what is installed.
enum class UpdateMode : std::uint32_t {
    standard = 0,  // replaced when the file's version or checksum differs
    upgrade = 1    // only an older version is replaced
};

// What the assignment reads and writes of each file comes first: of many files it takes longer to fetch than to work
// on.
struct ZoSUpdateFile {
    ZoNJson::json jsonEntry;                     // the whole entry as read
    ZoCVersion version;                          // of the content; empty when not known
    std::uint32_t sequence = 0;                  // files with a smaller number are installed first
    std::uint32_t checksumCrc32 = notAvailable;  // of the content, as the file's header states it
    UpdateMode mode = UpdateMode::standard;
    std::uint32_t assignedElementCount = 0;  // elements that the assignment has given this file
    bool hasTargetPath = false;              // meant for a file on the flash drive
    bool fileMissing = false;                // found missing or unreadable in the archive's folder
    bool statesChecksum = false;             // the entry states checksumCrc32
    std::uint32_t entry = 0;                 // position in "files" of the description, all entries counted
    ZoCString name;                          // file name, relative to the archive's folder
};

}  // namespace ZoNUpdateArchive
