// The command that writes the target's inventory down.
#include <ostream>

#include "tool/ExitStatus.h"
#include "tool/OutputFile.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/commands/Actions.h"
#include "tool/commands/LibrarySession.h"
#include "tool/documents/TargetDocument.h"

namespace TrellanTool {

namespace {

// Returns whether there was any.
bool sayScanErrors(ZoITrellanInspector& inspector, std::ostream& err)
{
    for (unsigned i = 0; i < inspector.getScanErrorCount(); ++i) {
        say(err, inspector.getScanError(i).text);
    }
    return inspector.getScanErrorCount() > 0;
}

bool sayOmissions(ZoITrellanInspector& inspector, std::ostream& err)
{
    for (unsigned i = 0; i < inspector.getOmissionCount(); ++i) {
        const ZoNTrellanInspector::ZoTOmission& omission = inspector.getOmission(i);
        say(err, omissionText(omission.item, omission.parameter, omission.reason));
    }
    return inspector.getOmissionCount() > 0;
}

std::vector<std::string> writeRecord(const Arguments& arguments, ZoITrellanInspector& inspector, std::ostream& out)
{
    if (!arguments.outputFile) {
        return writeTargetDocument(out, inspector);
    }
    std::vector<std::string> omissions;
    writeOutputFile(*arguments.outputFile,
                    [&](std::ostream& file) { omissions = writeTargetDocument(file, inspector); });
    return omissions;
}

}  // namespace

int recordTarget(const Arguments& arguments, const Streams& streams)
{
    LibrarySession session(arguments, streams.err);
    ZoITrellanInspector& inspector = session.inspector();
    const bool recorded = inspector.recordInventory();
    const bool reported = sayScanErrors(inspector, streams.err);
    if (!recorded) {
        if (!reported) {
            say(streams.err, "the target's inventory cannot be read");
        }
        return NOT_READ;
    }
    const bool omitted = sayOmissions(inspector, streams.err);
    if (inspector.getRecordedItemCount() == 0) {
        return FAILURE;
    }
    const std::vector<std::string> omissions = writeRecord(arguments, inspector, streams.out);
    for (const std::string& omission : omissions) {
        say(streams.err, omission);
    }
    if (arguments.options.verbose) {
        say(streams.err, std::to_string(inspector.getRecordedItemCount()) + " items recorded");
    }
    return reported || omitted || !omissions.empty() ? FAILURE : SUCCESS;
}

}  // namespace TrellanTool
