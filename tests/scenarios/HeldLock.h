// HeldLock: the advisory lock of a file, held for the time of a scope.
#pragma once

#include <filesystem>

class HeldLock {
public:
    // Makes the file and locks it; an empty path holds nothing. Throws std::system_error when that is not possible.
    explicit HeldLock(const std::filesystem::path& file);
    ~HeldLock();
    HeldLock(const HeldLock&) = delete;
    HeldLock& operator=(const HeldLock&) = delete;

private:
    int descriptor = -1;
};
