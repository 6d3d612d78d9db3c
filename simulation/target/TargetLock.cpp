// An advisory lock on an open file that the programs started meanwhile inherit.
#include "simulation/target/TargetLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <stdexcept>
#include <string>

#include "simulation/base/Resources.h"
#include "simulation/base/Uninterrupted.h"
#include "simulation/target/SystemFault.h"

namespace TrellanSimulation {

namespace {

[[noreturn]] void throwNoRegularFile(const std::string& name)
{
    throw std::runtime_error("its lock file " + name + " is no regular file, remove it");
}

// For reading, since that is all a lock needs: another user may have left the file. Without O_NONBLOCK, opening a pipe
// would wait for a writer; without O_NOFOLLOW, a link would have a file made wherever it leads to.
FileDescriptor openLockFile(const std::string& name)
{
    constexpr int flags = O_RDONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    FileDescriptor file(uninterrupted([&] { return ::open(name.c_str(), flags, 0666); }));
    if (!file.isOpen()) {
        errno == ELOOP ? throwNoRegularFile(name) : throwSystemFault("its lock file cannot be opened: open", name);
    }
    struct stat status = {};
    checkSystem(::fstat(file.get(), &status), "stat", name);
    if (!S_ISREG(status.st_mode)) {
        throwNoRegularFile(name);
    }
    return file;
}

// Not open when the folder may not be read, and so not be locked either.
FileDescriptor openDriveToLock(const std::string& name)
{
    FileDescriptor folder(uninterrupted([&] { return ::open(name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!folder.isOpen() && errno != EACCES) {
        throwSystemFault("its flash drive cannot be locked: open", name);
    }
    return folder;
}

// Locks what is open as `file`, which the user knows as `what`: the same open file for the programs, too, that this
// process starts, beyond their standard streams. Not open when it is locked already.
FileDescriptor lockInheritably(const FileDescriptor& file, const std::string& what)
{
    constexpr int afterStandardStreams = 3;
    if (uninterrupted([&] { return ::flock(file.get(), LOCK_EX | LOCK_NB); }) == 0) {
        return checkSystem(FileDescriptor(::fcntl(file.get(), F_DUPFD, afterStandardStreams)),
                           "its lock cannot be passed on: fcntl");
    }
    if (errno != EWOULDBLOCK) {
        throwSystemFault("its " + what + " cannot be locked: lock");
    }
    return FileDescriptor();
}

}  // namespace

std::unique_ptr<TargetLock> TargetLock::acquire(const std::filesystem::path& path,
                                                const std::optional<std::filesystem::path>& drive)
{
    const std::string name = path.string() + ".lock";
    FileDescriptor file = lockInheritably(openLockFile(name), "lock file " + name);
    if (!file.isOpen()) {
        return nullptr;
    }
    const FileDescriptor folder = drive ? openDriveToLock(*drive) : FileDescriptor();
    FileDescriptor lockedFolder = folder.isOpen() ? lockInheritably(folder, "flash drive") : FileDescriptor();
    if (folder.isOpen() && !lockedFolder.isOpen()) {
        return nullptr;
    }
    return std::unique_ptr<TargetLock>(new TargetLock(std::move(file), std::move(lockedFolder)));
}

TargetLock::TargetLock(FileDescriptor file, FileDescriptor drive) : file(std::move(file)), drive(std::move(drive))
{
    ++resources().locks;
}

TargetLock::~TargetLock()
{
    --resources().locks;
}

}  // namespace TrellanSimulation
