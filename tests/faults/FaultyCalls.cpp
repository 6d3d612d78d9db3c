// The calls of the operating system, and of the C library for it, that fail when they are told to. They have names of
// their own here and the system's for the linker, so that the system's declarations do not matter.
#include <dirent.h>
#include <dlfcn.h>
#include <locale.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <cerrno>
#include <cstdio>
#include <ctime>

#include "faults/FaultPoints.h"

using FaultPoints::errorOf;

namespace {

template <class Function>
Function* systems(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

// FAULTY(RESULT, NAME, (PARAMETERS), (ARGUMENTS), WHAT_IT_RETURNS_WHEN_IT_FAILS, ERRNO...)
#define FAULTY(result, name, parameters, arguments, failure, ...)                   \
    extern "C" result faulty_##name parameters asm(#name);                          \
    extern "C" result faulty_##name parameters                                      \
    {                                                                               \
        static result(*const usual) parameters = systems<result parameters>(#name); \
        if (const int error = errorOf(#name, {__VA_ARGS__}); error != 0) {          \
            errno = error;                                                          \
            return failure;                                                         \
        }                                                                           \
        return usual arguments;                                                     \
    }

// Files by their names.
FAULTY(int, open, (const char* path, int flags, mode_t mode), (path, flags, mode), -1, EACCES, EMFILE, ENOSPC, EINTR,
       ENOENT, ENOMEM)
FAULTY(int, open64, (const char* path, int flags, mode_t mode), (path, flags, mode), -1, EACCES, EMFILE)
FAULTY(int, openat, (int at, const char* path, int flags, mode_t mode), (at, path, flags, mode), -1, EACCES, EMFILE,
       EINTR)
FAULTY(int, mkostemp, (char* name, int flags), (name, flags), -1, EACCES, EMFILE, ENOSPC)
FAULTY(std::FILE*, fopen, (const char* path, const char* mode), (path, mode), nullptr, EACCES, EMFILE, ENOMEM, EINTR)
FAULTY(std::FILE*, fopen64, (const char* path, const char* mode), (path, mode), nullptr, EACCES, EMFILE)
FAULTY(int, access, (const char* path, int mode), (path, mode), -1, EACCES, EIO)
FAULTY(int, faccessat, (int at, const char* path, int mode, int flags), (at, path, mode, flags), -1, EACCES, EROFS, EIO)
FAULTY(int, stat, (const char* path, struct stat* status), (path, status), -1, EACCES, ENOENT, EIO)
FAULTY(int, stat64, (const char* path, struct stat* status), (path, status), -1, EACCES, EIO)
FAULTY(int, lstat, (const char* path, struct stat* status), (path, status), -1, EACCES, EIO)
FAULTY(int, lstat64, (const char* path, struct stat* status), (path, status), -1, EACCES, EIO)
FAULTY(int, fstatat, (int at, const char* path, struct stat* status, int flags), (at, path, status, flags), -1, EACCES,
       EIO)
FAULTY(int, fstatat64, (int at, const char* path, struct stat* status, int flags), (at, path, status, flags), -1,
       EACCES, EIO)
FAULTY(int, mkdir, (const char* path, mode_t mode), (path, mode), -1, EACCES, ENOSPC, EROFS)
FAULTY(int, rename, (const char* from, const char* to), (from, to), -1, EACCES, ENOSPC, EIO)
FAULTY(int, renameat2, (int at, const char* from, int there, const char* to, unsigned flags),
       (at, from, there, to, flags), -1, EACCES, ENOSPC, EINVAL, EIO)
FAULTY(int, linkat, (int at, const char* from, int there, const char* to, int flags), (at, from, there, to, flags), -1,
       EACCES, ENOSPC, EIO)
FAULTY(int, rmdir, (const char* path), (path), -1, EACCES, EBUSY)
FAULTY(int, remove, (const char* path), (path), -1, EACCES, EBUSY)
FAULTY(int, unlink, (const char* path), (path), -1, EACCES, EBUSY)
FAULTY(int, symlink, (const char* text, const char* path), (text, path), -1, EACCES, ENOSPC)
FAULTY(ssize_t, readlink, (const char* path, char* text, std::size_t size), (path, text, size), -1, EACCES, EIO)
FAULTY(ssize_t, readlinkat, (int at, const char* path, char* text, std::size_t size), (at, path, text, size), -1,
       EACCES, EIO)
FAULTY(char*, realpath, (const char* path, char* resolved), (path, resolved), nullptr, EACCES, ENOMEM)
FAULTY(char*, getcwd, (char* path, std::size_t size), (path, size), nullptr, ENOENT)
FAULTY(int, statfs, (const char* path, void* status), (path, status), -1, EACCES, EIO)
FAULTY(DIR*, opendir, (const char* path), (path), nullptr, EACCES, EMFILE)
FAULTY(struct dirent*, readdir, (DIR * folder), (folder), nullptr, EIO)

// Open files.
FAULTY(ssize_t, pread, (int file, void* to, std::size_t size, off_t at), (file, to, size, at), -1, EIO)
FAULTY(ssize_t, writev, (int file, const void* pieces, int count), (file, pieces, count), -1, EIO, ENOSPC)
FAULTY(off_t, lseek, (int file, off_t to, int from), (file, to, from), -1, ESPIPE)
FAULTY(int, fstat, (int file, struct stat* status), (file, status), -1, EIO)
FAULTY(int, fstat64, (int file, struct stat* status), (file, status), -1, EIO)
FAULTY(int, fchmod, (int file, mode_t mode), (file, mode), -1, EPERM, EIO)
FAULTY(int, fchown, (int file, uid_t user, gid_t group), (file, user, group), -1, EPERM, EIO)
FAULTY(int, fsync, (int file), (file), -1, EIO, ENOSPC, EINVAL, EINTR)
FAULTY(int, flock, (int file, int operation), (file, operation), -1, EWOULDBLOCK, ENOLCK, EINTR)
FAULTY(int, fcntl, (int file, int command, void* argument), (file, command, argument), -1, EMFILE)
FAULTY(int, fcntl64, (int file, int command, void* argument), (file, command, argument), -1, EMFILE)
FAULTY(off_t, ftello, (std::FILE * file), (file), -1, ESPIPE)
FAULTY(int, fflush, (std::FILE * file), (file), -1, EIO)
FAULTY(std::size_t, fwrite, (const void* from, std::size_t size, std::size_t count, std::FILE* file),
       (from, size, count, file), 0, EIO)

// Half of what is wanted is read and written where it is no error: the other half takes another call.
constexpr int half = -1;

extern "C" ssize_t faulty_read(int file, void* to, std::size_t size) asm("read");
extern "C" ssize_t faulty_read(int file, void* to, std::size_t size)
{
    static auto* const usual = systems<ssize_t(int, void*, std::size_t)>("read");
    const int error = errorOf("read", {EIO, half, EINTR});
    if (error > 0) {
        errno = error;
        return -1;
    }
    return usual(file, to, error == half ? (size + 1) / 2 : size);
}

extern "C" ssize_t faulty_write(int file, const void* from, std::size_t size) asm("write");
extern "C" ssize_t faulty_write(int file, const void* from, std::size_t size)
{
    static auto* const usual = systems<ssize_t(int, const void*, std::size_t)>("write");
    const int error = errorOf("write", {EIO, ENOSPC, half, EINTR});
    if (error > 0) {
        errno = error;
        return -1;
    }
    return usual(file, from, error == half ? (size + 1) / 2 : size);
}

// What is not read sets the file's mark for errors, which ferror() tells.
extern "C" std::size_t faulty_fread(void* to, std::size_t size, std::size_t count, std::FILE* file) asm("fread");
extern "C" std::size_t faulty_fread(void* to, std::size_t size, std::size_t count, std::FILE* file)
{
    static auto* const usual = systems<std::size_t(void*, std::size_t, std::size_t, std::FILE*)>("fread");
    if (const int error = errorOf("fread", {EIO, EINTR}); error != 0) {
        file->_flags |= _IO_ERR_SEEN;
        errno = error;
        return 0;
    }
    return usual(to, size, count, file);
}

// A file is closed whatever close() says.
extern "C" int faulty_close(int file) asm("close");
extern "C" int faulty_close(int file)
{
    static auto* const usual = systems<int(int)>("close");
    const int error = errorOf("close", {EIO});
    const int result = usual(file);
    if (error != 0) {
        errno = error;
        return -1;
    }
    return result;
}

extern "C" int faulty_fclose(std::FILE* file) asm("fclose");
extern "C" int faulty_fclose(std::FILE* file)
{
    static auto* const usual = systems<int(std::FILE*)>("fclose");
    const int error = errorOf("fclose", {EIO});
    const int result = usual(file);
    if (error != 0) {
        errno = error;
        return EOF;
    }
    return result;
}

// Memory by the page.
FAULTY(void*, mmap, (void* at, std::size_t size, int protection, int flags, int file, off_t from),
       (at, size, protection, flags, file, from), MAP_FAILED, ENOMEM)
FAULTY(void*, mremap, (void* at, std::size_t before, std::size_t after, int flags, void* to),
       (at, before, after, flags, to), MAP_FAILED, ENOMEM)

// Processes, mounts and time.
FAULTY(pid_t, fork, (), (), -1, EAGAIN, ENOMEM)
FAULTY(pid_t, waitpid, (pid_t process, int* status, int options), (process, status, options), -1, EINTR)
FAULTY(int, pipe2, (int* ends, int flags), (ends, flags), -1, EMFILE)
FAULTY(int, dup2, (int from, int to), (from, to), -1, EMFILE)
FAULTY(int, poll, (struct pollfd * files, nfds_t count, int timeout), (files, count, timeout), -1, EINTR, ENOMEM)
FAULTY(int, unshare, (int flags), (flags), -1, EPERM, ENOSPC)
FAULTY(int, mount, (const char* from, const char* to, const char* kind, unsigned long flags, const void* data),
       (from, to, kind, flags, data), -1, EPERM, ENOMEM)
FAULTY(int, umount2, (const char* place, int flags), (place, flags), -1, EPERM, EBUSY)
FAULTY(int, chdir, (const char* path), (path), -1, EACCES)
FAULTY(int, fchdir, (int folder), (folder), -1, EACCES)
FAULTY(int, chroot, (const char* path), (path), -1, EPERM)
FAULTY(int, setenv, (const char* name, const char* value, int replace), (name, value, replace), -1, ENOMEM)
FAULTY(struct tm*, localtime_r, (const std::time_t* time, struct tm* broken), (time, broken), nullptr, EOVERFLOW)
FAULTY(std::time_t, mktime, (struct tm * broken), (broken), -1, EOVERFLOW)
FAULTY(ssize_t, getrandom, (void* to, std::size_t size, unsigned flags), (to, size, flags), -1, EAGAIN, ENOSYS)
FAULTY(locale_t, newlocale, (int categories, const char* name, locale_t base), (categories, name, base), nullptr,
       ENOENT, ENOMEM)
FAULTY(int, nanosleep, (const timespec* time, timespec* left), (time, left), -1, EINTR)

// No shell could be started, or the command failed.
extern "C" int faulty_system(const char* command) asm("system");
extern "C" int faulty_system(const char* command)
{
    static auto* const usual = systems<int(const char*)>("system");
    constexpr int commandFailed = ECANCELED;
    const int error = errorOf("system", {EAGAIN, commandFailed});
    errno = error;
    return error == 0 ? usual(command) : error == commandFailed ? 1 << 8 : -1;
}

extern "C" int faulty_pthread_create(void* thread, const void* attributes, void* (*start)(void*),
                                     void* argument) asm("pthread_create");
extern "C" int faulty_pthread_create(void* thread, const void* attributes, void* (*start)(void*), void* argument)
{
    static auto* const usual = systems<int(void*, const void*, void* (*)(void*), void*)>("pthread_create");
    const int error = errorOf("pthread_create", {EAGAIN});
    return error != 0 ? error : usual(thread, attributes, start, argument);
}
