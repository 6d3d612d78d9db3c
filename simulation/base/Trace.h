// The trace: a file to which each traced call of the platform appends one line of JSON.
#pragma once

#include <new>

#include "json/Json.h"

namespace TrellanSimulation {

// A traced call: "call", then its arguments, results and number of errors, in this order.
using TraceRecord = TrellanJson::ordered_json;

// Appends `record` to the file that the environment variable TRELLAN_TRACE names at this moment; does nothing when it
// is unset or empty. The file stays open until another one is named or it is removed, so that it is found although
// mounts cover its folder. The first fault with a name is told on standard error, also that it is the file which
// TRELLAN_TARGET names, which is never written to; nothing is ever waited for.
void trace(const TraceRecord& record);

// The same; but while no target is named, `record` waits for the next one, or for the end of the process: what is
// traced while libraries are loaded must not reach a file of which the host says later that it is the target.
void traceWhenTargetIsNamed(const TraceRecord& record);

// Whether a file is named at this moment.
bool isTraced();

// Tells on standard error that memory is too short for a record, as a fault of the trace.
void tellShortMemory() noexcept;

// Traces the record that `make` gives; without a trace nobody asks for it. A record for which memory is too short is
// missing from the trace and changes nothing else: libraries trace while they are loaded and unloaded, too.
template <class Make>
void traceCall(Make&& make, void (*traceRecord)(const TraceRecord&) = trace)
{
    try {
        if (isTraced()) {
            traceRecord(make());
        }
    } catch (const std::bad_alloc&) {
        tellShortMemory();
    }
}

// Opens the file now: before its folder is covered.
void openTrace();

}  // namespace TrellanSimulation
