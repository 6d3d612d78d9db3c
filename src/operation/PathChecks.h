// What is refused in the paths of a file that is copied to the flash drive.
#pragma once

#include <string>
#include <string_view>

// True when `path` ends in a name, and not in "/", "." or "..", which name a folder; it is not empty either.
bool namesFile(std::string_view path);

// True when `path`, relative to `folder`, leads out of it through "..": by its components alone, or because a component
// before a ".." is a symbolic link, whose parent folder may be anywhere.
bool leavesFolder(const std::string& folder, const std::string& path);

// True when a shell takes every character of `path` literally wherever it stands: no blanks, no control characters,
// none that some shell treats specially somewhere in a word.
bool isLiteralForShell(std::string_view path);
