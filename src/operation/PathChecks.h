// What is refused as a path of a file on the flash drive.
#pragma once

#include <string_view>

// True when `path`, relative to a folder, leads out of it through "..".
bool leavesFolder(std::string_view path);

// True when a shell takes every character of `path` literally: no blanks, no control characters, none with a meaning of
// its own.
bool isLiteralForShell(std::string_view path);
