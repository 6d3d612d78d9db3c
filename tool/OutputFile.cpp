// A synced temporary file in the same folder, which takes the place of the old one once it is complete. It has no name
// until then where the file system can make such files, so that nothing is left of it when the process is killed.
#include "tool/OutputFile.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <ostream>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "tool/Descriptor.h"
#include "tool/OutputBuffer.h"

namespace TrellanTool {

namespace {

namespace fs = std::filesystem;

// Apart from all that the content's writer may throw.
struct Fault {
    int error;
};

[[noreturn]] void fail(int error)
{
    throw Fault{error};
}

int checked(int result)
{
    if (result < 0) {
        fail(errno);
    }
    return result;
}

bool isInProc(const fs::path& folder)
{
    struct statfs status = {};
    return ::statfs(folder.c_str(), &status) == 0 && status.f_type == PROC_SUPER_MAGIC;
}

fs::path folderOf(const fs::path& file)
{
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

// What a path names once its links are followed.
struct Destination {
    fs::path path;
    bool isReplaced;
    struct stat old;  // of the file that is replaced; all 0 where there is none
};

// A link in /proc leads to what a descriptor has open, which the text of the link need not name.
Destination destinationOf(fs::path path)
{
    constexpr int mostLinks = 40;
    std::error_code error;
    for (int links = 0; fs::is_symlink(path, error); ++links) {
        if (links == mostLinks) {
            fail(ELOOP);
        }
        if (isInProc(folderOf(path))) {
            return {path, false, {}};
        }
        path = folderOf(path) / fs::read_symlink(path, error);
    }
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0) {
        if (errno != ENOENT) {
            fail(errno);
        }
        return {path, true, {}};
    }
    return {path, S_ISREG(status.st_mode), status};
}

void print(int file, const std::function<void(std::ostream&)>& write)
{
    OutputBuffer buffer(file);
    std::ostream stream(&buffer);
    write(stream);
    stream.flush();
    if (buffer.error() != 0) {
        fail(buffer.error());
    }
}

void writeDirectly(const fs::path& path, const std::function<void(std::ostream&)>& write)
{
    const Descriptor file(checked(::open(path.c_str(), O_WRONLY | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)));
    print(file.get(), write);
}

// A file without a name gets one by way of this link.
std::string linkOf(int descriptor)
{
    return "/proc/self/fd/" + std::to_string(descriptor);
}

// A file in the folder of another one, removed again unless it has taken that one's place.
class TemporaryFile {
public:
    explicit TemporaryFile(const Destination& destination)
        : destination(destination),
          prefix((folderOf(destination.path) / ".trellan-update.").string() + std::to_string(::getpid()) + '.'),
          file(make())
    {
    }
    ~TemporaryFile()
    {
        if (!name.empty()) {
            ::unlink(name.c_str());
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    int descriptor() const { return file.get(); }

    void takeAttributes()
    {
        const struct stat& old = destination.old;
        // EINVAL: an owner or group that this process's user namespace does not know.
        if (::fchown(file.get(), old.st_uid, old.st_gid) != 0 && errno != EPERM && errno != EINVAL) {
            fail(errno);
        }
        // The mode comes second, since a new owner takes set-id bits away.
        checked(::fchmod(file.get(), old.st_mode & 07777));
    }

    // Of the file that is there by now, or none.
    void takePlace()
    {
        checked(::fsync(file.get()));
        if (name.empty()) {
            name = firstName([&](const std::string& free) { return linkTo(free); });
        }
        checked(::rename(name.c_str(), destination.path.c_str()));
        name.clear();
        syncFolder();
    }

    // Fails with EEXIST where there is something at the path.
    void takeFreePlace()
    {
        checked(::fsync(file.get()));
        const int result =
            name.empty() ? linkTo(destination.path)
                         : ::renameat2(AT_FDCWD, name.c_str(), AT_FDCWD, destination.path.c_str(), RENAME_NOREPLACE);
        checked(result);
        name.clear();
        syncFolder();
    }

private:
    int make()
    {
        const int nameless = ::open(folderOf(destination.path).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
        if (nameless >= 0 && ::access(linkOf(nameless).c_str(), F_OK) == 0) {
            return nameless;
        }
        if (nameless >= 0) {
            ::close(nameless);
        }
        int descriptor = -1;
        name = firstName([&](const std::string& free) {
            return descriptor = ::open(free.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
        });
        return descriptor;
    }

    int linkTo(const std::string& path) const
    {
        return ::linkat(AT_FDCWD, linkOf(file.get()).c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW);
    }

    // The first that is free, taken by `take`.
    std::string firstName(const std::function<int(const std::string&)>& take) const
    {
        for (unsigned number = 0;; ++number) {
            std::string free = prefix + std::to_string(number);
            if (take(free) >= 0) {
                return free;
            }
            if (errno != EEXIST) {
                fail(errno);
            }
        }
    }

    // Best effort: the new file is in its place already, and not every file system syncs folders.
    void syncFolder() const
    {
        const Descriptor folder(::open(folderOf(destination.path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        ::fsync(folder.get());
    }

    const Destination& destination;
    const std::string prefix;
    std::string name;  // empty: it has none, or has taken the place
    const Descriptor file;
};

void replace(const Destination& destination, const std::function<void(std::ostream&)>& write)
{
    const bool isThere = destination.old.st_mode != 0;
    if (isThere) {
        // Whoever must not write to a file must not replace it either, though the folder would let him.
        checked(::faccessat(AT_FDCWD, destination.path.c_str(), W_OK, AT_EACCESS));
    }
    TemporaryFile file(destination);
    if (isThere) {
        file.takeAttributes();
    }
    print(file.descriptor(), write);
    file.takePlace();
}

// The folders that lead to a file, removed again unless they are to stay.
class MadeFolders {
public:
    explicit MadeFolders(const fs::path& folder)
    {
        struct stat status = {};
        for (fs::path missing = folder; !missing.empty() && ::lstat(missing.c_str(), &status) != 0 && errno == ENOENT;
             missing = missing.parent_path()) {
            made.push_back(missing);
        }
        std::error_code error;
        if (fs::create_directories(folder, error); error) {
            remove();
            fail(error.value());
        }
    }
    ~MadeFolders() { remove(); }
    MadeFolders(const MadeFolders&) = delete;
    MadeFolders& operator=(const MadeFolders&) = delete;

    void keep() { made.clear(); }

private:
    // Those that somebody has put something into stay.
    void remove() const
    {
        for (const fs::path& folder : made) {
            ::rmdir(folder.c_str());
        }
    }

    std::vector<fs::path> made;  // from the innermost
};

}  // namespace

std::string writingFault(int error)
{
    return error == ENXIO ? "nobody reads it" : std::generic_category().message(error);
}

void writeOutputFile(const std::string& path, const std::function<void(std::ostream&)>& write)
try {
    const Destination destination = destinationOf(path);
    destination.isReplaced ? replace(destination, write) : writeDirectly(destination.path, write);
} catch (const Fault& fault) {
    throw std::runtime_error(path + " cannot be written: " + writingFault(fault.error));
}

void writeNewFile(const std::string& path, const std::function<void(std::ostream&)>& write)
try {
    const Destination destination = {path, false, {}};
    MadeFolders folders(folderOf(path));
    TemporaryFile file(destination);
    print(file.descriptor(), write);
    file.takeFreePlace();
    folders.keep();
} catch (const Fault& fault) {
    throw std::runtime_error(path + " cannot be written: " + writingFault(fault.error));
}

}  // namespace TrellanTool
