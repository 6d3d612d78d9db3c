#include "simulation/base/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <system_error>

#include "simulation/base/Uninterrupted.h"

namespace TrellanSimulation {

namespace {

template <class Result>
Result check(Result result)
{
    if (result < 0) {
        throw FileFault(std::generic_category().message(errno));
    }
    return result;
}

// Without O_NONBLOCK, opening a pipe would wait for a writer.
int openForReading(const std::filesystem::path& path)
{
    if (path.native().find('\0') != std::string::npos) {
        throw FileFault("its name holds a NUL character");  // the system would take it for the end of the name
    }
    return check(uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
}

}  // namespace

RegularFile::RegularFile(const std::filesystem::path& path) : file(openForReading(path))
{
    const auto now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    struct stat status = {};
    check(::fstat(file.get(), &status));
    if (S_ISDIR(status.st_mode)) {
        throw FileFault(std::generic_category().message(EISDIR));
    }
    if (!S_ISREG(status.st_mode)) {
        throw FileFault("not a regular file");
    }
    openedAs = FileStamp(status, now);
    bytes = static_cast<std::uint64_t>(status.st_size);
}

std::size_t RegularFile::read(char* buffer, std::size_t length)
{
    return static_cast<std::size_t>(check(uninterrupted([&] { return ::read(file.get(), buffer, length); })));
}

void RegularFile::rewind()
{
    check(::lseek(file.get(), 0, SEEK_SET));
}

}  // namespace TrellanSimulation
