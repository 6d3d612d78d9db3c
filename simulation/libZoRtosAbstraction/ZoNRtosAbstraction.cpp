#include "libZoRtosAbstraction/ZoNRtosAbstraction.h"

#include <unistd.h>

#include "simulation/base/Clock.h"
#include "simulation/base/Trace.h"
#include "simulation/libZoRtosAbstraction/FlushAll.h"

using TrellanSimulation::TraceRecord;

namespace {

// The operating system gives no way to end fsync early, so a single file is waited for as long as it takes.
bool flushFile(std::FILE* file)
{
    return std::fflush(file) == 0 && fsync(fileno(file)) == 0;
}

// With virtual time the media of the machine play no part, and hundreds of simulated updates in a row must not wait for
// them: what the process has buffered is handed to the operating system, no more.
bool flushAll(unsigned timeout)
{
    const bool handedOver = std::fflush(nullptr) == 0;
    if (TrellanSimulation::clockKind() == TrellanSimulation::ClockKind::virtualTime) {
        return handedOver;
    }
    return flushAllFileSystems(timeout) && handedOver;
}

}  // namespace

void ZoNRtosAbstraction::usleep(unsigned microseconds)
{
    TrellanSimulation::traceCall([&] { return TraceRecord{{"call", "usleep"}, {"microseconds", microseconds}}; });
    TrellanSimulation::sleep(microseconds);
}

int ZoNRtosAbstraction::syncFileSystem(std::FILE* file, unsigned timeout)
{
    const int result = (file == nullptr ? flushAll(timeout) : flushFile(file)) ? 0 : -1;
    TrellanSimulation::traceCall([&] {
        return TraceRecord{{"call", "syncFileSystem"}, {"timeout", timeout}, {"result", result}};
    });
    return result;
}
