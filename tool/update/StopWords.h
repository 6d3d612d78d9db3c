// What is said when a signal, or waiting in vain, stops an update or keeps it from beginning; without line ends.
#pragma once

#include <string>

namespace TrellanTool {

// Nothing can be told of signals that come, for this reason: the update is not begun.
std::string signalsNotWatched(const std::string& reason);

// The signal came before the target was locked, and ends the tool.
std::string endedBeforeLock(int signal);

// The signal came while the update runs; `again`: not the first one.
std::string waitingForPhase(int signal, bool again);

// The update was stopped by the signal before the phase with this number.
std::string stoppedBefore(unsigned phase, int signal);

// The signal came when no further phase was left to stop.
std::string cameInLastPhase(int signal);

// For `seconds` nothing was heard of the target's lock.
std::string lockWaitedForInVain(double seconds);

// For `seconds` the phase has stayed at this percentage.
std::string noProgress(double seconds, unsigned phase, unsigned percent);

}  // namespace TrellanTool
