// Trees of files that tests copy from the sources.
#pragma once

#include <filesystem>

// Copies the file or folder `source` with everything in it to `copy`, a path or an existing folder of that content. The
// owner may write all of the copy, also where the sources may only be read.
void copyTree(const std::filesystem::path& source, const std::filesystem::path& copy);
