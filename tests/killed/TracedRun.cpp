#include "TracedRun.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace {

// Whatever the program starts is traced too, and ends with this process.
constexpr unsigned long options = PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK |
                                  PTRACE_O_TRACECLONE | PTRACE_O_TRACEEXEC | PTRACE_O_EXITKILL;

constexpr int systemCallStop = SIGTRAP | 0x80;

std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

// A process that has stopped before it becomes the program.
pid_t start(const std::filesystem::path& program, std::vector<std::string> commandLine,
            std::vector<std::string> environment)
{
    commandLine.insert(commandLine.begin(), program.string());
    const std::vector<char*> words = pointersTo(commandLine);
    const std::vector<char*> variables = pointersTo(environment);
    const pid_t process = ::fork();
    if (process == 0) {
        const int nothing = ::open("/dev/null", O_RDWR);
        for (const int stream : {0, 1, 2}) {
            ::dup2(nothing, stream);
        }
        ::setpgid(0, 0);
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0 || ::raise(SIGSTOP) != 0) {
            ::_exit(126);
        }
        ::execve(program.c_str(), words.data(), variables.data());
        ::_exit(127);
    }
    return process;
}

class Tracer {
public:
    Tracer(pid_t process, const std::optional<KillPoint>& point) : program(process), point(point)
    {
        int status = 0;
        if (::waitpid(program, &status, 0) != program || !WIFSTOPPED(status) ||
            ::ptrace(PTRACE_SETOPTIONS, program, nullptr, options) != 0) {
            throw std::system_error(errno, std::generic_category(), "trace a program");
        }
        goOn(program, 0);
    }

    TracedRun run()
    {
        int status = 0;
        for (pid_t stopped = 0; (stopped = ::waitpid(-1, &status, __WALL)) > 0;) {
            if (WIFSTOPPED(status)) {
                handleStop(stopped, status);
            } else if (stopped == program) {
                done.status = WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
            }
        }
        return done;
    }

private:
    void handleStop(pid_t stopped, int status)
    {
        const int signal = WSTOPSIG(status);
        const bool isEvent = status >> 16 != 0;
        if (signal == systemCallStop) {
            countCall(stopped);
        }
        // What has just been started stops by SIGSTOP of itself; nobody else sends that here.
        const bool isSent = signal != systemCallStop && !isEvent && signal != SIGSTOP;
        goOn(stopped, isSent ? signal : 0);
    }

    void countCall(pid_t stopped)
    {
        __ptrace_syscall_info info = {};
        if (::ptrace(PTRACE_GET_SYSCALL_INFO, stopped, sizeof info, &info) <= 0 ||
            info.op != PTRACE_SYSCALL_INFO_ENTRY) {
            return;
        }
        if (point && point->call == done.calls) {
            ::kill(point->who == Killed::group ? -program : program, SIGKILL);
        }
        ++done.calls;
    }

    // What has been killed meanwhile is gone: that is no fault.
    static void goOn(pid_t stopped, int signal) { ::ptrace(PTRACE_SYSCALL, stopped, nullptr, signal); }

    const pid_t program;
    const std::optional<KillPoint> point;
    TracedRun done;
};

}  // namespace

TracedRun runTraced(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                    const std::vector<std::string>& environment, const std::optional<KillPoint>& point)
{
    return Tracer(start(program, arguments, environment), point).run();
}
