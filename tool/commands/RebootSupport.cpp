#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/commands/Actions.h"
#include "tool/commands/LibrarySession.h"
#include "tool/documents/Document.h"

namespace TrellanTool {

int tellRebootSupport(const Arguments& arguments, const Streams& streams)
{
    LibrarySession session(arguments, arguments.json ? streams.err : streams.out);
    if (const int status = session.apply(streams.err); status != SUCCESS) {
        if (arguments.json) {
            writeErrorDocument(streams.out, *arguments.command, {status, session.refusal()});
        }
        return status;
    }
    unsigned state = 0;
    const bool supported = session.updater().checkRebootSupport(state);
    if (arguments.json) {
        writeRebootDocument(streams.out, *arguments.command, supported, state);
    }
    return supported ? SUCCESS : FAILURE;
}

}  // namespace TrellanTool
