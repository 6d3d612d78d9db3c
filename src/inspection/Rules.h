// The rules of the check of an archive, by what they look at. Each adds what it finds to the check.
#pragma once

#include <cstdint>
#include <functional>

namespace ZoNUpdateInspection {

class Check;

// Is given how many bytes of how many have been read.
using ReadProgress = std::function<void(std::uint64_t read, std::uint64_t all)>;

// The update files in the archive's folder: missing-file, not-a-file, empty-file, checksum. A file is read once,
// whatever number of entries names it, and only as far as is needed.
void checkContents(Check& check, const ReadProgress& progress);

// The names of the update files: outside-archive, shell-character, control-character.
void checkNames(Check& check);

// The paths that files get on the flash drive: path-escape, shell-character, control-character.
void checkTargetPaths(Check& check);

// The same paths against one another: path-collision, at the later one.
void checkPathCollisions(Check& check);

}  // namespace ZoNUpdateInspection
