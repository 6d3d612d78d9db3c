// The commands that the library carries out, with their documents.
#include <ostream>

#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/commands/Actions.h"
#include "tool/commands/LibrarySession.h"
#include "tool/documents/Document.h"

namespace TrellanTool {

int runInLibrary(const Arguments& arguments, const Streams& streams)
{
    LibrarySession session(arguments, arguments.json ? streams.err : streams.out);
    if (const int status = session.apply(streams.err); status != SUCCESS) {
        return status;
    }
    const bool successful = session.updater().run() == 1;
    if (arguments.json) {
        streams.out << document(session.updater(), arguments.command->name, arguments.command->code);
    }
    return successful ? SUCCESS : FAILURE;
}

}  // namespace TrellanTool
