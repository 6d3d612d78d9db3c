// A synced temporary file in the same folder, which takes the place of the old one once it is complete.
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
    const Descriptor file(checked(::open(path.c_str(), O_WRONLY | O_APPEND | O_NOCTTY | O_CLOEXEC)));
    print(file.get(), write);
}

// A file in the folder of another one, removed again unless it has taken that one's place.
class TemporaryFile {
public:
    explicit TemporaryFile(const Destination& destination) : destination(destination), file(make()) {}
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

    void takePlace()
    {
        checked(::fsync(file.get()));
        checked(::rename(name.c_str(), destination.path.c_str()));
        name.clear();
        // Best effort: the new file is in its place already, and not every file system syncs folders.
        const Descriptor folder(::open(folderOf(destination.path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        ::fsync(folder.get());
    }

private:
    int make()
    {
        const std::string prefix =
            (folderOf(destination.path) / ".trellan-update.").string() + std::to_string(::getpid());
        for (unsigned number = 0;; ++number) {
            name = prefix + '.' + std::to_string(number);
            const int descriptor = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
            if (descriptor >= 0) {
                return descriptor;
            }
            if (errno != EEXIST) {
                const int error = errno;
                name.clear();
                fail(error);
            }
        }
    }

    const Destination& destination;
    std::string name;  // empty: it has taken the place
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

}  // namespace

void writeOutputFile(const std::string& path, const std::function<void(std::ostream&)>& write)
try {
    const Destination destination = destinationOf(path);
    destination.isReplaced ? replace(destination, write) : writeDirectly(destination.path, write);
} catch (const Fault& fault) {
    throw std::runtime_error(path + " cannot be written: " + std::generic_category().message(fault.error));
}

}  // namespace TrellanTool
