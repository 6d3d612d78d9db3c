// Programs print into files, which never fill up as a pipe does, and can be read while the program runs.
#include "support/Process.h"

#include <fcntl.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <system_error>
#include <utility>

#include "support/TextFile.h"

namespace {

class FileActions {
public:
    FileActions() { posix_spawn_file_actions_init(&actions); }
    ~FileActions() { posix_spawn_file_actions_destroy(&actions); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    void changeFolder(const std::filesystem::path& folder)
    {
        posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    }

    void open(int descriptor, const std::filesystem::path& file, int flags)
    {
        posix_spawn_file_actions_addopen(&actions, descriptor, file.c_str(), flags, 0600);
    }

    const posix_spawn_file_actions_t* get() const { return &actions; }

private:
    posix_spawn_file_actions_t actions;
};

// Of a process in the group of the test, or in one of its own.
class Attributes {
public:
    explicit Attributes(bool ownGroup)
    {
        posix_spawnattr_init(&attributes);
        if (!ownGroup) {
            return;
        }
        sigset_t stopping;
        sigemptyset(&stopping);
        for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
            sigaddset(&stopping, signal);
        }
        posix_spawnattr_setsigdefault(&attributes, &stopping);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF);
    }
    ~Attributes() { posix_spawnattr_destroy(&attributes); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    const posix_spawnattr_t* get() const { return &attributes; }

private:
    posix_spawnattr_t attributes;
};

std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> completeEnvironment(const std::vector<std::string>& wanted)
{
    std::vector<std::string> environment;
    for (const char* const name : {"PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS"}) {
        const std::string start = std::string(name) + "=";
        const bool isGiven = std::any_of(wanted.begin(), wanted.end(),
                                         [&](const std::string& variable) { return variable.starts_with(start); });
        if (const char* const value = isGiven ? nullptr : ::getenv(name)) {
            environment.push_back(start + value);
        }
    }
    environment.insert(environment.end(), wanted.begin(), wanted.end());
    return environment;
}

// Its outputs go to the files "output" and "errors" in `outputs`.
pid_t start(const std::filesystem::path& program, std::vector<std::string> commandLine,
            const std::filesystem::path& folder, const std::vector<std::string>& environment, const TempDir& outputs,
            bool ownGroup)
{
    FileActions actions;
    actions.changeFolder(folder);
    actions.open(0, "/dev/null", O_RDONLY);
    actions.open(1, outputs.path() / "output", O_WRONLY | O_CREAT | O_TRUNC);
    actions.open(2, outputs.path() / "errors", O_WRONLY | O_CREAT | O_TRUNC);
    commandLine.insert(commandLine.begin(), program.string());
    std::vector<std::string> variables = completeEnvironment(environment);
    pid_t process = 0;
    const int error = ::posix_spawn(&process, program.c_str(), actions.get(), Attributes(ownGroup).get(),
                                    pointersTo(commandLine).data(), pointersTo(variables).data());
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), program.string());
    }
    return process;
}

// Of the process that /proc tells of in this folder; 0 where it is gone.
pid_t parentOf(const std::filesystem::path& folder)
{
    std::ifstream file(folder / "stat");
    std::string line;
    std::getline(file, line);
    const std::size_t behindName = line.rfind(") ");
    return behindName == std::string::npos ? 0 : std::atoi(line.c_str() + behindName + 4);
}

int waitFor(pid_t process)
{
    int status = 0;
    while (::waitpid(process, &status, 0) < 0) {
        if (errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "waitpid");
        }
    }
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

RunningProcess::RunningProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                               const std::filesystem::path& folder, const std::vector<std::string>& environment)
    : process(start(program, arguments, folder, environment, outputs, true))
{
}

RunningProcess::~RunningProcess()
{
    if (process != 0) {
        sendToGroup(SIGKILL);
        ::waitpid(process, nullptr, 0);
    }
}

void RunningProcess::send(int signal) const
{
    ::kill(process, signal);
}

void RunningProcess::sendToGroup(int signal) const
{
    ::kill(-process, signal);
}

std::vector<pid_t> RunningProcess::children() const
{
    std::vector<pid_t> found;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        if (const pid_t other = std::atoi(entry.path().filename().c_str());
            other != 0 && parentOf(entry.path()) == process) {
            found.push_back(other);
        }
    }
    return found;
}

std::string RunningProcess::errorsSoFar() const
{
    return readText(outputs.path() / "errors");
}

ProcessResult RunningProcess::wait()
{
    const int status = waitFor(std::exchange(process, 0));
    return {status, readText(outputs.path() / "output"), readText(outputs.path() / "errors")};
}

ProcessResult runProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         const std::filesystem::path& folder, const std::vector<std::string>& environment)
{
    const TempDir outputs;
    const int status = waitFor(start(program, arguments, folder, environment, outputs, false));
    return {status, readText(outputs.path() / "output"), readText(outputs.path() / "errors")};
}
