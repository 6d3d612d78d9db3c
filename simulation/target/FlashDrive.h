// The flash drive of a simulated target: a folder that this process, and no other one, sees as /mnt/cn/cfdrive.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <utility>

namespace TrellanSimulation {

class FlashDrive {
public:
    // Makes `folder` the flash drive in place of the one before. The first time the process enters a mount namespace of
    // its own (where it may not, together with a user namespace), in which everything else below /mnt stays visible.
    // Working directory and relative paths stay good. Throws std::system_error, saying what was refused and why.
    void attach(const std::filesystem::path& folder);

private:
    using Identity = std::pair<dev_t, ino_t>;

    bool inNamespace = false;
    std::optional<Identity> attached;  // the folder that is the drive now
};

}  // namespace TrellanSimulation
