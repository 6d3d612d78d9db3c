// The command-line tool from its arguments to its exit status.
#pragma once

#include <iosfwd>

namespace TrellanTool {

// What the process ends with.
enum ExitStatus {
    SUCCESS = 0,        // the command succeeded
    FAILURE = 1,        // it failed, or errors were reported
    WRONG_USAGE = 2,    // the command line is not understood; nothing was done
    NOT_READ = 3,       // the archive or the target's inventory cannot be read
    NOT_SUPPORTED = 4,  // the archive does not support the target; nothing was updated
};

// Carries out the command line `argv` (argv[0] is passed over) and returns an ExitStatus. Help and JSON documents go to
// `out`, what the tool itself has to complain about to `err`. The library's text goes to the process's standard output;
// to its standard error where a JSON document is asked for. Sets TRELLAN_TARGET and TRELLAN_TRACE when --target and
// --trace are given. A success whose output cannot be written is a FAILURE. Throws nothing that derives from
// std::exception.
int run(int argc, const char* const* argv, std::ostream& out, std::ostream& err);

}  // namespace TrellanTool
