// The command that holds an archive against many targets. The archive is read here, once; the targets in child
// processes, which have the archive from this one: the environment names the target, and a flash drive belongs to a
// process.
#include <unistd.h>

#include <map>
#include <optional>

#include "tool/ExitStatus.h"
#include "tool/OutputFile.h"
#include "tool/Streams.h"
#include "tool/TextStream.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/arguments/Path.h"
#include "tool/commands/Actions.h"
#include "tool/commands/LibrarySession.h"
#include "tool/commands/TargetReading.h"
#include "tool/commands/WrittenFiles.h"
#include "tool/coverage/ChildProcesses.h"
#include "tool/coverage/Coverage.h"
#include "tool/coverage/TargetNames.h"
#include "tool/documents/CoverageDocument.h"
#include "tool/documents/CoveragePage.h"
#include "tool/documents/Document.h"
#include "tool/update/CheckProgress.h"
#include "tool/update/ImmediateEnd.h"
#include "tool/update/StopSignals.h"

namespace TrellanTool {

namespace {

Arguments forArchiveAlone(const Arguments& asked)
{
    Arguments arguments = forCommand(asked, "archive-version");
    arguments.excluded.clear();
    return arguments;
}

class CoverageRun {
public:
    CoverageRun(const Arguments& asked, const Streams& streams)
        : asked(asked),
          archiveArguments(forArchiveAlone(asked)),
          streams(streams),
          session(archiveArguments, streams.err)
    {
    }

    int run()
    {
        if (const int status = session.apply(streams.err); status != SUCCESS) {
            if (asked.json) {
                writeErrorDocument(streams.out, *asked.command, {status, session.refusal()});
            }
            return status;
        }
        keepFromWriting(asked, session.inspector());
        targets = targetsNamed(asked.operands);
        notes.resize(targets.size());
        std::vector<std::string> names;
        for (const NamedTarget& target : targets) {
            names.push_back(target.name);
        }
        Coverage coverage(names, session.inspector(), asked.json || asked.htmlFile.has_value());
        readTargets(coverage);
        tell(coverage);
        return coverage.isWhole() ? SUCCESS : FAILURE;
    }

private:
    LastWords wordsAt(int signal) const
    {
        const std::string text = std::string("ended by ") + signalName(signal) + " while the targets were read";
        TextStream document;
        if (asked.json) {
            writeErrorDocument(document, *asked.command, {ENDED_BY_SIGNAL + signal, text});
        }
        return {"trellan-update: " + text + "\n", document.str()};
    }

    void readTargets(Coverage& coverage)
    {
        std::vector<unsigned> toRead;
        for (unsigned i = 0; i < targets.size(); ++i) {
            if (targets[i].error) {
                coverage.takeUnread(i, *targets[i].error);
            } else {
                toRead.push_back(i);
            }
        }
        const ImmediateEnd end(stopSignals(), [this](int signal) { return wordsAt(signal); });
        CheckProgress progress(streams.err, ::isatty(STDERR_FILENO) == 1, CheckProgress::Clock::now(),
                               "reading the targets");
        unsigned count = 0;
        const auto counted = [&] { progress.report(++count, toRead.size(), CheckProgress::Clock::now()); };
        TargetReading reading(asked, session);
        const auto number = static_cast<unsigned>(toRead.size());
        workInChildren(number, usableProcessors(),
                       {[&](unsigned i, bool isFirst) -> std::optional<std::string> {
                            const auto report = reading.read(absolutePath("TARGET", targets[toRead[i]].name), isFirst);
                            return report ? std::optional(packed(*report)) : std::nullopt;
                        },
                        [&](unsigned i, const std::string& result) {
                            take(coverage, toRead[i], unpacked(result));
                            counted();
                        },
                        [&](unsigned i, const std::string& why) {
                            coverage.takeUnread(toRead[i], why);
                            counted();
                        }});
    }

    void take(Coverage& coverage, unsigned target, const TargetReport& report)
    {
        coverage.take(target, report);
        for (const std::string& complaint : report.complaints) {
            ++complaints[complaint];
        }
        notes[target] = report.notes;
    }

    void tell(const Coverage& coverage)
    {
        for (std::size_t i = 0; i < targets.size(); ++i) {
            if (const auto& error = coverage.targets()[i].error) {
                say(streams.err, targets[i].name + ": " + *error);
            }
            for (const std::string& note : notes[i]) {
                say(streams.err, targets[i].name + ": " + note);
            }
        }
        for (const auto& [complaint, count] : complaints) {
            if (count == coverage.readTargets()) {
                say(streams.err, complaint + " on any target");
            }
        }
        if (asked.json) {
            DocumentWriter writer(streams.out, asked.command->name);
            writeCoverage(writer, coverage);
        } else {
            writeCoverageText(streams.out, coverage);
        }
        if (asked.htmlFile) {
            streams.out.flush();
            writeOutputFile(*asked.htmlFile, [&](std::ostream& out) { writeCoveragePage(out, coverage); });
        }
    }

    const Arguments& asked;
    const Arguments archiveArguments;
    const Streams& streams;
    LibrarySession session;
    std::vector<NamedTarget> targets;
    std::vector<std::vector<std::string>> notes;    // of each target
    std::map<std::string, std::size_t> complaints;  // with the number of targets that have it
};

}  // namespace

int tellCoverage(const Arguments& asked, const Streams& streams)
{
    return CoverageRun(asked, streams).run();
}

}  // namespace TrellanTool
