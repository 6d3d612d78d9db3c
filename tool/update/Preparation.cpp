// The steps in their order, each of which may end the update with a status of its own.
#include "tool/update/Preparation.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/TextFile.h"
#include "tool/arguments/Arguments.h"
#include "tool/update/CheckProgress.h"
#include "tool/update/Plan.h"

namespace TrellanTool {

namespace {

using ZoNTrellanInspector::ZoTSeverity;

}  // namespace

Preparation::Preparation(const Arguments& arguments, LibrarySession& session) : arguments(arguments), session(session)
{
}

int Preparation::prepare(std::ostream& err)
{
    const int applied = session.apply(err);
    said = session.refusal();
    if (applied == NOT_READ) {
        return applied;
    }
    const std::string path = arguments.options.archivePath + "/" + arguments.options.descriptionFileName;
    std::optional<std::string> text = readWholeFile(path);
    if (!text) {
        complain(err, "cannot open the archive description " + path + ": " + std::generic_category().message(errno));
        return NOT_READ;
    }
    description = *std::move(text);
    if (applied != SUCCESS) {
        return applied;
    }
    if (!arguments.noCheck && !check(err)) {
        return REFUSED;
    }
    if (arguments.planFile && !planHolds(err)) {
        return REFUSED;
    }
    return SUCCESS;
}

// False when there are errors.
bool Preparation::check(std::ostream& err)
{
    {
        CheckProgress progress(err, ::isatty(STDERR_FILENO) == 1, CheckProgress::Clock::now());
        session.inspector().checkUsedFiles(CheckProgress::take, &progress);
    }
    found = findingsOf(session.inspector(), description);
    const std::size_t errors = countFindings(found, ZoTSeverity::ERROR);
    for (const Finding& finding : found) {
        const std::string text = findingText(finding, arguments.options.descriptionFileName);
        if (errors != 0) {
            complain(err, text);
        } else if (finding.severity == ZoTSeverity::WARNING) {
            say(err, text);
        }
    }
    if (errors != 0) {
        complain(err, "the check found " + counted(errors, "error") + "; nothing was done");
    }
    return errors == 0;
}

bool Preparation::planHolds(std::ostream& err)
{
    try {
        const std::vector<std::string> differences = Plan(*arguments.planFile).differences(dryRun());
        for (const std::string& difference : differences) {
            complain(err, difference);
        }
        if (!differences.empty()) {
            complain(err, "the plan no longer holds; nothing was done");
        }
        return differences.empty();
    } catch (const PlanError& error) {
        complain(err, error.what() + std::string("; nothing was done"));
        return false;
    }
}

DryRun Preparation::dryRun() const
{
    return DryRun(arguments, session.updater(), session.inspector(), description);
}

void Preparation::complain(std::ostream& err, const std::string& text)
{
    say(err, text);
    said += (said.empty() ? "" : "\n") + text;
}

}  // namespace TrellanTool
