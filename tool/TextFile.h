// Files that are read whole.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>

namespace TrellanTool {

// Memory does not suffice for a file, which what() names. That says nothing of the file: a run ends with 1 for it, like
// one for which memory does not suffice anywhere else.
class NoMemoryForFile : public std::runtime_error {
public:
    explicit NoMemoryForFile(const std::string& path);
};

// The content of the file; nothing where it cannot be read, errno tells why then. Throws NoMemoryForFile.
std::optional<std::string> readWholeFile(const std::string& path);

}  // namespace TrellanTool
