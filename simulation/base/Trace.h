// The trace: a file to which each traced call of the platform appends one line of JSON.
#pragma once

#include <nlohmann/json.hpp>

namespace TrellanSimulation {

// A traced call: "call", then its arguments, results and number of errors, in this order.
using TraceRecord = nlohmann::ordered_json;

// Appends `record` to the file that the environment variable TRELLAN_TRACE names at this moment; does nothing when it
// is unset or empty.
void trace(const TraceRecord& record);

}  // namespace TrellanSimulation
