// The library's callbacks, which stop an update by throwing at the beginning of a phase or when it stalls.
#include "tool/update/UpdateCourse.h"

#include <unistd.h>

#include <algorithm>
#include <ostream>

#include "ZoITrellanInspector.h"

namespace TrellanTool {

namespace {

constexpr unsigned endOfPhases = 0xFFFFFFFF;

bool isAnyRunning(ZoITrellanInspector& inspector)
{
    for (unsigned i = 0; i < inspector.getElementCount(); ++i) {
        if (inspector.getElement(i).state == ZoNTrellanInspector::ZoTState::RUNNING) {
            return true;
        }
    }
    return false;
}

}  // namespace

UpdateCourse* UpdateCourse::current = nullptr;

UpdateCourse::UpdateCourse(EventLog& log, SignalWatch& watch, std::ostream* lines, std::optional<double> stallTimeout)
    : log(log), watch(watch), lines(lines)
{
    if (stallTimeout) {
        stallWatch.emplace(std::chrono::duration<double>(*stallTimeout));
    }
    current = this;
}

UpdateCourse::~UpdateCourse()
{
    current = nullptr;
}

UpdateEnd UpdateCourse::run(ZoITrellanUpdater& updater, ZoITrellanInspector& inspector)
{
    looking = &inspector;
    updater.setPhaseCallBack([](unsigned number) { current->beginPhase(number); });
    updater.setFailureCallBack([](unsigned element) { current->log.failure(element); });
    updater.setProgressCallBack([](unsigned percent) { current->report(percent); });
    try {
        end.successful = updater.run() == 1;
    } catch (const Stop&) {  // the library has unlocked the target
    }
    while (!watch.endPatience()) {
        ::pause();  // the watch's listener is ending the process
    }
    updater.setPhaseCallBack(nullptr);
    updater.setFailureCallBack(nullptr);
    updater.setProgressCallBack(nullptr);
    return end;
}

void UpdateCourse::beginPhase(unsigned number)
{
    if (!watch.endPatience()) {
        throw Stop();  // the lock has come too late
    }
    if (number == endOfPhases) {
        return;
    }
    if (watch.firstSignal() != 0) {
        end.way = UpdateEnd::INTERRUPTED;
        throw Stop();
    }
    end.phase = number;
    end.percent = 0;
    log.phase(number);
    tenthLines.beginPhase(number);
    if (stallWatch) {
        stallWatch->beginPhase();
    }
}

void UpdateCourse::report(unsigned percent)
{
    const unsigned told = std::min(percent, 100U);  // a target may say that more is done than there is to do
    end.percent = told;
    log.progress(told);
    if (lines != nullptr) {
        *lines << tenthLines.report(told) << std::flush;
    }
    // The last report of a phase repeats the one before, when all is done.
    if (stallWatch && stallWatch->report(percent, StallWatch::Clock::now()) && isAnyRunning(*looking)) {
        end.way = UpdateEnd::STALLED;
        throw Stop();
    }
}

}  // namespace TrellanTool
