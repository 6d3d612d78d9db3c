// The target file that a recorded inventory makes.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "ZoITrellanInspector.h"

namespace TrellanTool {

// Writes what `inspector` has recorded, which is not nothing, as a target file. Returns what it leaves out, a line for
// each: texts that are not UTF-8.
std::vector<std::string> writeTargetDocument(std::ostream& out, ZoITrellanInspector& inspector);

// The line for what is left out: a parameter of an item or, with an empty `parameter`, the item.
std::string omissionText(const std::string& item, const std::string& parameter, const std::string& reason);

// The text as a JSON string; nothing where it is not UTF-8.
std::optional<std::string> jsonString(const std::string& text);

}  // namespace TrellanTool
