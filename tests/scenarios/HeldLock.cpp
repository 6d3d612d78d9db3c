#include "scenarios/HeldLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

HeldLock::HeldLock(const std::filesystem::path& file)
{
    if (file.empty()) {
        return;
    }
    descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category(), file.string());
    }
    if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
        return;
    }
    const int error = errno;
    ::close(descriptor);
    throw std::system_error(error, std::generic_category(), file.string());
}

HeldLock::~HeldLock()
{
    if (descriptor >= 0) {
        ::close(descriptor);
    }
}
