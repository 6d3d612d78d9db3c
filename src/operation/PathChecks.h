// What is refused in the paths of a file that is copied to the flash drive.
#pragma once

#include <string>
#include <string_view>

// Where the flash drive is.
inline constexpr std::string_view driveRoot = "/mnt/cn/cfdrive";

bool isSymbolicLink(const std::string& path);

// True when `path` ends in a name, and not in "/", "." or "..", which name a folder; it is not empty either.
bool namesFile(std::string_view path);

// True when `path`, relative to some folder, leads out of it through "..", by its components alone.
bool leavesFolder(const std::string& path);

// The same for `folder`, and also true when a component before a ".." is a symbolic link, whose parent folder may be
// anywhere.
bool leavesFolder(const std::string& folder, const std::string& path);

// True when `location` names a file on the flash drive, as far as that can be told: it does not leave the drive.
bool isOnDrive(const std::string& location);

// `path` from its folder on, beginning with "/", without components that do not count; empty when it leaves the folder
// or names no file.
std::string normalisedPath(const std::string& path);

// True when a folder on the way to `location`, which is on the drive, is a symbolic link to somewhere else. A link that
// leads to nothing is none: nothing can be written behind it.
bool followsLinkOutOfDrive(const std::string& location);

// True when a shell takes every character of `path` literally wherever it stands: no blanks, no control characters,
// none that some shell treats specially somewhere in a word.
bool isLiteralForShell(std::string_view path);

// True when the command that copies files takes `path` for a path: it is literal, and does not begin like an option.
bool isLiteralPath(std::string_view path);
