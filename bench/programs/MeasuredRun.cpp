// Runs a program and tells what that took. A process of its own, since a child's peak of memory counts from what its
// parent has when it is started, and a benchmark has much.
//
//   measured-run PROGRAM [ARGUMENT]...
//
// The program's standard output goes to /dev/null. Prints processor time in seconds and the most resident memory in
// bytes, both of the program and the processes that it has waited for, and its calls of the system that write.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace {

double secondsOf(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

// Of a process that has ended and was not waited for.
long writesOf(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/io");
    long value = -1;
    for (std::string name; file >> name >> value;) {
        if (name == "syscw:") {
            return value;
        }
    }
    return -1;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fputs("Usage: measured-run PROGRAM [ARGUMENT]...\n", stderr);
        return 2;
    }
    const pid_t process = ::fork();
    if (process == 0) {
        ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
        ::execv(argv[1], argv + 1);
        ::_exit(127);
    }
    siginfo_t ended;
    ::waitid(P_PID, static_cast<id_t>(process), &ended, WEXITED | WNOWAIT);
    const long writes = writesOf(process);
    int status = 0;
    rusage used;
    if (::wait4(process, &status, 0, &used) != process || status != 0) {
        std::fprintf(stderr, "measured-run: %s has failed\n", argv[1]);
        return 1;
    }
    std::printf("%.6f %ld %ld\n", secondsOf(used.ru_utime) + secondsOf(used.ru_stime), used.ru_maxrss * 1024, writes);
    return 0;
}
