// The command that checks an archive, whatever the target.
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>
#include <ostream>

#include "json/Json.h"
#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/TextFile.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/commands/Actions.h"
#include "tool/commands/LibrarySession.h"
#include "tool/documents/ArchiveFindings.h"
#include "tool/documents/Document.h"
#include "tool/documents/DocumentWriter.h"
#include "tool/update/CheckProgress.h"

namespace TrellanTool {

namespace {

using ZoNTrellanInspector::ZoTSeverity;

struct Counts {
    explicit Counts(const std::vector<Finding>& findings)
        : errors(countFindings(findings, ZoTSeverity::ERROR)),
          warnings(countFindings(findings, ZoTSeverity::WARNING)),
          notes(countFindings(findings, ZoTSeverity::NOTE))
    {
    }

    const std::size_t errors, warnings, notes;
};

void print(std::ostream& out, const Arguments& arguments, const std::vector<Finding>& findings, const Counts& counts)
{
    for (const Finding& finding : findings) {
        out << findingText(finding, arguments.options.descriptionFileName) << '\n';
    }
    out << counted(counts.errors, "error") << ", " << counted(counts.warnings, "warning") << ", "
        << counted(counts.notes, "note") << '\n';
}

void writeDocument(std::ostream& out, const Arguments& arguments, const std::vector<Finding>& findings,
                   const Counts& counts)
{
    DocumentWriter writer(out, arguments.command->name);
    writer.list("findings", static_cast<unsigned>(findings.size()),
                [&](unsigned i) { return findingRecord(findings[i]); });
    writer.member("counts", {{"error", counts.errors}, {"warning", counts.warnings}, {"note", counts.notes}});
    writer.end();
}

// Nothing where there is no such file that has an end, with the reason in `reason`.
std::optional<std::string> readDescription(const std::string& path, std::string& reason)
{
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (std::filesystem::is_other(status)) {
        reason = "it is no regular file";
        return std::nullopt;
    }
    std::optional<std::string> description = readWholeFile(path);
    if (!description) {
        reason = std::strerror(errno);
    }
    return description;
}

int refuse(const Arguments& arguments, const Streams& streams, const std::string& message)
{
    say(streams.err, message);
    if (arguments.json) {
        writeErrorDocument(streams.out, *arguments.command, {NOT_READ, message});
    }
    return NOT_READ;
}

}  // namespace

int checkArchive(const Arguments& arguments, const Streams& streams)
{
    const std::string path = arguments.options.archivePath + "/" + arguments.options.descriptionFileName;
    std::string reason;
    const auto description = readDescription(path, reason);
    if (!description) {
        return refuse(arguments, streams, "cannot open the archive description " + path + ": " + reason);
    }
    LibrarySession session(arguments, streams.err);
    std::vector<Finding> findings;
    {
        CheckProgress progress(streams.err, ::isatty(STDERR_FILENO) == 1, CheckProgress::Clock::now());
        findings = archiveFindings(session.inspector(), *description, CheckProgress::take, &progress);
    }
    const Counts counts(findings);
    if (arguments.json) {
        writeDocument(streams.out, arguments, findings, counts);
    } else {
        print(streams.out, arguments, findings, counts);
    }
    return counts.errors != 0 || (arguments.strict && counts.warnings != 0) ? FAILURE : SUCCESS;
}

}  // namespace TrellanTool
