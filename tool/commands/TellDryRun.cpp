#include "tool/commands/TellDryRun.h"

#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/documents/Document.h"
#include "tool/update/Preparation.h"

namespace TrellanTool {

int tellDryRun(const Arguments& arguments, const Preparation& preparation, int status, const Streams& streams)
{
    const DocumentError error = {status, preparation.refusal()};
    if (status == NOT_READ) {
        if (arguments.json) {
            writeErrorDocument(streams.out, *arguments.command, error);
        }
        return status;
    }
    const DryRun dryRun = preparation.dryRun();
    if (arguments.json) {
        dryRun.writeDocument(streams.out, preparation.findings(), status == SUCCESS ? nullptr : &error);
    } else {
        dryRun.writeText(streams.out);
    }
    return status == SUCCESS && arguments.detailedExitStatus && dryRun.wouldUpdate() ? UPDATES_AVAILABLE : status;
}

}  // namespace TrellanTool
