// The lock of a simulated target, held by one process at a time and the programs that it starts.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "simulation/base/FileDescriptor.h"

namespace TrellanSimulation {

class TargetLock {
public:
    // Locks the target file at `path` by an advisory lock on the file beside it with ".lock" appended, which stays
    // there for good, and the folder `drive`, where it has a flash drive, by one on the folder itself: another target
    // may have the same drive (a folder that may not be read is left out). Null when either is locked already, by this
    // process or another one. Throws std::system_error when the lock file or the folder cannot be opened for reading or
    // locked, std::runtime_error when the lock file is no regular file or a link.
    //
    // Programs that the process starts from then on, such as one that copies a file to the device, hold the lock too:
    // it ends when the last of all of them ends, also when the process is killed before.
    static std::unique_ptr<TargetLock> acquire(const std::filesystem::path& path,
                                               const std::optional<std::filesystem::path>& drive);

    // Gives up the process's part of the lock, as its end does.
    ~TargetLock();
    TargetLock(const TargetLock&) = delete;
    TargetLock& operator=(const TargetLock&) = delete;

private:
    TargetLock(FileDescriptor file, FileDescriptor drive);

    FileDescriptor file;
    FileDescriptor drive;  // not open: there is none
};

}  // namespace TrellanSimulation
