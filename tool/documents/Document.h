// The JSON documents: what the library's lists say, for programs to read. docs/trellan-update.schema.json describes
// them.
#pragma once

#include <string>

#include "ZoITrellanUpdater.h"

namespace TrellanTool {

// The document of the command `name`, which has the code `command`: PRINT_ARCHIVE, INSTALLED_VERSIONS, READ_INVENTORY
// or COMPARE_VERSIONS. `updater` has applied it successfully. Ends with a line end; bytes from the target or the
// archive that are not UTF-8 are replaced by U+FFFD.
std::string document(ZoITrellanUpdater& updater, const std::string& name, std::uint32_t command);

}  // namespace TrellanTool
