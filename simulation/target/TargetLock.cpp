#include "simulation/target/TargetLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include "simulation/base/Resources.h"
#include "simulation/target/SystemFault.h"

namespace TrellanSimulation {

std::unique_ptr<TargetLock> TargetLock::acquire(const std::filesystem::path& path)
{
    const std::string name = path.string() + ".lock";
    // For reading, since that is all a lock needs: another user may have left the file.
    FileDescriptor file(checkSystem(::open(name.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC, 0666),
                                    "its lock file cannot be opened: open " + name));
    if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0) {
        return std::unique_ptr<TargetLock>(new TargetLock(std::move(file)));
    }
    if (errno != EWOULDBLOCK) {
        throwSystemFault("its lock file cannot be locked: lock " + name);
    }
    return nullptr;
}

TargetLock::TargetLock(FileDescriptor file) : file(std::move(file))
{
    ++resources().locks;
}

TargetLock::~TargetLock()
{
    --resources().locks;
}

}  // namespace TrellanSimulation
