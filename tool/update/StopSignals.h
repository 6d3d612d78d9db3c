// The signals that stop an update.
#pragma once

#include <vector>

namespace TrellanTool {

// SIGHUP, SIGINT and SIGTERM, except those that are ignored: who started the tool, as with nohup, wants it so.
std::vector<int> stopSignals();

// Their names, such as "SIGINT".
const char* signalName(int signal);

// From now on the signals do nothing. For the time when it is decided what the process ends with.
void ignoreSignals(const std::vector<int>& signals);

}  // namespace TrellanTool
