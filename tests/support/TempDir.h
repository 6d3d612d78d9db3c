// TempDir: a fresh folder that is removed with everything in it at the end of its scope.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

class TempDir {
public:
    // Makes the folder. Throws std::system_error when that is not possible.
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    // The folder, absolute.
    const std::filesystem::path& path() const { return folder; }

    // Writes `content` to the file `name` (relative; parent folders are made) and returns its path. Throws
    // std::runtime_error when it cannot be written.
    std::filesystem::path write(const std::string& name, std::string_view content) const;

private:
    std::filesystem::path folder;
};
