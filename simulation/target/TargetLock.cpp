// An advisory lock on an open file that the programs started meanwhile inherit.
#include "simulation/target/TargetLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <stdexcept>
#include <string>

#include "simulation/base/Resources.h"
#include "simulation/target/SystemFault.h"

namespace TrellanSimulation {

namespace {

// For reading, since that is all a lock needs: another user may have left the file. Without O_NONBLOCK, opening a pipe
// would wait for a writer.
FileDescriptor openLockFile(const std::string& name)
{
    FileDescriptor file(checkSystem(::open(name.c_str(), O_RDONLY | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666),
                                    "its lock file cannot be opened: open " + name));
    struct stat status = {};
    checkSystem(::fstat(file.get(), &status), "stat " + name);
    if (!S_ISREG(status.st_mode)) {
        throw std::runtime_error("its lock file " + name + " is no regular file, remove it");
    }
    return file;
}

// The same open file for the programs, too, that this process starts, beyond their standard streams.
FileDescriptor makeInheritable(const FileDescriptor& file)
{
    constexpr int afterStandardStreams = 3;
    return FileDescriptor(
        checkSystem(::fcntl(file.get(), F_DUPFD, afterStandardStreams), "its lock file cannot be passed on: fcntl"));
}

}  // namespace

std::unique_ptr<TargetLock> TargetLock::acquire(const std::filesystem::path& path)
{
    const std::string name = path.string() + ".lock";
    const FileDescriptor file = openLockFile(name);
    if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0) {
        return std::unique_ptr<TargetLock>(new TargetLock(makeInheritable(file)));
    }
    if (errno != EWOULDBLOCK) {
        throwSystemFault("its lock file cannot be locked: lock " + name);
    }
    return nullptr;
}

TargetLock::TargetLock(FileDescriptor file) : file(std::move(file))
{
    ++resources().locks;
}

TargetLock::~TargetLock()
{
    --resources().locks;
}

}  // namespace TrellanSimulation
