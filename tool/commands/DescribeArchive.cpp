// The command that prints a description with its checksums filled in, into a file where that is asked for.
#include <ostream>

#include "tool/ExitStatus.h"
#include "tool/OutputFile.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/commands/Actions.h"
#include "tool/commands/LibrarySession.h"
#include "tool/commands/WrittenFiles.h"

namespace TrellanTool {

namespace {

// Keeps the file from being replaced.
struct NotDescribed {};

}  // namespace

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
    try {
        writeOutputFile(*arguments.outputFile, [&](std::ostream& file) {
            session.redirect(file);
            const bool successful = session.updater().run() == 1;
            session.redirect(streams.err);
            if (!successful) {
                throw NotDescribed();
            }
        });
    } catch (const NotDescribed&) {
        session.updater().run();  // says it again where it can be read
        return FAILURE;
    }
    return SUCCESS;
}

}  // namespace TrellanTool
