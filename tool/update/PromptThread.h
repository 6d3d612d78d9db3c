// Threads that must not wait for others to make room.
#pragma once

namespace TrellanTool {

// From now on the calling thread, which does little, runs as soon as it has something to do, as far as the machine
// allows it: before all ordinary threads where the process may ask for that, otherwise soon after it was woken.
void runPromptly();

}  // namespace TrellanTool
