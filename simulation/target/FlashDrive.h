// The flash drive of a simulated target: a folder that this process, and no other one, sees as /mnt/cn/cfdrive.
#pragma once

#include <filesystem>
#include <optional>

namespace TrellanSimulation {

class FlashDrive {
public:
    // Makes `folder` the flash drive of the target file at `target` in place of the one before; nothing: the target has
    // none. With the first drive the process enters a mount namespace of its own (where it may not, together with a
    // user namespace), in which everything else below /mnt stays visible. Working directory and relative paths stay
    // good. Throws std::system_error, saying what was refused and why.
    //
    // On a machine without /mnt/cn/cfdrive a file system in memory covers /mnt from the first drive on. What lies
    // directly in /mnt and /mnt/cn can then be written but not replaced, and new files there are seen by this process
    // alone: neither the lock nor a new version of a target file would reach anybody else. A target there is therefore
    // refused with std::runtime_error.
    void attach(const std::filesystem::path& target, const std::optional<std::filesystem::path>& folder);

private:
    static void requireShared(const std::filesystem::path& target, bool withDrive);
    void enterNamespaceOnce();
    void detach();

    bool inNamespace = false;
    bool attached = false;  // a folder is the drive now
};

}  // namespace TrellanSimulation
