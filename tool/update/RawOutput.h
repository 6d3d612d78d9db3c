// Writing past all buffers, for what is said on another thread or in a signal's handler.
#pragma once

#include <string>

namespace TrellanTool {

// Writes the text to the file descriptor, as far as it takes it. May be called in a signal's handler.
void writeRaw(int descriptor, const std::string& text) noexcept;

}  // namespace TrellanTool
