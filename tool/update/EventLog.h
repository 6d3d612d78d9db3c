// The events of an update, each a line of JSON: {"time", "run", "event", ...}, with
//
//   start     "archive": {"path", "version"}, "target", "elements": [{"index", "name", "from", "to"}]
//   phase     "phase"
//   progress  "phase", "percent", "overall"
//   failure   "element", "name"
//   message   "text"
//   signal    "signal"
//   result    "status", "result", "elements": as in start, with "state" and "errors"
//
// "result" is "success" (exit status 0), "failed" (1), "refused" (3 to 6: nothing was done), "stalled" (8) or
// "interrupted" (ended by a signal).
//
// "time" is in UTC with milliseconds, "run" the same in all lines of a run and in no other run's. Bytes that are not
// UTF-8 are replaced by U+FFFD.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "json/JsonForward.h"
#include "tool/update/EventFile.h"
#include "tool/update/UpdateElement.h"

namespace TrellanTool {

class EventLog {
public:
    // Takes what the tool has to say, one line without a line end.
    using Say = std::function<void(const std::string&)>;

    // Appends to the file `path`; without one no event goes anywhere. Where events cannot be written, that is said
    // once.
    EventLog(const std::optional<std::string>& path, Say say);

    // Whether there is a file: events of all elements need not be made for none.
    bool isOn() const { return file.has_value(); }

    // Notes for the beginning of the update: `elements` are those to update, in the order of their indices. The target
    // is the file that was named, by the command line or the environment, where one was.
    void prepareStart(const std::string& archivePath, const std::string& archiveVersion,
                      const std::optional<std::string>& target, std::vector<UpdateElement> elements);
    // The update begins: what was noted is written, by the first of these calls alone. Before this no other event is
    // written. The second one may be called on any thread; it says nothing itself.
    void start();
    void begin() noexcept;

    // A phase begins.
    void phase(unsigned number);
    // The phase has come to `percent`; written where that is not what the last such event said.
    void progress(unsigned percent);
    // The update of the element with this index has failed or was cancelled.
    void failure(std::uint32_t index);
    // A line that was printed.
    void message(const std::string& text);
    // The signal of this name, such as "SIGINT", has come. May be called on any thread; says nothing itself.
    void signal(const char* name) noexcept;
    // The update has ended with this exit status, and the elements as they are now. May be called on any thread; says
    // nothing itself.
    void result(int status, const TrellanJson::ordered_json& elements) noexcept;

    // Why events could not be written, once; empty when they could, or it has been said.
    std::string takeFault();

private:
    // `members` makes what the event tells beside time, run and name. Where memory is too short for that, or for the
    // line, the event is lost, and a fault of the file.
    template <class Members>
    void write(const char* event, Members members, bool toMedium);
    template <class Members>
    void append(const char* event, Members members, bool toMedium) noexcept;
    template <class Members>
    void appendLine(const char* event, Members members, bool toMedium) noexcept;
    void sayFault();
    std::string lineOf(const char* event, const TrellanJson::ordered_json& members) const;
    unsigned overall(unsigned percent) const;

    const Say say;
    const std::string run;
    std::vector<UpdateElement> elements;
    std::vector<unsigned> phases;  // of the elements, in ascending order
    std::string archivePath, archiveVersion;
    std::optional<std::string> target;
    std::mutex startMutex;  // held while the start is written: no other event comes before it
    std::atomic<bool> started = false;
    unsigned currentPhase = 0;
    std::optional<unsigned> lastPercent;

    std::mutex mutex;  // guards `file`
    std::optional<EventFile> file;
};

}  // namespace TrellanTool
