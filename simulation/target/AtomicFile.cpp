#include "simulation/target/AtomicFile.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <cstdio>
#include <string>

#include "simulation/base/FileDescriptor.h"
#include "simulation/target/SystemFault.h"

namespace TrellanSimulation {

namespace {

// A file beside `path` that is removed again unless it took the place of `path`.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::filesystem::path& path)
        : name(path.string() + ".XXXXXX"), file(checkSystem(::mkostemp(name.data(), O_CLOEXEC), "create " + name))
    {
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile()
    {
        if (!name.empty()) {
            ::unlink(name.c_str());
        }
    }

    void takeModeOf(const std::filesystem::path& path)
    {
        struct stat status = {};
        checkSystem(::stat(path.c_str(), &status), "stat " + path.string());
        checkSystem(::fchmod(file.get(), status.st_mode & 07777), "chmod " + name);
    }

    void write(std::string_view content)
    {
        while (!content.empty()) {
            const ssize_t written = ::write(file.get(), content.data(), content.size());
            if (written < 0) {
                throwSystemFault("write " + name);
            }
            content.remove_prefix(static_cast<std::size_t>(written));
        }
        checkSystem(::fsync(file.get()), "sync " + name);
    }

    void replace(const std::filesystem::path& path)
    {
        checkSystem(::rename(name.c_str(), path.c_str()), "rename " + name);
        name.clear();
    }

private:
    std::string name;
    FileDescriptor file;
};

void syncFolder(const std::filesystem::path& folder)
{
    const FileDescriptor descriptor(
        checkSystem(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), "open " + folder.string()));
    checkSystem(::fsync(descriptor.get()), "sync " + folder.string());
}

}  // namespace

void replaceFile(const std::filesystem::path& path, std::string_view content)
{
    TemporaryFile file(path);
    file.takeModeOf(path);
    file.write(content);
    file.replace(path);
    syncFolder(path.parent_path());
}

}  // namespace TrellanSimulation
