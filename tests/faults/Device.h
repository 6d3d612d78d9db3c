// Device: a target on which an update changes three things, and the archive for it.
#pragma once

#include <filesystem>
#include <string>

#include "support/TempDir.h"

// A firmware and an FPGA, which are elements of the target, and a file on its flash drive.
class Device {
public:
    // In a fresh folder, with the archive.
    Device();

    // The folder with "target.json" and "archive", and with a description that is "large".
    std::filesystem::path folder() const { return directory.path(); }
    std::string targetFile() const { return folder() / "target.json"; }
    std::string archive() const { return folder() / "archive"; }

    // Makes the device as it is before any update, and the archive with its own description and without "new.json".
    void putOld() const;

    // Whether each of the three is old or new, or all are new. The old file on the drive may be gone, when the new one
    // stands beside it under its temporary name.
    bool isOldOrNew() const;
    bool isNew() const;

    // The target file and the file on the drive.
    std::string text() const;

    // The archive's description.
    std::string description() const;

    // Whether nobody holds the target's lock.
    bool isUnlocked() const;

    // Whether something in the folder looks like a file that was to take the place of another one.
    bool hasTemporaryFile() const;

private:
    TempDir directory;
};
