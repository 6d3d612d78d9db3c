// The targets that a command line names.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace TrellanTool {

struct NamedTarget {
    std::string name;                  // as given, or the given folder and the file's name
    std::optional<std::string> error;  // why there is no target behind the name; otherwise it may be read
};

// The target files that the words name, in their order; a folder stands for the files in it whose names end with
// ".json", by name. What is no folder is taken for a target file, whether it is one or not.
std::vector<NamedTarget> targetsNamed(const std::vector<std::string>& words);

}  // namespace TrellanTool
