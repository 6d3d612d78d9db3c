#include "support/Process.h"

#include <fcntl.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <cerrno>
#include <system_error>

#include "support/TempDir.h"
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
        if (const char* const value = ::getenv(name)) {
            environment.push_back(std::string(name) + "=" + value);
        }
    }
    environment.insert(environment.end(), wanted.begin(), wanted.end());
    return environment;
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

ProcessResult runProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         const std::filesystem::path& folder, const std::vector<std::string>& environment)
{
    const TempDir outputs;
    const std::filesystem::path output = outputs.path() / "output";
    const std::filesystem::path errors = outputs.path() / "errors";
    FileActions actions;
    actions.changeFolder(folder);
    actions.open(0, "/dev/null", O_RDONLY);
    actions.open(1, output, O_WRONLY | O_CREAT | O_TRUNC);
    actions.open(2, errors, O_WRONLY | O_CREAT | O_TRUNC);

    std::vector<std::string> commandLine = arguments;
    commandLine.insert(commandLine.begin(), program.string());
    std::vector<std::string> variables = completeEnvironment(environment);
    pid_t process = 0;
    const int error = ::posix_spawn(&process, program.c_str(), actions.get(), nullptr, pointersTo(commandLine).data(),
                                    pointersTo(variables).data());
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), program.string());
    }
    const int status = waitFor(process);
    return {status, readText(output), readText(errors)};
}
