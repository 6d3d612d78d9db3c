// The traced calls as lines of JSON, made only while a trace is named, and the file that they go to.
#include "simulation/base/Trace.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "simulation/base/FileDescriptor.h"
#include "simulation/base/StandardError.h"
#include "simulation/base/Uninterrupted.h"

namespace TrellanSimulation {

namespace {

// Also where neither is there yet, or one is reached through links.
bool namesSameFile(const std::filesystem::path& left, const std::filesystem::path& right)
{
    std::error_code fault;
    const bool same = std::filesystem::equivalent(left, right, fault);
    if (!fault) {
        return same;
    }
    const auto leftPlace = std::filesystem::weakly_canonical(left, fault);
    return !fault && leftPlace == std::filesystem::weakly_canonical(right, fault) && !fault;
}

class TraceFile {
public:
    // Opens the file at `name` unless that is the one that is open already and was not removed. False when it cannot be
    // opened, or is the file that is the target, which a trace would spoil.
    bool open(const std::string& name, const char* target)
    {
        if (path != name) {
            path = name;
            file = FileDescriptor();
            faultWasTold = false;
        }
        if (target != nullptr && namesSameFile(name, target)) {
            tellFault("it is the target file");
            return false;
        }
        if (!isThere()) {
            // Without O_NONBLOCK a pipe that nobody reads would be waited for.
            constexpr int flags = O_WRONLY | O_CREAT | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
            file = FileDescriptor(uninterrupted([&] { return ::open(name.c_str(), flags, 0666); }));
            if (!file.isOpen()) {
                tellFault(std::generic_category().message(errno));
            }
        }
        return file.isOpen();
    }

    // In one write, so that lines of several processes do not mix; what a full medium or pipe leaves over is tried once
    // more, to learn the reason.
    void write(std::string_view line)
    {
        while (!line.empty()) {
            const ssize_t written = uninterrupted([&] { return ::write(file.get(), line.data(), line.size()); });
            if (written < 0) {
                tellFault(std::generic_category().message(errno));
                return;
            }
            line.remove_prefix(static_cast<std::size_t>(written));
        }
    }

    // Once for each name: a trace that cannot be written must not change what the traced program does.
    void tellFault(const std::string& reason)
    {
        if (!faultWasTold) {
            tellOnStandardError("WARNING: cannot write the trace " + path + ": " + reason);
        }
        faultWasTold = true;
    }

private:
    bool isThere() const
    {
        struct stat status = {};
        return file.isOpen() && ::fstat(file.get(), &status) == 0 && status.st_nlink != 0;
    }

    std::string path;
    FileDescriptor file;
    bool faultWasTold = false;
};

// Of the library, not of a function: the platform's libraries still trace while the process ends or they are unloaded,
// and this one outlives them.
TraceFile traceFile;

const char* targetName()
{
    return std::getenv("TRELLAN_TARGET");
}

bool openNamed(const std::string& name)
{
    return traceFile.open(name, targetName());
}

std::string lineOf(const TraceRecord& record)
{
    // Texts come from files and may hold anything; a trace with a replacement character is better than none.
    return record.dump(-1, ' ', false, TraceRecord::error_handler_t::replace) + '\n';
}

// The records that wait for a target to be named, and the name of the trace then.
class WaitingRecords {
public:
    ~WaitingRecords()
    {
        try {
            write();
        } catch (const std::bad_alloc&) {
            tellShortMemory();
        }
    }

    void add(const std::string& toName, const std::string& line)
    {
        if (name != toName) {
            write();
        }
        name = toName;
        lines += line;
    }

    void write()
    {
        if (!lines.empty() && openNamed(name)) {
            traceFile.write(lines);
        }
        lines.clear();
    }

private:
    std::string name;
    std::string lines;
};

WaitingRecords waitingRecords;

const char* traceName()
{
    const char* name = std::getenv("TRELLAN_TRACE");
    return name == nullptr || *name == '\0' ? nullptr : name;
}

}  // namespace

void trace(const TraceRecord& record)
{
    waitingRecords.write();
    const char* name = traceName();
    if (name != nullptr && openNamed(name)) {
        traceFile.write(lineOf(record));
    }
}

void traceWhenTargetIsNamed(const TraceRecord& record)
{
    const char* name = traceName();
    if (name != nullptr && targetName() == nullptr) {
        waitingRecords.add(name, lineOf(record));
    } else {
        trace(record);
    }
}

void tellShortMemory() noexcept
{
    try {
        traceFile.tellFault(std::generic_category().message(ENOMEM));
    } catch (const std::bad_alloc&) {
        // not even for these words
    }
}

bool isTraced()
{
    return traceName() != nullptr;
}

void openTrace()
{
    if (const char* name = traceName()) {
        openNamed(name);
    }
}

}  // namespace TrellanSimulation
