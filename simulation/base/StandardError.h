// What the simulated platform says on standard error.
#pragma once

#include <string>

namespace TrellanSimulation {

// Writes `text` and a line end at once, through std::cerr: a host may have put a buffer of its own there. Also while
// libraries are loaded or unloaded.
void tellOnStandardError(const std::string& text);

}  // namespace TrellanSimulation
