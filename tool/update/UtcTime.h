// Points of time as texts.
#pragma once

#include <chrono>
#include <string>

namespace TrellanTool {

// The time in UTC with milliseconds, as "2024-02-29T23:59:59.007Z".
std::string utcText(std::chrono::system_clock::time_point time);

}  // namespace TrellanTool
