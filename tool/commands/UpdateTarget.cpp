// The command that updates the target.
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <map>
#include <optional>
#include <system_error>

#include "json/Json.h"
#include "json/TerminalText.h"
#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/TextStream.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/commands/Actions.h"
#include "tool/commands/LibrarySession.h"
#include "tool/commands/TellDryRun.h"
#include "tool/commands/WrittenFiles.h"
#include "tool/documents/Document.h"
#include "tool/documents/UpdateDocument.h"
#include "tool/update/EventLog.h"
#include "tool/update/ImmediateEnd.h"
#include "tool/update/LineTap.h"
#include "tool/update/Preparation.h"
#include "tool/update/RawOutput.h"
#include "tool/update/SignalWatch.h"
#include "tool/update/StopSignals.h"
#include "tool/update/StopWords.h"
#include "tool/update/UpdateCourse.h"
#include "tool/update/UpdateElement.h"
#include "tool/update/Verification.h"

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;

// Progress that is to be printed as lines is not printed by the library.
bool printsTenthLines(const Arguments& arguments)
{
    return arguments.progress == Progress::AUTO && ::isatty(arguments.json ? STDERR_FILENO : STDOUT_FILENO) != 1;
}

Arguments forLibrary(const Arguments& asked)
{
    Arguments arguments = asked;
    arguments.options.noProgress |= printsTenthLines(asked);
    return arguments;
}

std::string shownOn(int descriptor, const std::string& text)
{
    return ::isatty(descriptor) == 1 ? TrellanJson::withControlCharactersShown(text) : text;
}

// Words that are written past all buffers: an error, and its document or nothing.
LastWords lastWords(const std::string& error, const std::string& document)
{
    return {shownOn(STDERR_FILENO, "trellan-update: " + error + "\n"), shownOn(STDOUT_FILENO, document)};
}

// One run of the command, from reading archive and target to the exit status.
class TargetUpdate {
public:
    TargetUpdate(const Arguments& asked, const Streams& streams)
        : arguments(forLibrary(asked)),
          printsLines(printsTenthLines(asked)),
          streams(streams),
          log(arguments.dryRun ? std::nullopt : arguments.eventsFile,
              [&streams](const std::string& text) { say(streams.err, text); }),
          out(streams.out, [this](const std::string& line) { log.message(line); }),
          err(streams.err, [this](const std::string& line) { log.message(line); }),
          signals(stopSignals()),
          immediateEnd(std::in_place, signals, [this](int signal) { return wordsBeforeLock(signal); }),
          session(arguments, text()),
          preparation(arguments, session)
    {
    }

    int run()
    {
        try {
            const int prepared = preparation.prepare(err.stream());
            keepFromWriting(arguments, session.inspector());
            if (arguments.dryRun) {
                endWithoutDocument();
                return tellDryRun(arguments, preparation, prepared, streams);
            }
            return prepared == SUCCESS ? update() : refuse(prepared);
        } catch (...) {
            ignoreSignals(signals);
            log.result(FAILURE, outcomesOf(elements, session.inspector()));
            throw;
        }
    }

private:
    std::ostream& text() { return arguments.json ? err.stream() : out.stream(); }

    LastWords wordsBeforeLock(int signal) const
    {
        const std::string error = endedBeforeLock(signal);
        TextStream document;
        if (arguments.json) {
            writeErrorDocument(document, *arguments.command, {ENDED_BY_SIGNAL + signal, error});
        }
        return lastWords(error, document.str());
    }

    // For the time in which another document is being written.
    void endWithoutDocument()
    {
        immediateEnd.emplace(signals, [](int signal) { return lastWords(endedBeforeLock(signal), ""); });
    }

    int refuse(int status)
    {
        ignoreSignals(signals);
        prepareStart(status != NOT_READ);
        log.start();
        log.message(preparation.refusal());
        said = preparation.refusal();
        return finish(status);
    }

    int update()
    {
        elements = elementsToUpdate(session.updater(), session.inspector());
        if (arguments.verify) {
            verification.emplace().verified.resize(
                session.inspector().getElementCount());  // until there is another scan
        }
        prepareStart(true);
        prepareSignalWords();
        prepareLockTimeout();
        std::optional<SignalWatch> watch;
        try {
            watch.emplace(signals, listener(), stallTimeout());
        } catch (const std::system_error& fault) {
            log.start();
            return giveUp(FAILURE, signalsNotWatched(fault.code().message()));
        }
        log.start();
        if (const int signal = watch->firstSignal(); signal != 0) {
            return giveUp(ENDED_BY_SIGNAL + signal, endedBeforeLock(signal));
        }
        UpdateCourse course(log, *watch, printsLines ? &text() : nullptr, arguments.stallTimeout);
        // From the lock on an update may be held up by whoever reads what is printed.
        session.beforeEachText([&watch] { watch->endPatience(); });
        const UpdateEnd end = course.run(session.updater(), session.inspector());
        session.beforeEachText(nullptr);
        return finish(statusOf(end, watch->firstSignal()));
    }

    // Before the target is locked.
    int giveUp(int status, const std::string& reason)
    {
        isGivenUp = true;
        tell(reason);
        return finish(status);
    }

    std::optional<std::chrono::duration<double>> stallTimeout() const
    {
        return arguments.stallTimeout ? std::optional(std::chrono::duration<double>(*arguments.stallTimeout))
                                      : std::nullopt;
    }

    // What the watching thread says of a signal: it must not fail, as making a text can.
    void prepareSignalWords()
    {
        for (const int signal : signals) {
            for (const bool again : {false, true}) {
                signalWords[signal][again] = "trellan-update: " + waitingForPhase(signal, again) + "\n";
            }
        }
    }

    // What that thread says when the lock is waited for in vain: it must not ask the library either.
    void prepareLockTimeout()
    {
        if (!arguments.stallTimeout) {
            return;
        }
        const DocumentError error = {STALLED, lockWaitedForInVain(*arguments.stallTimeout)};
        TextStream document;
        if (arguments.json) {
            writeUpdateDocument(document, session.updater(), session.inspector(),
                                {preparation.findings(), &error, true, verified(), nullptr});
        }
        lockTimeoutWords = lastWords(error.message, document.str());
        lockTimeoutOutcomes = outcomesOf(elements, session.inspector());
        noneStarted(lockTimeoutOutcomes);
    }

    static void noneStarted(ordered_json& outcomes)
    {
        for (ordered_json& element : outcomes) {
            element["state"] = "notStarted";
        }
    }

    SignalWatch::Listener listener()
    {
        return {[this](int signal, bool again) noexcept {
                    writeRaw(STDERR_FILENO, signalWords.find(signal)->second[again]);
                    log.signal(signalName(signal));
                },
                [this]() noexcept {
                    // Nothing is locked yet, and who waits for a lock cannot be called back.
                    log.begin();
                    writeRaw(STDERR_FILENO, lockTimeoutWords.errors);
                    writeLastOutput(lockTimeoutWords.output);
                    log.result(STALLED, lockTimeoutOutcomes);
                    writeFaultOfLog();
                    ::_exit(STALLED);
                }};
    }

    // Past all buffers.
    void writeFaultOfLog() noexcept
    {
        try {
            if (const std::string fault = log.takeFault(); !fault.empty()) {
                writeRaw(STDERR_FILENO, shownOn(STDERR_FILENO, "trellan-update: " + fault + "\n"));
            }
        } catch (...) {
            writeRaw(STDERR_FILENO, "trellan-update: events cannot be written\n");  // memory is short
        }
    }

    void prepareStart(bool isRead)
    {
        std::string name, version, productName, formatVersion, variant;
        if (isRead) {
            session.updater().getArchiveInfo(name, version, productName, formatVersion, variant);
        }
        const char* const target = ::getenv("TRELLAN_TARGET");  // the session has put there what --target names
        log.prepareStart(arguments.options.archivePath, version,
                         target == nullptr ? std::nullopt : std::optional<std::string>(target), elements);
    }

    int statusOf(const UpdateEnd& end, int signal)
    {
        switch (end.way) {
            case UpdateEnd::INTERRUPTED:
                tell(stoppedBefore(end.phase ? *end.phase + 1 : 0, signal));
                tell(accountOf(elements, session.inspector()));
                return ENDED_BY_SIGNAL + signal;
            case UpdateEnd::STALLED:
                tell(noProgress(*arguments.stallTimeout, end.phase.value_or(0), end.percent));
                tell(accountOf(elements, session.inspector()));
                return STALLED;
            default:
                if (signal != 0 && end.phase) {
                    say(err.stream(), cameInLastPhase(signal));
                }
                return afterVerification(end.successful ? SUCCESS : FAILURE);
        }
    }

    // The status of an update that has ended by itself with this one, once it is verified where that is asked for.
    int afterVerification(int status)
    {
        if (!arguments.verify) {
            return status;
        }
        verification = verifyUpdate(session, err.stream());
        return verification->successful ? status : static_cast<int>(FAILURE);
    }

    // Says the text, which tells why the run ends as it does.
    void tell(const std::string& text)
    {
        say(err.stream(), text);
        said += (said.empty() ? "" : "\n") + text;
    }

    int finish(int status)
    {
        if (arguments.json) {
            writeDocument(status);
        }
        if (!log.isOn()) {
            return status;
        }
        if (status == SUCCESS && !arguments.quiet && !streams.out.flush()) {
            status = FAILURE;  // as the run will end
        }
        ordered_json outcomes = outcomesOf(elements, session.inspector());
        if (isGivenUp) {
            noneStarted(outcomes);
        }
        log.result(status, outcomes);
        if (const std::string fault = log.takeFault(); !fault.empty()) {
            say(streams.err, fault);
        }
        return status;
    }

    void writeDocument(int status)
    {
        const DocumentError error = {status, said};
        if (status == NOT_READ) {
            writeErrorDocument(streams.out, *arguments.command, error);
            return;
        }
        const bool isError = isGivenUp || (status != SUCCESS && status != FAILURE);
        writeUpdateDocument(streams.out, session.updater(), session.inspector(),
                            {preparation.findings(), isError ? &error : nullptr, isGivenUp, verified(),
                             verification ? &verification->errors : nullptr});
    }

    const std::vector<std::optional<bool>>* verified() const
    {
        return verification ? &verification->verified : nullptr;
    }

    const Arguments arguments;
    const bool printsLines;
    const Streams streams;
    EventLog log;
    LineTap out;
    LineTap err;
    const std::vector<int> signals;
    std::optional<ImmediateEnd> immediateEnd;
    LibrarySession session;
    Preparation preparation;
    std::vector<UpdateElement> elements;  // to update
    std::string said;                     // why nothing was done, or why the update was stopped
    std::optional<Verification> verification;
    bool isGivenUp = false;                                 // before the target was locked
    std::map<int, std::array<std::string, 2>> signalWords;  // of the first signal, and of those behind it
    LastWords lockTimeoutWords;
    ordered_json lockTimeoutOutcomes;
};

}  // namespace

int updateTarget(const Arguments& arguments, const Streams& streams)
{
    return TargetUpdate(arguments, streams).run();
}

}  // namespace TrellanTool
