// Folders are read by the system's own calls: the standard library's iterators end the process when memory is short.
#include "tool/coverage/TargetNames.h"

#include <dirent.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <system_error>

namespace TrellanTool {

namespace {

namespace fs = std::filesystem;

struct FolderCloser {
    void operator()(DIR* folder) const noexcept { ::closedir(folder); }
};

// Of all that is in the folder. `error` is an errno, 0 when it could be read to its end.
std::vector<std::string> namesIn(const std::string& folder, int& error)
{
    std::vector<std::string> names;
    const std::unique_ptr<DIR, FolderCloser> listing(::opendir(folder.c_str()));
    error = listing ? 0 : errno;
    while (listing) {
        errno = 0;
        const dirent* const entry = ::readdir(listing.get());
        if (entry == nullptr) {
            error = errno;
            break;
        }
        names.emplace_back(entry->d_name);
    }
    return names;
}

void addFilesOf(const std::string& folder, std::vector<NamedTarget>& targets)
{
    std::vector<std::string> names;
    int error = 0;
    for (const std::string& name : namesIn(folder, error)) {
        const fs::path path = fs::path(folder) / name;
        std::error_code unknown;  // what cannot be told apart is told when it is read
        if (name.ends_with(".json") && !fs::is_directory(path, unknown)) {
            names.push_back(path.string());
        }
    }
    if (error != 0) {
        targets.push_back({folder, "the folder cannot be read: " + std::generic_category().message(error)});
    } else if (names.empty()) {
        targets.push_back({folder, "the folder holds no .json file"});
    }
    std::sort(names.begin(), names.end());
    for (std::string& name : names) {
        targets.push_back({std::move(name), std::nullopt});
    }
}

}  // namespace

std::vector<NamedTarget> targetsNamed(const std::vector<std::string>& words)
{
    std::vector<NamedTarget> targets;
    for (const std::string& word : words) {
        std::error_code unknown;
        if (word.empty()) {
            targets.push_back({word, "the path is empty"});
        } else if (fs::is_directory(word, unknown)) {
            addFilesOf(word, targets);
        } else {
            targets.push_back({word, std::nullopt});
        }
    }
    return targets;
}

}  // namespace TrellanTool
