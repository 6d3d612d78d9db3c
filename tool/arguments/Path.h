// Paths on the command line.
#pragma once

#include <string>

namespace TrellanTool {

// The path that `path` means where the tool was started; `what` names the option or operand. Throws UsageError for an
// empty path, and std::runtime_error for a relative one where there is no working folder.
std::string absolutePath(const std::string& what, const std::string& path);

}  // namespace TrellanTool
