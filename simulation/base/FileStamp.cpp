#include "simulation/base/FileStamp.h"

namespace TrellanSimulation {

namespace {

constexpr std::time_t coarsestStep = 2;  // in seconds, in which a file system counts its time stamps

bool isSame(const timespec& left, const timespec& right)
{
    return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

bool isSameContent(const struct stat& left, const struct stat& right)
{
    return left.st_dev == right.st_dev && left.st_ino == right.st_ino && left.st_size == right.st_size &&
           isSame(left.st_mtim, right.st_mtim);
}

}  // namespace

FileStamp::FileStamp(const struct stat& status, std::time_t now)
    : stamped(status), certain(now - status.st_mtim.tv_sec > coarsestStep && now - status.st_ctim.tv_sec > coarsestStep)
{
}

bool FileStamp::differsFromThatOf(const std::filesystem::path& path) const
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && !isSameContent(status, stamped);
}

// What changes a file's content or its modification time gives it the change time of that moment.
bool FileStamp::isThatOf(const std::filesystem::path& path) const
{
    struct stat status = {};
    return certain && ::stat(path.c_str(), &status) == 0 && isSameContent(status, stamped) &&
           isSame(status.st_ctim, stamped.st_ctim);
}

}  // namespace TrellanSimulation
