// Entering a mount namespace, with a user namespace where the process is not root, and telling threads outside it.
#include "simulation/target/MountNamespace.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <exception>
#include <stdexcept>
#include <string>
#include <utility>

#include "simulation/base/Uninterrupted.h"
#include "simulation/target/SystemFault.h"

namespace TrellanSimulation {

namespace {

// The calling thread's namespace.
constexpr const char* current = "/proc/thread-self/ns/mnt";

FileDescriptor openCurrent()
{
    FileDescriptor opened(uninterrupted([] { return ::open(current, O_RDONLY | O_CLOEXEC); }));
    if (opened.isOpen()) {
        return opened;
    }
    if (errno != ENOENT) {
        throwSystemFault("open", current);
    }
    throw std::runtime_error("its flash drive cannot be mounted without /proc: mount that, or leave flashDrive out");
}

bool isSame(const struct stat& left, const struct stat& right)
{
    return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

struct stat statusOf(const FileDescriptor& file)
{
    struct stat status = {};
    checkSystem(::fstat(file.get(), &status), "stat");
    return status;
}

struct stat statusOf(const char* path)
{
    struct stat status = {};
    checkSystem(::stat(path, &status), "stat", path);
    return status;
}

void writeProcFile(const std::string& path, const std::string& content)
{
    const FileDescriptor file = checkSystem(
        FileDescriptor(uninterrupted([&] { return ::open(path.c_str(), O_WRONLY | O_CLOEXEC); })), "open", path);
    if (uninterrupted([&] { return ::write(file.get(), content.data(), content.size()); }) < 0) {
        throwSystemFault("write", path);
    }
}

// Throws what a failed unshare() means: `limits` are those on the namespaces that were asked for.
[[noreturn]] void throwUnshareFault(const std::string& limits)
{
    if (errno == ENOSPC) {
        throw std::runtime_error("its flash drive cannot be mounted, as there are too many namespaces: raise " +
                                 limits + " in /proc/sys/user, or leave flashDrive out");
    }
    throwSystemFault("unshare");
}

// Users stay who they are in the new user namespace.
void enterUserNamespace()
{
    const std::string user = std::to_string(::geteuid());
    const std::string group = std::to_string(::getegid());
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        if (errno == EINVAL) {
            throw std::runtime_error(
                "its flash drive cannot be mounted by a user whose process has several threads: scan before the others "
                "start, or be root, or leave flashDrive out");
        }
        throwUnshareFault("max_user_namespaces and max_mnt_namespaces");
    }
    writeProcFile("/proc/self/setgroups", "deny");
    writeProcFile("/proc/self/uid_map", user + ' ' + user + " 1");
    writeProcFile("/proc/self/gid_map", group + ' ' + group + " 1");
}

FileDescriptor openFolder(const char* path)
{
    FileDescriptor folder(uninterrupted([&] { return ::open(path, O_PATH | O_DIRECTORY | O_CLOEXEC); }));
    return checkSystem(std::move(folder), "open", path);
}

void makePrivate(const char* mount)
{
    checkSystem(::mount(nullptr, mount, nullptr, MS_REC | MS_PRIVATE, nullptr), "make / private");
}

// The thread's working directory outside its root, for the time of a scope: /proc is the root meanwhile. Both are the
// thread's own since it has a namespace of its own.
class OutsideRoot {
public:
    OutsideRoot() : root(openFolder("/")), working(openFolder("."))
    {
        checkSystem(::chroot("/proc"), "chroot /proc");
        checkSystem(::fchdir(root.get()), "chdir /");
    }
    ~OutsideRoot()
    {
        if (::fchdir(root.get()) != 0 || ::chroot(".") != 0 || ::fchdir(working.get()) != 0) {
            std::terminate();  // nobody could work in a root that is another one
        }
    }
    OutsideRoot(const OutsideRoot&) = delete;
    OutsideRoot& operator=(const OutsideRoot&) = delete;

private:
    FileDescriptor root;
    FileDescriptor working;
};

// The mount that holds the root of a chroot has no name within it; from outside it is found by going up.
void makePrivateAboveRoot()
{
    const OutsideRoot outside;
    while (!isSame(statusOf("."), statusOf(".."))) {
        checkSystem(::chdir(".."), "chdir ..");
    }
    makePrivate(".");
}

// Without it what is mounted here would appear to everybody else, too.
void makeAllPrivate()
{
    try {
        makePrivate("/");
    } catch (const std::system_error& fault) {
        if (fault.code() != std::errc::invalid_argument) {
            throw;
        }
        makePrivateAboveRoot();
    }
}

}  // namespace

void MountNamespace::enter()
{
    if (entered.isOpen()) {
        return;
    }
    openCurrent();  // a failure must come before anything has changed
    if (::unshare(CLONE_NEWNS) != 0) {
        if (errno != EPERM) {
            throwUnshareFault("max_mnt_namespaces");
        }
        enterUserNamespace();
    }
    makeAllPrivate();
    entered = openCurrent();
}

void MountNamespace::requireInside() const
{
    if (entered.isOpen() && !isSame(statusOf(entered), statusOf(current))) {
        throw std::runtime_error(
            "this thread does not see the flash drive: use the target from the thread that scanned it first, or from "
            "threads that this one starts after the scan");
    }
}

}  // namespace TrellanSimulation
