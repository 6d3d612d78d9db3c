#include "tool/coverage/TargetNames.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace TrellanTool {

namespace {

namespace fs = std::filesystem;

void addFilesOf(const std::string& folder, std::vector<NamedTarget>& targets)
{
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        std::error_code unknown;  // what cannot be told apart is told when it is read
        if (entry->path().filename().string().ends_with(".json") && !entry->is_directory(unknown)) {
            names.push_back(entry->path().string());
        }
    }
    if (error) {
        targets.push_back({folder, "the folder cannot be read: " + error.message()});
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
