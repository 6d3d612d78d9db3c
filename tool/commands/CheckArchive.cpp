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

void print(std::ostream& out, const Arguments& arguments, ArchiveFindings& findings)
{
    for (std::size_t i = 0; i < findings.size(); ++i) {
        out << findingText(findings.at(i), arguments.options.descriptionFileName) << '\n';
    }
    out << counted(findings.count(ZoTSeverity::ERROR), "error") << ", "
        << counted(findings.count(ZoTSeverity::WARNING), "warning") << ", "
        << counted(findings.count(ZoTSeverity::NOTE), "note") << '\n';
}

void writeDocument(std::ostream& out, const Arguments& arguments, ArchiveFindings& findings)
{
    DocumentWriter writer(out, arguments.command->name);
    writer.list("findings", static_cast<unsigned>(findings.size()),
                [&](unsigned i) { return findingRecord(findings.at(i)); });
    writer.member("counts", {{"error", findings.count(ZoTSeverity::ERROR)},
                             {"warning", findings.count(ZoTSeverity::WARNING)},
                             {"note", findings.count(ZoTSeverity::NOTE)}});
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
        throw NoMemoryForFile(path);
    }
    // Not before: the library has needed the most memory when it read the description itself.
    const auto description = readWholeFile(path);
    if (!description) {
        return refuse(arguments, streams, path, std::strerror(errno));
    }
    ArchiveFindings findings(session.inspector(), read, *description);
    if (arguments.json) {
        writeDocument(streams.out, arguments, findings);
    } else {
        print(streams.out, arguments, findings);
    }
    const bool isRefused = findings.count(ZoTSeverity::ERROR) != 0;
    return isRefused || (arguments.strict && findings.count(ZoTSeverity::WARNING) != 0) ? FAILURE : SUCCESS;
}

}  // namespace TrellanTool
