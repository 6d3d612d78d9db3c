// A simulated device in a folder, which is updated to and fro between two states.
#pragma once

#include <array>
#include <filesystem>
#include <map>
#include <string>

#include "support/TestArchive.h"

class PoweredDevice {
public:
    // Makes the device in `folder`, in the first state.
    explicit PoweredDevice(const std::filesystem::path& folder);

    // Updates the device to the other state: an element, a file on its flash drive that is replaced, and one that is
    // made in a new folder. `environment` is the tool's. Returns what the tool has said when that failed.
    std::string update(const std::vector<std::string>& environment);

    // Looks at what a power cut has left of it, in the folder `found`. Gives what must not be: a target file that is
    // whole in neither state, or a file on the drive that is whole neither in its place nor under its temporary name;
    // empty when all is well. Counts in `kinds` what there was.
    static std::string faultsIn(const std::filesystem::path& found, std::map<std::string, unsigned>& kinds);

private:
    std::filesystem::path folder;
    std::array<TestArchive, 2> archives;
    std::size_t state = 0;
};
