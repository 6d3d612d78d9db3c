#include "tool/arguments/ExitMeanings.h"

#include "tool/ExitStatus.h"
#include "tool/arguments/Command.h"

namespace TrellanTool {

namespace {

struct Row {
    unsigned traits;  // of the commands that may end so
    ExitMeaning exit;
};

// What 1 means differs from command to command, and stands in the table of commands.
const std::vector<Row>& rows()
{
    static const std::vector<Row> table = {
        {EVERYTHING, {{SUCCESS}, "success"}},
        {EVERYTHING, {{FAILURE}, failedOrReported}},
        {EVERYTHING, {{WRONG_USAGE}, "wrong usage"}},
        {ARCHIVE | TARGET | CHECKS, {{NOT_READ}, "the archive or the target's inventory cannot be read"}},
        {UPDATES, {{NOT_SUPPORTED}, "the archive does not support the target"}},
        {UPDATES, {{NOTHING_SELECTED}, "the filters select no element; nothing was done"}},
        {UPDATES, {{REFUSED}, "the check found errors, or a plan does not hold; nothing was done"}},
        {UPDATES, {{STALLED}, "no progress for the time of --stall-timeout; the target was unlocked"}},
        {TELLS, {{UPDATES_AVAILABLE}, "with --detailed-exit-status, in place of 0: there is something to update"}},
        {UPDATES | COVERS, {{129, 130, 143}, "ended by SIGHUP, SIGINT, SIGTERM; no target stays locked"}},
    };
    return table;
}

}  // namespace

std::vector<ExitMeaning> exitMeanings(const Command* command)
{
    std::vector<ExitMeaning> meanings;
    for (const Row& row : rows()) {
        if (command == nullptr || row.traits == EVERYTHING || command->has(row.traits)) {
            meanings.push_back(row.exit);
        }
        if (command != nullptr && row.exit.statuses.front() == FAILURE) {
            meanings.back().meaning = command->failure;
        }
    }
    return meanings;
}

}  // namespace TrellanTool
