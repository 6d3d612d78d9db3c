// The command-line tool from its arguments to its exit status.
#pragma once

#include <iosfwd>

namespace TrellanTool {

// What is said where memory is too short.
inline constexpr const char* noMemory = "there is not enough memory for this";

// Carries out the command line `argv` (argv[0] is passed over) and returns an ExitStatus. What a command prints goes to
// `out`, and what the tool itself has to say to `err`; both are flushed at the end. Sets TRELLAN_TARGET and
// TRELLAN_TRACE when --target and --trace are given. A success whose output cannot be written is a FAILURE. Throws
// only where memory is too short to say what has failed.
int run(int argc, const char* const* argv, std::ostream& out, std::ostream& err);

}  // namespace TrellanTool
