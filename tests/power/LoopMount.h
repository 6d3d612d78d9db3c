// A file system in a file.
#pragma once

#include <filesystem>
#include <string>

class LoopMount {
public:
    // Mounts the ext4 file system in `image` on `folder` with `options`, by way of a loop device that is free. What is
    // in its journal is carried out, as after a power cut. Throws std::system_error when that is not possible.
    LoopMount(const std::filesystem::path& image, const std::filesystem::path& folder, const std::string& options);

    // Unmounts it and gives the device back.
    ~LoopMount();
    LoopMount(const LoopMount&) = delete;
    LoopMount& operator=(const LoopMount&) = delete;

private:
    std::filesystem::path folder;
};
