// The command that holds an archive against many targets. The archive is read here, once; the targets in child
// processes, which have the archive from this one: the environment names the target, and a flash drive belongs to a
// process.
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <system_error>

#include "tool/ExitStatus.h"
#include "tool/OutputBuffer.h"
#include "tool/OutputFile.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/arguments/Path.h"
#include "tool/commands/Actions.h"
#include "tool/commands/LibrarySession.h"
#include "tool/commands/TargetFilters.h"
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

// What the command line asks for, for a command of the library.
Arguments forCommand(const Arguments& asked, const char* name)
{
    Arguments arguments = asked;
    arguments.command = &commandNamed(name);
    arguments.options.command = arguments.command->code;
    return arguments;
}

Arguments forArchiveAlone(const Arguments& asked)
{
    Arguments arguments = forCommand(asked, "archive-version");
    arguments.excluded.clear();
    return arguments;
}

// The lines of what the tool has said, without its name and from the first semicolon on: what differs from target to
// target stands there.
std::vector<std::string> sayingsIn(const std::string& text)
{
    constexpr std::string_view own = "trellan-update: ";
    std::vector<std::string> sayings;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        line.erase(0, line.starts_with(own) ? own.size() : 0);
        sayings.push_back(line.substr(0, line.find(';')));
    }
    return sayings;
}

class TargetReading {
public:
    TargetReading(const Arguments& asked, LibrarySession& session) : asked(asked), session(session) {}

    // Reads the target file; nothing where this process may be the reason why that is not what it would be in a new
    // one. For a process that ends with it: its standard error is silenced, and the session's text is lost.
    std::optional<TargetReport> read(const std::string& path, bool isFirst)
    {
        std::cerr.rdbuf(nullptr);  // the platform tells there what is told of each target anyway
        std::error_code unknown;
        const auto file = std::filesystem::weakly_canonical(path, unknown);
        if (!isFirst && file == last) {
            return std::nullopt;  // a simulated target goes on in its script
        }
        last = file;
        if (::setenv("TRELLAN_TARGET", path.c_str(), 1) != 0) {
            throw std::system_error(errno, std::generic_category(), "TRELLAN_TARGET");
        }
        std::ostringstream text;
        session.redirect(text);
        ZoITrellanInspector& inspector = session.inspector();
        if (inspector.readTarget() == 1) {
            if (!isFirst) {
                return std::nullopt;  // the flash drive of an earlier target may hide this one
            }
            TargetReport report;
            report.error = errorsOf(inspector);
            return report;
        }
        TargetFilters filters(asked.options);
        filters.note(session.updater(), inspector);
        TargetReport report;
        if (asked.noCheck || filters.areOff() || filters.areExplained()) {
            std::vector<std::string> complaints = exclude();
            report = reportOf(inspector);
            report.complaints = std::move(complaints);
        } else {
            report = readAsDisplayed(path);
        }
        noteErrors(report, inspector);
        noteText(report, text.str());
        return report;
    }

private:
    static std::string errorsOf(ZoITrellanInspector& inspector)
    {
        std::string text;
        for (unsigned i = 0; i < inspector.getTargetErrorCount(); ++i) {
            text += (text.empty() ? "" : "; ") + inspector.getTargetError(i).text;
        }
        return text.empty() ? "its inventory cannot be read" : text;
    }

    static void noteErrors(TargetReport& report, ZoITrellanInspector& inspector)
    {
        for (unsigned i = 0; i < inspector.getTargetErrorCount(); ++i) {
            report.notes.push_back("ERROR: " + inspector.getTargetError(i).text);
        }
    }

    static void noteText(TargetReport& report, const std::string& text)
    {
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("WARNING: ")) {
                report.notes.push_back(line);
            }
        }
    }

    std::vector<std::string> exclude()
    {
        std::vector<std::string> complaints;
        for (const std::uint32_t index : asked.excluded) {
            if (index >= session.inspector().getElementCount()) {
                complaints.push_back("warning: there is no element " + std::to_string(index) + " to exclude");
            }
            session.updater().disableUpdateElement(index);
        }
        return complaints;
    }

    // The filters mean other elements than the library takes them for, or nothing.
    TargetReport readAsDisplayed(const std::string& path) const
    {
        Arguments arguments = forCommand(asked, "compare");
        arguments.targetFile = path;
        std::ostringstream text;
        std::ostringstream said;
        LibrarySession understanding(arguments, text);
        TargetReport report;
        if (understanding.apply(said) == SUCCESS) {
            report = reportOf(understanding.inspector());
        } else {
            report.error = understanding.refusal();
        }
        report.complaints = sayingsIn(said.str());
        return report;
    }

    const Arguments& asked;
    LibrarySession& session;
    std::filesystem::path last;  // the target that was read last
};

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
        targets = targetsNamed(asked.operands);
        notes.resize(targets.size());
        std::vector<std::string> names;
        for (const NamedTarget& target : targets) {
            names.push_back(target.name);
        }
        Coverage coverage(names, session.inspector(), asked.json || asked.htmlFile.has_value());
        readTargets(coverage);
        tell(coverage);
        return coverage.readTargets() == targets.size() ? SUCCESS : FAILURE;
    }

private:
    LastWords wordsAt(int signal) const
    {
        const std::string text = std::string("ended by ") + signalName(signal) + " while the targets were read";
        std::ostringstream document;
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
        if (asked.htmlFile) {
            writeOutputFile(*asked.htmlFile, [&](std::ostream& out) { writeCoveragePage(out, coverage); });
        }
        if (asked.json) {
            DocumentWriter writer(streams.out, asked.command->name);
            writeCoverage(writer, coverage);
        } else {
            writeCoverageText(streams.out, coverage);
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
