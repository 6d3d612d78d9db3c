// The lock of a simulated target, held by one process at a time.
#pragma once

#include <filesystem>
#include <memory>

#include "simulation/base/FileDescriptor.h"

namespace TrellanSimulation {

class TargetLock {
public:
    // Locks the target file at `path` by an advisory lock on the file beside it with ".lock" appended, which stays
    // there for good. Null when the target is locked already, by this process or another one. Throws std::system_error
    // when the lock file cannot be opened for reading or locked.
    static std::unique_ptr<TargetLock> acquire(const std::filesystem::path& path);

    // Unlocks the target. The lock also ends with the process.
    ~TargetLock();
    TargetLock(const TargetLock&) = delete;
    TargetLock& operator=(const TargetLock&) = delete;

private:
    explicit TargetLock(FileDescriptor file);

    FileDescriptor file;
};

}  // namespace TrellanSimulation
