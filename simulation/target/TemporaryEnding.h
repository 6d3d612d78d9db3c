// What the name of a temporary file has behind that of the file which it is to replace, and a ".".
//
// It is six letters and digits, mixed as hardly anybody names a copy: a small letter, and behind the first character a
// capital and one more capital or digit. "backup", "Test01" and "myCopy" are names that users give. So is "9Nov26";
// therefore the last two characters are also a checksum of the first four.
#pragma once

#include <string>
#include <string_view>

namespace TrellanSimulation {

std::string drawTemporaryEnding();

bool isTemporaryEnding(std::string_view ending);

}  // namespace TrellanSimulation
