// Looks at the temporary file by what stands under its name, and follows no link there.
#include "operation/TemporaryFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "base/Uninterrupted.h"

using ZoNUpdateBase::uninterrupted;

namespace {

// Returns 0 or the error number. What is no file or folder is not waited for.
int flushToDisk(const std::string& path, int flags)
{
    const int descriptor = uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | flags); });
    if (descriptor < 0) {
        return errno;
    }
    const int error = uninterrupted([&] { return fsync(descriptor); }) == 0 ? 0 : errno;
    close(descriptor);
    return error;
}

}  // namespace

int TemporaryFile::makeRoom() const
{
    struct stat64 found;
    if (lstat64(name.c_str(), &found) != 0) {
        return 0;  // there is nothing; what else may be wrong with the path, the copy will meet
    }
    if (S_ISDIR(found.st_mode)) {
        return EISDIR;
    }
    if (!S_ISREG(found.st_mode) && !S_ISLNK(found.st_mode)) {
        return EINVAL;
    }
    return unlink(name.c_str()) == 0 ? 0 : errno;
}

bool TemporaryFile::hasContent() const
{
    struct stat64 written;
    return lstat64(name.c_str(), &written) == 0 && S_ISREG(written.st_mode) && written.st_size >= 1;
}

bool TemporaryFile::isAsLargeAs(const std::string& source) const
{
    struct stat64 original;
    struct stat64 written;
    return stat64(source.c_str(), &original) == 0 && lstat64(name.c_str(), &written) == 0 && S_ISREG(written.st_mode) &&
           written.st_size == original.st_size;
}

int TemporaryFile::flush() const
{
    if (const int error = flushToDisk(name, O_NOFOLLOW); error != 0) {
        return error;
    }
    const int error = flushToDisk(name.substr(0, name.rfind('/') + 1), O_DIRECTORY);
    return error == EINVAL || error == EACCES ? 0 : error;  // some file systems flush no folders by themselves
}

void TemporaryFile::discard() const
{
    unlink(name.c_str());
}
