// A description to begin with.
#pragma once

#include <string>
#include <vector>

#include "json/JsonForward.h"
#include "tool/documents/NewEntries.h"

namespace TrellanTool {

// What the description says of its archive.
struct NewInfo {
    std::string archiveName;
    std::string productName;
};

// A description with these entries, which the library reads without any update file: each names a file that is still to
// come, in a way that no two do and none as `taken`, states the installed version, and 0 for the checksum.
TrellanJson::ordered_json newDescription(const NewInfo& info, const std::vector<NewEntry>& entries,
                                         const std::string& taken);

}  // namespace TrellanTool
