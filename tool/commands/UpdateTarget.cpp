// The command that updates the target.
#include <ostream>

#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/commands/Actions.h"
#include "tool/commands/LibrarySession.h"
#include "tool/commands/TellDryRun.h"
#include "tool/documents/Document.h"
#include "tool/documents/UpdateDocument.h"
#include "tool/update/Preparation.h"

namespace TrellanTool {

int updateTarget(const Arguments& arguments, const Streams& streams)
{
    LibrarySession session(arguments, arguments.json ? streams.err : streams.out);
    Preparation preparation(arguments, session);
    int status = preparation.prepare(streams.err);
    if (arguments.dryRun) {
        return tellDryRun(arguments, preparation, status, streams);
    }
    const DocumentError error = {status, preparation.refusal()};
    const bool isRefused = status != SUCCESS;
    if (!isRefused && session.updater().run() != 1) {
        status = FAILURE;
    }
    if (arguments.json && status == NOT_READ) {
        writeErrorDocument(streams.out, *arguments.command, error);
    } else if (arguments.json) {
        writeUpdateDocument(streams.out, session.updater(), session.inspector(),
                            {preparation.findings(), isRefused ? &error : nullptr});
    }
    return status;
}

}  // namespace TrellanTool
