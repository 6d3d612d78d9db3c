#include "simulation/base/FileStamp.h"

namespace TrellanSimulation {

namespace {

constexpr std::time_t coarsestStep = 2;  // in seconds, in which a file system counts its time stamps

bool isSame(const timespec& left, const timespec& right)
{
    return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

}  // namespace

FileStamp::FileStamp(const struct stat& status, std::time_t now)
    : stamped(status), certain(now - status.st_mtim.tv_sec > coarsestStep && now - status.st_ctim.tv_sec > coarsestStep)
{
}

// What changes a file's content or its modification time gives it the change time of that moment.
bool FileStamp::isThatOf(const std::filesystem::path& path) const
{
    struct stat status = {};
    return certain && ::stat(path.c_str(), &status) == 0 && status.st_dev == stamped.st_dev &&
           status.st_ino == stamped.st_ino && status.st_size == stamped.st_size &&
           isSame(status.st_mtim, stamped.st_mtim) && isSame(status.st_ctim, stamped.st_ctim);
}

}  // namespace TrellanSimulation
