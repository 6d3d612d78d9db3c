// Whether an update has done what it says: the target, scanned again, held against the update files.
#pragma once

#include <iosfwd>
#include <optional>
#include <vector>

#include "json/Json.h"
#include "tool/commands/LibrarySession.h"

namespace TrellanTool {

struct Verification {
    // For each element whether the target has its file's content; nothing where it was not updated, or where that
    // cannot be told.
    std::vector<std::optional<bool>> verified;
    bool successful = true;  // the target could be scanned, and no element has other content than its file
    std::vector<TrellanJson::ordered_json> errors;  // why the target could not be scanned, as documents tell errors
};

// Scans the target again after the update of `session`, and compares. What does not agree, and what cannot be told, is
// said on `err`.
Verification verifyUpdate(LibrarySession& session, std::ostream& err);

}  // namespace TrellanTool
