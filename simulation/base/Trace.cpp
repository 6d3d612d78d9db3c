// The traced calls as lines of JSON, made only while a trace is named, and the file that they go to.
#include "simulation/base/Trace.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <system_error>

#include "simulation/base/FileDescriptor.h"

namespace TrellanSimulation {

namespace {

class TraceFile {
public:
    // Opens the file at `name` unless that is the one that is open already and was not removed. False when it cannot be
    // opened.
    bool open(const char* name)
    {
        if (path != name) {
            path = name;
            file = FileDescriptor();
            faultWasTold = false;
        }
        if (!isThere()) {
            // Without O_NONBLOCK a pipe that nobody reads would be waited for.
            file =
                FileDescriptor(::open(name, O_WRONLY | O_CREAT | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666));
            if (!file.isOpen()) {
                tellFault();
            }
        }
        return file.isOpen();
    }

    // In one write, so that lines of several processes do not mix; what a full medium or pipe leaves over is tried once
    // more, to learn the reason.
    void write(std::string_view line)
    {
        while (!line.empty()) {
            const ssize_t written = ::write(file.get(), line.data(), line.size());
            if (written < 0) {
                tellFault();
                return;
            }
            line.remove_prefix(static_cast<std::size_t>(written));
        }
    }

private:
    bool isThere() const
    {
        struct stat status = {};
        return file.isOpen() && ::fstat(file.get(), &status) == 0 && status.st_nlink != 0;
    }

    // Once for each name: a trace that cannot be written must not change what the traced program does.
    void tellFault()
    {
        const std::string reason = std::generic_category().message(errno);
        if (!faultWasTold) {
            std::fprintf(stderr, "WARNING: cannot write the trace %s: %s\n", path.c_str(), reason.c_str());
        }
        faultWasTold = true;
    }

    std::string path;
    FileDescriptor file;
    bool faultWasTold = false;
};

// Of the library, not of a function: the platform's libraries still trace while the process ends or they are unloaded,
// and this one outlives them.
TraceFile traceFile;

const char* traceName()
{
    const char* name = std::getenv("TRELLAN_TRACE");
    return name == nullptr || *name == '\0' ? nullptr : name;
}

}  // namespace

void trace(const TraceRecord& record)
{
    const char* name = traceName();
    if (name != nullptr && traceFile.open(name)) {
        // Texts come from files and may hold anything; a trace with a replacement character is better than none.
        traceFile.write(record.dump(-1, ' ', false, TraceRecord::error_handler_t::replace) + '\n');
    }
}

bool isTraced()
{
    return traceName() != nullptr;
}

void openTrace()
{
    if (const char* name = traceName()) {
        traceFile.open(name);
    }
}

}  // namespace TrellanSimulation
