// The flash drive of a simulated target: a folder that this process, and no other one, sees as /mnt/cn/cfdrive.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "simulation/target/MountNamespace.h"

namespace TrellanSimulation {

class FlashDrive {
public:
    // Makes `folder` the flash drive of the target file at `target` in place of the one before; nothing: the target has
    // none. With the first drive the calling thread, and those that it starts from then on, get mounts of their own, in
    // which everything else below /mnt stays visible with its content. Working directory and relative paths stay good.
    // Throws std::runtime_error, in words that tell what to do, when that is not possible, and as requireInside() does.
    //
    // On a machine without /mnt/cn/cfdrive a file system in memory covers /mnt from the first drive on. What lies
    // directly in /mnt and /mnt/cn can then be written but not replaced, and new files there are seen by this process
    // alone: neither the lock nor a new version of a target file would reach anybody else. A target there is therefore
    // refused with std::runtime_error.
    void attach(const std::filesystem::path& target, const std::optional<std::filesystem::path>& folder);

    // Where the attached drive is seen; nothing when none is attached.
    std::optional<std::filesystem::path> folder() const;

    // The file `location` of the attached drive, as the calling thread sees it. Nothing when there is none, or when it
    // lies outside the drive, by ".." or behind a link.
    static std::optional<std::filesystem::path> find(const std::string& location);

    // Throws std::runtime_error when the calling thread does not see what attach() has mounted, but the machine's own
    // /mnt, or when a drive was there and attach() has failed to mount it again: what is written to it now would go to
    // the machine.
    void requireInside() const;

private:
    static void requireShared(const std::filesystem::path& target, bool withDrive);
    void mountDrive(const std::filesystem::path& folder);
    void detach();

    MountNamespace mounts;
    bool attached = false;  // a folder is the drive now
    bool isLost = false;    // it was unmounted to be mounted again, which has failed
};

}  // namespace TrellanSimulation
