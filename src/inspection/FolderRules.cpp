// The rule that every file in the archive's folder is named by an entry.
#include <algorithm>
#include <filesystem>
#include <set>

#include "inspection/Check.h"
#include "inspection/FileContent.h"
#include "inspection/Rules.h"

namespace ZoNUpdateInspection {
namespace {

namespace fs = std::filesystem;

// Of the regular files below the folder, and of links to such, in the order of their names. What cannot be read is left
// out; a link to a folder is not followed.
std::vector<std::string> filesBelow(const fs::path& folder)
{
    std::vector<std::string> names;
    std::error_code error;
    fs::recursive_directory_iterator place(folder, fs::directory_options::skip_permission_denied, error);
    for (; !error && place != fs::recursive_directory_iterator(); place.increment(error)) {
        std::error_code unknown;
        if (place->is_regular_file(unknown)) {
            names.push_back(place->path().lexically_relative(folder).string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

void checkFolder(Check& check, const std::vector<std::string>& known)
{
    std::set<FileIdentity> files;
    for (const std::string& path : known) {
        files.insert(lookAt(path).identity);
    }
    const std::string folder = check.getArchive().getPath();
    for (const std::string& name : filesBelow(folder)) {
        if (!files.contains(lookAt(folder + "/" + name).identity)) {
            check
                .report("unlisted-file", Check::Severity::NOTE,
                        "no entry names the file \"" + name + "\": name it, or take it away")
                .name = name;
        }
    }
}

}  // namespace ZoNUpdateInspection
