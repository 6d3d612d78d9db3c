// The command that prints a description with its checksums filled in, into a file where that is asked for.
#include <ostream>

#include "tool/ExitStatus.h"
#include "tool/OutputFile.h"
#include "tool/Streams.h"
#include "tool/TextStream.h"
#include "tool/arguments/Arguments.h"
#include "tool/commands/Actions.h"
#include "tool/commands/LibrarySession.h"
#include "tool/commands/WrittenFiles.h"

namespace TrellanTool {

int describeArchive(const Arguments& arguments, const Streams& streams)
{
    if (!arguments.outputFile) {
        return runInLibrary(arguments, streams);
    }
    LibrarySession session(arguments, streams.err);
    if (const int status = session.apply(streams.err); status != SUCCESS) {
        return status;
    }
    keepFromWriting(arguments, session.inspector());
    TextStream description;
    session.redirect(description);
    const bool successful = session.updater().run() == 1;
    session.redirect(streams.err);
    if (!successful) {
        streams.err << description.str();
        return FAILURE;
    }
    writeOutputFile(*arguments.outputFile, [&](std::ostream& file) { file << description.str(); });
    return SUCCESS;
}

}  // namespace TrellanTool
