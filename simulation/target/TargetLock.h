// The lock of a simulated target, held by one process at a time and the programs that it starts.
#pragma once

#include <filesystem>
#include <memory>

#include "simulation/base/FileDescriptor.h"

namespace TrellanSimulation {

class TargetLock {
public:
    // Locks the target file at `path` by an advisory lock on the file beside it with ".lock" appended, which stays
    // there for good. Null when the target is locked already, by this process or another one. Throws std::system_error
    // when the lock file cannot be opened for reading or locked, std::runtime_error when it is no regular file.
    //
    // Programs that the process starts from then on, such as one that copies a file to the device, hold the lock too:
    // it ends when the last of all of them ends, also when the process is killed before.
    static std::unique_ptr<TargetLock> acquire(const std::filesystem::path& path);

    // Gives up the process's part of the lock, as its end does.
    ~TargetLock();
    TargetLock(const TargetLock&) = delete;
    TargetLock& operator=(const TargetLock&) = delete;

private:
    explicit TargetLock(FileDescriptor file);

    FileDescriptor file;
};

}  // namespace TrellanSimulation
