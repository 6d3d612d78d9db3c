// A simulated device on a real clock, with an archive for it: two elements in two phases, whose new values are written
// one after the other, a file on the flash drive that is replaced, and one that is made in a new folder.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "support/TempDir.h"
#include "support/TestArchive.h"

class Device {
public:
    Device();

    // The tool's arguments for the update of this device, and the environment that it needs for it; no sleep takes any
    // time.
    std::vector<std::string> arguments() const;
    static std::vector<std::string> environment();

    // What must not be after an update that was killed at any moment: a target file that is neither as it was nor as
    // one of the finished elements made it; a file on the drive that is neither old, nor new, nor whole under its
    // temporary name. Empty when all is well.
    std::string faults() const;

    // Runs the update again, to its end, and tells what is not as it is after an update that nobody has killed: the
    // exit status, the content of target file and drive, or anything left over beside them.
    std::string faultsOfNextUpdate() const;

private:
    std::string contentOf(const std::string& file) const;
    void addDriveFault(const std::string& file, const std::string& before, const std::string& after,
                       std::string& found) const;
    std::vector<std::string> files() const;

    TestArchive archive;
    TempDir folder;
};
