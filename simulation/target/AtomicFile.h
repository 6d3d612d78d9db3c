// Replacing a file as a whole.
#pragma once

#include <filesystem>
#include <string_view>

namespace TrellanSimulation {

// Puts `content` in the place of the existing file at `path` (absolute), which keeps its mode, and its owner and group
// where this process may give files away: at every moment, also after a crash, the path names either the old file or
// the complete new one. Throws std::system_error when that is not possible; the old file is then unchanged. A failure
// to sync the folder is the exception: the new file is in its place, but the machine may still come back with the old
// one after a crash. A file system that syncs no folders by themselves is no failure.
//
// The new file is first a temporary one beside it, of the same name with a "." and drawTemporaryEnding() behind.
void replaceFile(const std::filesystem::path& path, std::string_view content);

// Removes the temporary files that processes have left which ended while they were replacing the file at `path`
// (absolute). Only for who knows that nobody is replacing it. What cannot be removed stays.
void removeLeftOvers(const std::filesystem::path& path);

}  // namespace TrellanSimulation
