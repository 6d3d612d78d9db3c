#include "support/FileTree.h"

namespace fs = std::filesystem;

void copyTree(const fs::path& source, const fs::path& copy)
{
    if (!fs::is_directory(source)) {
        fs::copy_file(source, copy);
        fs::permissions(copy, fs::perms::owner_write, fs::perm_options::add);
        return;
    }
    // Not like the source's folder: nothing could be put into it.
    fs::create_directory(copy);
    for (const fs::directory_entry& entry : fs::directory_iterator(source)) {
        copyTree(entry.path(), copy / entry.path().filename());
    }
}
