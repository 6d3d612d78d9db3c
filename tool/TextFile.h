// Files that are read whole.
#pragma once

#include <optional>
#include <string>

namespace TrellanTool {

// The content of the file; nothing where it cannot be read, errno tells why then: ENOMEM where memory does not suffice.
std::optional<std::string> readWholeFile(const std::string& path);

}  // namespace TrellanTool
