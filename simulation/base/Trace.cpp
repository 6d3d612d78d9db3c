#include "simulation/base/Trace.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace TrellanSimulation {

void trace(const TraceRecord& record)
{
    const char* path = std::getenv("TRELLAN_TRACE");
    if (path == nullptr || *path == '\0')
        return;
    // Texts come from files and may hold anything; a trace with a replacement character is better than none.
    const std::string line = record.dump(-1, ' ', false, TraceRecord::error_handler_t::replace) + '\n';
    const int file = open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    if (file < 0)
        return;
    // One write for each line, so that lines of several processes never mix. A trace that cannot be written must not
    // change what the traced program does.
    [[maybe_unused]] const ssize_t written = write(file, line.data(), line.size());
    close(file);
}

}  // namespace TrellanSimulation
