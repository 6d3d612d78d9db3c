// What is said of the characters of names and paths.
#pragma once

#include <string>

namespace ZoNUpdateInspection {

class Check;
struct Place;

// Reports control-character when `text`, which is at `place`, has one: the first of them.
void checkControlCharacters(Check& check, const Place& place, const std::string& text);

// Reports shell-character when `path` is none that the command takes that copies files to the flash drive. `text` is
// the part of it that stands at `place`.
void checkShellCharacters(Check& check, const Place& place, const std::string& text, const std::string& path);

}  // namespace ZoNUpdateInspection
