// The commands that the library carries out and that read, with their documents.
#include <ostream>

#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/TextStream.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/commands/Actions.h"
#include "tool/commands/LibrarySession.h"
#include "tool/documents/Document.h"

namespace TrellanTool {

namespace {

// Whether what the command prints is its document's content, too.
bool printsItsDocument(const Command& command)
{
    return !command.has(ELEMENTS) && command.code != ZoNTrellanUpdater::PRINT_ARCHIVE;
}

// Carries the command out, and writes its document to `streams.out`. Tables are not kept: they may be long.
bool runWithDocument(LibrarySession& session, const Command& command, const Streams& streams)
{
    TextStream printed;
    session.redirect(printsItsDocument(command) ? printed : streams.err);
    const bool successful = session.updater().run() == 1;
    session.redirect(streams.err);
    streams.err << printed.str();
    writeDocument(streams.out, command, session.updater(), session.inspector(), printed.str());
    return successful;
}

bool wouldUpdate(ZoITrellanInspector& inspector)
{
    for (unsigned i = 0; i < inspector.getElementCount(); ++i) {
        if (inspector.getElement(i).state == ZoNTrellanInspector::ZoTState::UPDATE) {
            return true;
        }
    }
    return false;
}

}  // namespace

int runInLibrary(const Arguments& arguments, const Streams& streams)
{
    const Command& command = *arguments.command;
    LibrarySession session(arguments, arguments.json ? streams.err : streams.out);
    if (const int status = session.apply(streams.err); status != SUCCESS) {
        if (arguments.json) {
            writeErrorDocument(streams.out, command, {status, session.refusal()});
        }
        return status;
    }
    const bool successful = arguments.json ? runWithDocument(session, command, streams) : session.updater().run() == 1;
    if (!successful) {
        return FAILURE;
    }
    return arguments.detailedExitStatus && wouldUpdate(session.inspector()) ? UPDATES_AVAILABLE : SUCCESS;
}

}  // namespace TrellanTool
