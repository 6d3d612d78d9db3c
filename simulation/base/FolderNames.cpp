#include "simulation/base/FolderNames.h"

#include <dirent.h>

#include <cerrno>
#include <memory>

namespace TrellanSimulation {

namespace {

struct FolderCloser {
    void operator()(DIR* folder) const noexcept { ::closedir(folder); }
};

}  // namespace

FolderNames namesInFolder(const std::filesystem::path& folder)
{
    const std::unique_ptr<DIR, FolderCloser> listing(::opendir(folder.c_str()));
    FolderNames found = {{}, listing ? 0 : errno};
    while (listing) {
        errno = 0;
        const dirent* const entry = ::readdir(listing.get());
        if (entry == nullptr) {
            found.error = errno;
            break;
        }
        found.names.emplace_back(entry->d_name);
    }
    std::erase(found.names, ".");
    std::erase(found.names, "..");
    return found;
}

}  // namespace TrellanSimulation
