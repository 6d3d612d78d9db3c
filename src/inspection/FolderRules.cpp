// The rule that every file in the archive's folder is named by an entry. The folders are read by the system's own
// calls: the standard library's iterators end the process when memory is short.
#include <dirent.h>

#include <algorithm>
#include <filesystem>
#include <memory>

#include "inspection/Check.h"
#include "inspection/FileContent.h"
#include "inspection/Rules.h"

namespace ZoNUpdateInspection {
namespace {

namespace fs = std::filesystem;

struct FolderCloser {
    void operator()(DIR* folder) const noexcept { closedir(folder); }
};

// Those of all that is in the folder, which is none where it cannot be read.
std::vector<std::string> namesIn(const std::string& folder)
{
    std::vector<std::string> names;
    const std::unique_ptr<DIR, FolderCloser> listing(opendir(folder.c_str()));
    while (const dirent* const entry = listing ? readdir(listing.get()) : nullptr) {
        names.emplace_back(entry->d_name);
    }
    std::erase(names, ".");
    std::erase(names, "..");
    return names;
}

// Of the regular files below the folder, and of links to such, in the order of their names. What cannot be read is left
// out; a link to a folder is not followed.
std::vector<std::string> filesBelow(const std::string& folder)
{
    std::vector<std::string> names;
    std::vector<std::string> folders = {""};
    while (!folders.empty()) {
        const std::string below = std::move(folders.back());
        folders.pop_back();
        for (const std::string& name : namesIn(folder + "/" + below)) {
            const fs::path path = folder + "/" + below + name;
            std::error_code unknown;
            if (fs::symlink_status(path, unknown).type() == fs::file_type::directory) {
                folders.push_back(below + name + "/");
            } else if (fs::is_regular_file(path, unknown)) {
                names.push_back(below + name);
            }
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

void KnownFiles::add(const std::string& path)
{
    const FileLook look = lookAt(path);
    if (look.identity != ZoNUpdateBase::FileIdentity{}) {
        identities.insert(look.identity);
    } else if (look.problem != FileProblem::missing) {
        paths.insert(path);
    }
}

bool KnownFiles::contains(const std::string& path) const
{
    const ZoNUpdateBase::FileIdentity identity = lookAt(path).identity;
    return identity == ZoNUpdateBase::FileIdentity{} || identities.contains(identity) || paths.contains(path);
}

void checkFolder(Check& check, const KnownFiles& known)
{
    const std::string folder = check.getArchive().getPath();
    for (const std::string& name : filesBelow(folder)) {
        if (!known.contains(folder + "/" + name)) {
            check
                .report("unlisted-file", Check::Severity::NOTE,
                        "no entry names the file \"" + name + "\": name it, or take it away")
                .name = name;
        }
    }
}

}  // namespace ZoNUpdateInspection
