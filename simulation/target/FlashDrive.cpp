// A cover over /mnt on which all that was there before is mounted again, and the drive's folder in its place.
#include "simulation/target/FlashDrive.h"

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "simulation/base/FileDescriptor.h"
#include "simulation/base/FolderNames.h"
#include "simulation/base/RegularFile.h"
#include "simulation/base/Trace.h"
#include "simulation/base/Uninterrupted.h"
#include "simulation/target/SystemFault.h"

namespace TrellanSimulation {

namespace {

constexpr const char* drive = "/mnt/cn/cfdrive";

// Tells the file system that covers /mnt from others in /proc/self/mountinfo.
constexpr const char* coverName = "trellan-simulation";

FileDescriptor openFolder(int at, const std::string& name)
{
    return FileDescriptor(uninterrupted([&] { return ::openat(at, name.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC); }));
}

bool isNoFolder(int error)
{
    return error == ENOENT || error == ENOTDIR;
}

FileDescriptor openDrive(const std::filesystem::path& folder)
{
    FileDescriptor opened = openFolder(AT_FDCWD, folder.string());
    if (!opened.isOpen()) {
        const int reason = errno;
        throw std::runtime_error("flash drive " + folder.string() + ": " + std::generic_category().message(reason) +
                                 (isNoFolder(reason) ? ", make that folder or leave flashDrive out" : ""));
    }
    return opened;
}

bool isNotAllowed(const std::error_code& error)
{
    return error == std::errc::operation_not_permitted || error == std::errc::permission_denied;
}

// A name for what `name` is in the opened folder, also when the folder itself is covered by a mount.
std::string throughDescriptor(const FileDescriptor& folder, const std::string& name)
{
    const std::string path = "/proc/self/fd/" + std::to_string(folder.get());
    return name.empty() ? path : path + '/' + name;
}

void bindMount(const std::string& source, const std::string& place)
{
    checkSystem(::mount(source.c_str(), place.c_str(), nullptr, MS_BIND | MS_REC, nullptr), "bind", place);
}

void makeFolder(const std::string& path)
{
    checkSystem(::mkdir(path.c_str(), 0755), "mkdir", path);
}

void recreateLink(const FileDescriptor& folder, const std::string& name, const std::string& place)
{
    std::string text(PATH_MAX, '\0');
    const ssize_t length = ::readlinkat(folder.get(), name.c_str(), text.data(), text.size());
    if (length < 0) {
        throwSystemFault("read link", place);
    }
    text.resize(static_cast<std::size_t>(length));
    checkSystem(::symlink(text.c_str(), place.c_str()), "link", place);
}

void recreateEntry(const FileDescriptor& folder, const std::string& name, const std::string& place)
{
    struct stat status = {};
    checkSystem(::fstatat(folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW), "stat", place);
    if (S_ISLNK(status.st_mode)) {
        recreateLink(folder, name, place);
        return;
    }
    if (S_ISDIR(status.st_mode)) {
        makeFolder(place);
    } else {
        const auto create = [&] { return ::open(place.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644); };
        checkSystem(FileDescriptor(uninterrupted(create)), "create", place);
    }
    bindMount(throughDescriptor(folder, name), place);
}

// Makes what is in `folder`, `except` left out, visible in `place`.
void recreate(const FileDescriptor& folder, const std::string& place, std::string_view except)
{
    const FolderNames found = namesInFolder(throughDescriptor(folder, ""));
    if (found.error != 0) {
        throw std::system_error(found.error, std::generic_category(), "list a folder below /mnt");
    }
    for (const std::string& name : found.names) {
        if (name != except) {
            recreateEntry(folder, name, place + '/' + name);
        }
    }
}

// The machine has no place for the drive: puts a file system in memory over /mnt, with the drive's folder and all that
// was there before.
void makeDriveFolder()
{
    const FileDescriptor mnt = openFolder(AT_FDCWD, "/mnt");
    if (!mnt.isOpen()) {
        if (!isNoFolder(errno)) {
            throwSystemFault("open", "/mnt");
        }
        throw std::runtime_error("its flash drive cannot be mounted without a folder /mnt (" +
                                 std::generic_category().message(errno) + "): make it, or leave flashDrive out");
    }
    const FileDescriptor cn = openFolder(mnt.get(), "cn");
    checkSystem(::mount(coverName, "/mnt", "tmpfs", 0, "mode=755"), "mount /mnt");
    try {
        recreate(mnt, "/mnt", "cn");
        makeFolder("/mnt/cn");
        if (cn.isOpen()) {
            recreate(cn, "/mnt/cn", "cfdrive");
        }
        makeFolder(drive);
    } catch (...) {
        ::umount2("/mnt", MNT_DETACH);  // what it was must not stay covered
        throw;
    }
}

void bindDrive(const std::string& source)
{
    if (::mount(source.c_str(), drive, nullptr, MS_BIND | MS_REC, nullptr) == 0) {
        return;
    }
    // The folder there is gone: one that was attached before this library was loaded again.
    if (errno == ENOENT) {
        checkSystem(::umount2(drive, MNT_DETACH), "unmount", drive);
    }
    bindMount(source, drive);
}

// The calling thread's mounts, one on each line; the process's are those of its first thread. Empty without /proc,
// where no drive can have been mounted.
std::string mountList()
try {
    RegularFile file("/proc/thread-self/mountinfo");
    std::string list;
    std::string block(1 << 14, '\0');
    while (const std::size_t length = file.read(block.data(), block.size())) {
        list.append(block, 0, length);
    }
    return list;
} catch (const FileFault&) {
    return "";
}

// Whether what is seen as /mnt is the work of makeDriveFolder: by this library, by itself before it was unloaded and
// loaded again, or by a process that this one descends from.
bool isMntCovered()
{
    bool covered = false;
    std::istringstream mounts(mountList());
    mounts.exceptions(std::ios_base::badbit);  // where memory is short, they would end too early
    for (std::string mount; std::getline(mounts, mount);) {
        std::istringstream fields(mount);
        fields.exceptions(std::ios_base::badbit);
        std::string id, parent, device, root, place;
        if (fields >> id >> parent >> device >> root >> place && place == "/mnt") {
            covered = mount.find(std::string(" - tmpfs ") + coverName + ' ') !=
                      std::string::npos;  // the last one covers the others
        }
    }
    return covered;
}

// Also when one of them is reached through a symbolic link.
bool liesIn(const std::filesystem::path& file, const char* folder)
{
    std::error_code fault;
    return std::filesystem::equivalent(file.parent_path(), folder, fault);
}

}  // namespace

void FlashDrive::attach(const std::filesystem::path& target, const std::optional<std::filesystem::path>& folder)
{
    mounts.requireInside();
    requireShared(target, folder.has_value());
    if (!folder) {
        detach();
        isLost = false;
        return;
    }
    openDrive(*folder);  // a folder that is not there is refused before anything has changed
    openTrace();
    try {
        mountDrive(*folder);
    } catch (const std::system_error& fault) {
        throw std::runtime_error(
            std::string("its flash drive cannot be mounted (") + fault.what() + ")" +
            (isNotAllowed(fault.code()) ? ": be root or allow user namespaces, or leave flashDrive out" : ""));
    }
}

std::optional<std::filesystem::path> FlashDrive::folder() const
{
    return attached ? std::optional<std::filesystem::path>(drive) : std::nullopt;
}

std::optional<std::filesystem::path> FlashDrive::find(const std::string& location)
{
    if (location.find('\0') != std::string::npos) {
        return std::nullopt;  // the system would take it for the end of the name
    }
    std::error_code fault;
    const std::filesystem::path file = std::filesystem::canonical(std::string(drive) + '/' + location, fault);
    const std::filesystem::path root = std::filesystem::canonical(drive, fault);
    if (fault || !file.native().starts_with(root.native() + '/')) {
        return std::nullopt;
    }
    return file;
}

void FlashDrive::requireInside() const
{
    mounts.requireInside();
    if (isLost) {
        throw std::runtime_error("its flash drive could not be mounted again: scan the target once more");
    }
}

void FlashDrive::requireShared(const std::filesystem::path& target, bool withDrive)
{
    if (!liesIn(target, "/mnt") && !liesIn(target, "/mnt/cn")) {
        return;
    }
    if (isMntCovered() || (withDrive && !std::filesystem::is_directory(drive))) {
        throw std::runtime_error(
            "beside a flash drive a target must not lie directly in /mnt or /mnt/cn on this machine, move it to a "
            "folder of its own");
    }
}

void FlashDrive::mountDrive(const std::filesystem::path& folder)
{
    mounts.enter();
    // Opened before anything is mounted: the folder may itself be below /mnt.
    const FileDescriptor source = openDrive(folder);
    isLost = isLost || attached;
    detach();
    if (!std::filesystem::is_directory(drive)) {
        makeDriveFolder();
    }
    bindDrive(throughDescriptor(source, ""));
    attached = true;
    isLost = false;
}

void FlashDrive::detach()
{
    if (attached) {
        checkSystem(::umount2(drive, MNT_DETACH), "unmount", drive);
        attached = false;
    }
}

}  // namespace TrellanSimulation
