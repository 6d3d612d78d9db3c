// Writing past all buffers, also for what is said on another thread or in a signal's handler.
#pragma once

#include <string_view>

namespace TrellanTool {

// Writes the text to the file descriptor, and waits until it is taken. False, with errno, when not all of it is: a
// terminal or a reader that is gone, a full medium. May be called in a signal's handler.
bool writeRaw(int descriptor, std::string_view text) noexcept;

// What is said where the command's result gets lost.
inline constexpr std::string_view outputLost = "standard output cannot be written";

// Writes the text to standard output, or says that it cannot be. May be called in a signal's handler.
void writeLastOutput(std::string_view text) noexcept;

}  // namespace TrellanTool
