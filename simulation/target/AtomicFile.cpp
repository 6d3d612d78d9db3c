// A synced temporary file beside the old one, which then takes its place and its attributes.
#include "simulation/target/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>
#include <string>
#include <utility>

#include "simulation/base/FileDescriptor.h"
#include "simulation/base/FolderNames.h"
#include "simulation/base/Uninterrupted.h"
#include "simulation/target/SystemFault.h"
#include "simulation/target/TemporaryEnding.h"

namespace TrellanSimulation {

namespace {

// A new file beside `path`, whose name becomes `name`. Not open when there can be none; errno says why.
FileDescriptor createBeside(const std::filesystem::path& path, std::string& name)
{
    for (;;) {
        name = path.string() + '.' + drawTemporaryEnding();
        FileDescriptor file(
            uninterrupted([&] { return ::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600); }));
        if (file.isOpen() || errno != EEXIST) {
            return file;
        }
    }
}

// A file beside `path` that is removed again unless it took the place of `path`. Faults name the latter, which the user
// knows: the temporary one is gone by the time that they are read.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::filesystem::path& path) : target(path), file(createBeside(path, name))
    {
        if (!file.isOpen()) {
            throwSystemFault("create the new", target.native());
        }
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
    void takeAttributes()
    {
        struct stat status = {};
        checkSystem(::stat(target.c_str(), &status), "stat", target.native());
        // EINVAL: an owner or group that this process's user namespace does not know.
        if (::fchown(file.get(), status.st_uid, status.st_gid) != 0 && errno != EPERM && errno != EINVAL) {
            throwSystemFault("chown the new", target.native());
        }
        // The mode comes second, since a new owner takes set-id bits away.
        checkSystem(::fchmod(file.get(), status.st_mode & 07777), "chmod the new", target.native());
    }

    void write(std::string_view content)
    {
        while (!content.empty()) {
            const ssize_t written = uninterrupted([&] { return ::write(file.get(), content.data(), content.size()); });
            if (written < 0) {
                throwSystemFault("write the new", target.native());
            }
            content.remove_prefix(static_cast<std::size_t>(written));
        }
        checkSystem(uninterrupted([&] { return ::fsync(file.get()); }), "sync the new", target.native());
    }

    void replaceTarget()
    {
        checkSystem(::rename(name.c_str(), target.c_str()), "rename the new", target.native());
        name.clear();
    }

private:
    std::filesystem::path target;
    std::string name;  // empty: it has taken the place of the target
    FileDescriptor file;
};

FileDescriptor openFolder(const std::filesystem::path& folder)
{
    FileDescriptor file(uninterrupted([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    return checkSystem(std::move(file), "open", folder.native());
}

}  // namespace

void replaceFile(const std::filesystem::path& path, std::string_view content)
{
    // Opened first: a folder that cannot be synced shall not get the new file.
    const FileDescriptor folder = openFolder(path.parent_path());
    TemporaryFile file(path);
    file.takeAttributes();
    file.write(content);
    file.replaceTarget();
    // Some file systems sync no folders by themselves.
    if (uninterrupted([&] { return ::fsync(folder.get()); }) != 0 && errno != EINVAL) {
        throwSystemFault("sync", path.parent_path().native());
    }
}

void removeLeftOvers(const std::filesystem::path& path)
{
    const std::string start = path.filename().string() + '.';
    const FolderNames folder = namesInFolder(path.parent_path());
    for (const std::string& name : folder.names) {
        const std::filesystem::path file = path.parent_path() / name;
        std::error_code unknown;
        if (name.starts_with(start) && isTemporaryEnding(std::string_view(name).substr(start.size())) &&
            std::filesystem::symlink_status(file, unknown).type() == std::filesystem::file_type::regular) {
            ::unlink(file.c_str());
        }
    }
}

}  // namespace TrellanSimulation
