// An update from the lock to its end: what the library reports is passed on, and what stops it is minded.
#pragma once

#include <iosfwd>
#include <optional>

#include "ZoITrellanUpdater.h"
#include "tool/update/EventLog.h"
#include "tool/update/SignalWatch.h"
#include "tool/update/StallWatch.h"
#include "tool/update/TenthLines.h"

class ZoITrellanInspector;

namespace TrellanTool {

// How an update ended.
struct UpdateEnd {
    enum Way {
        BY_ITSELF,    // it went through all of its phases, or failed before
        INTERRUPTED,  // a signal stopped it between two phases
        STALLED,      // it was given up in a phase that made no progress
    };
    Way way = BY_ITSELF;
    bool successful = false;        // that it ended by itself, and without any error
    std::optional<unsigned> phase;  // the last one that has begun
    unsigned percent = 0;           // to which that phase has come, as was last reported
};

class UpdateCourse {
public:
    // Reports go to `log`, and as lines for each phase and tenth to `lines`, null for none. The update is stopped at
    // the beginning of a phase when a signal has come to `watch`, and in a phase that makes no progress for
    // `stallTimeout` seconds. All that is passed must outlive the course. One at a time.
    UpdateCourse(EventLog& log, SignalWatch& watch, std::ostream* lines, std::optional<double> stallTimeout);
    ~UpdateCourse();
    UpdateCourse(const UpdateCourse&) = delete;
    UpdateCourse& operator=(const UpdateCourse&) = delete;

    // Has `updater`, which was applied and which `inspector` looks into, update the target; its phase, failure and
    // progress callbacks are used for that. Until the target is locked, the patience of `watch` is called upon: when
    // that ends, so must the process. The target is unlocked when this returns, or throws what a report has thrown.
    UpdateEnd run(ZoITrellanUpdater& updater, ZoITrellanInspector& inspector);

private:
    struct Stop {};

    void beginPhase(unsigned number);
    void report(unsigned percent);

    static UpdateCourse* current;  // the library's callbacks take nothing that could tell

    EventLog& log;
    SignalWatch& watch;
    std::ostream* const lines;
    std::optional<StallWatch> stallWatch;
    TenthLines tenthLines;
    UpdateEnd end;
    ZoITrellanInspector* looking = nullptr;
};

}  // namespace TrellanTool
