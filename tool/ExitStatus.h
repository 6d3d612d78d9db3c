// What the tool's process ends with.
#pragma once

namespace TrellanTool {

enum ExitStatus {
    SUCCESS = 0,        // the command succeeded
    FAILURE = 1,        // it failed, or errors were reported
    WRONG_USAGE = 2,    // the command line is not understood; nothing was done
    NOT_READ = 3,       // the archive or the target's inventory cannot be read
    NOT_SUPPORTED = 4,  // the archive does not support the target; nothing was updated
};

}  // namespace TrellanTool
