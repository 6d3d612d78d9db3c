// The command that checks an archive, whatever the target.
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <new>
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

using ZoNTrellanInspector::ZoTDescription;
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

// Something that has no end is nothing to be read.
bool isEndless(const std::string& path)
{
    std::error_code error;
    return std::filesystem::is_other(std::filesystem::status(path, error));
}

int refuse(const Arguments& arguments, const Streams& streams, const std::string& path, const char* reason)
{
    const std::string message = "cannot open the archive description " + path + ": " + reason;
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
    if (isEndless(path)) {
        return refuse(arguments, streams, path, "it is no regular file");
    }
    LibrarySession session(arguments, streams.err);
    ZoTDescription read{};
    try {
        CheckProgress progress(streams.err, ::isatty(STDERR_FILENO) == 1, CheckProgress::Clock::now());
        read = session.inspector().checkArchive(CheckProgress::take, &progress);
    } catch (const std::bad_alloc&) {
        return refuse(arguments, streams, path, std::strerror(ENOMEM));
    }
    // Not before: the library has needed the most memory when it read the description itself.
    const auto description = readWholeFile(path);
    if (!description) {
        return refuse(arguments, streams, path, std::strerror(errno));
    }
    const std::vector<Finding> findings = archiveFindings(session.inspector(), read, *description);
    const Counts counts(findings);
    if (arguments.json) {
        writeDocument(streams.out, arguments, findings, counts);
    } else {
        print(streams.out, arguments, findings, counts);
    }
    return counts.errors != 0 || (arguments.strict && counts.warnings != 0) ? FAILURE : SUCCESS;
}

}  // namespace TrellanTool
