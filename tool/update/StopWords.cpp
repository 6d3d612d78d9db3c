#include "tool/update/StopWords.h"

#include <cstdio>

#include "tool/update/StopSignals.h"

namespace TrellanTool {

namespace {

std::string asSeconds(double seconds)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.10g s", seconds);
    return text;
}

}  // namespace

std::string signalsNotWatched(const std::string& reason)
{
    return "the signals cannot be watched: " + reason + "; nothing was done";
}

std::string endedBeforeLock(int signal)
{
    return std::string("ended by ") + signalName(signal) + " before the target was locked; nothing was done";
}

std::string waitingForPhase(int signal, bool again)
{
    const std::string name = signalName(signal);
    if (!again) {
        return name + ": nothing more is started, and a phase that is running is waited for";
    }
    return name +
           ": the running phase is still waited for; an update that waits for the target's lock, or for a phase "
           "that never ends, is ended by --stall-timeout or SIGKILL";
}

std::string stoppedBefore(unsigned phase, int signal)
{
    return std::string("stopped by ") + signalName(signal) + " before phase " + std::to_string(phase);
}

std::string cameInLastPhase(int signal)
{
    return std::string(signalName(signal)) + " came in the last phase; nothing was left to stop";
}

std::string lockWaitedForInVain(double seconds)
{
    return "the target could not be locked within " + asSeconds(seconds) + "; nothing was done";
}

std::string noProgress(double seconds, unsigned phase, unsigned percent)
{
    return "no progress for " + asSeconds(seconds) + ": phase " + std::to_string(phase) + " stays at " +
           std::to_string(percent) + "%; the update is given up";
}

}  // namespace TrellanTool
