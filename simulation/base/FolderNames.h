// What is in a folder. The standard library's iterators end the process when memory is short; this throws.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace TrellanSimulation {

struct FolderNames {
    std::vector<std::string> names;  // in no order, without "." and ".."
    int error = 0;                   // an errno when the folder could not be read, or not to its end
};

FolderNames namesInFolder(const std::filesystem::path& folder);

}  // namespace TrellanSimulation
