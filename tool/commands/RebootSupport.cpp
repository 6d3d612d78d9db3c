#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/commands/Actions.h"
#include "tool/commands/LibrarySession.h"

namespace TrellanTool {

int tellRebootSupport(const Arguments& arguments, const Streams& streams)
{
    LibrarySession session(arguments, streams.out);
    if (const int status = session.apply(streams.err); status != SUCCESS) {
        return status;
    }
    unsigned state = 0;
    return session.updater().checkRebootSupport(state) ? SUCCESS : FAILURE;
}

}  // namespace TrellanTool
