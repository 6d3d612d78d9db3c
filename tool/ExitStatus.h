// What the tool's process ends with.
#pragma once

namespace TrellanTool {

enum ExitStatus {
    SUCCESS = 0,             // the command succeeded
    FAILURE = 1,             // it failed, or errors were reported
    WRONG_USAGE = 2,         // the command line is not understood; nothing was done
    NOT_READ = 3,            // the archive or the target's inventory cannot be read
    NOT_SUPPORTED = 4,       // the archive does not support the target; nothing was updated
    NOTHING_SELECTED = 5,    // the filters select no element; nothing was updated
    REFUSED = 6,             // the check before an update found errors, or a plan does not hold; nothing was updated
    STALLED = 8,             // the update made no progress, and was given up
    UPDATES_AVAILABLE = 10,  // in place of SUCCESS, where asked for: there is something to update
    ENDED_BY_SIGNAL = 128,   // and the number of the signal that has ended an update
};

}  // namespace TrellanTool
