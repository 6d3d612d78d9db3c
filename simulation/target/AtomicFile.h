// Replacing a file as a whole.
#pragma once

#include <filesystem>
#include <string_view>

namespace TrellanSimulation {

// Puts `content` in the place of the existing file at `path`, which keeps its mode: at every moment, also after a
// crash, the path names either the old file or the complete new one. Throws std::system_error when that is not
// possible; the old file is then unchanged.
void replaceFile(const std::filesystem::path& path, std::string_view content);

}  // namespace TrellanSimulation
