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

    // Owner and group too, where the system lets this process give files away.
    void takeAttributesOf(const std::filesystem::path& path)
    {
        struct stat status = {};
        checkSystem(::stat(path.c_str(), &status), "stat " + path.string());
        // EINVAL: an owner or group that this process's user namespace does not know.
        if (::fchown(file.get(), status.st_uid, status.st_gid) != 0 && errno != EPERM && errno != EINVAL) {
            throwSystemFault("chown " + name);
        }
        // The mode comes second, since a new owner takes set-id bits away.
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

FileDescriptor openFolder(const std::filesystem::path& folder)
{
    return FileDescriptor(
        checkSystem(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), "open " + folder.string()));
}

}  // namespace

void replaceFile(const std::filesystem::path& path, std::string_view content)
{
    // Opened first: a folder that cannot be synced shall not get the new file.
    const FileDescriptor folder = openFolder(path.parent_path());
    TemporaryFile file(path);
    file.takeAttributesOf(path);
    file.write(content);
    file.replace(path);
    checkSystem(::fsync(folder.get()), "sync " + path.parent_path().string());
}

}  // namespace TrellanSimulation
