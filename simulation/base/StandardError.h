// What the simulated platform says on standard error.
#pragma once

#include <string>

namespace TrellanSimulation {

// Writes `text` and a line end at once, through std::cerr: a host may have put a buffer of its own there. Where none
// has and standard error is a terminal, control characters are shown as \xNN. Also while libraries are loaded or
// unloaded.
void tellOnStandardError(const std::string& text);

}  // namespace TrellanSimulation
