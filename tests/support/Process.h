// Runs other programs and takes what they print.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/TempDir.h"

struct ProcessResult {
    int status = 0;      // exit status; -N when signal N ended it
    std::string output;  // all of its standard output
    std::string errors;  // all of its standard error
};

// A program that runs beside the test, in a process group of its own, in which SIGHUP, SIGINT and SIGTERM do what they
// do by default.
class RunningProcess {
public:
    // Starts it as runProcess() does.
    RunningProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                   const std::filesystem::path& folder, const std::vector<std::string>& environment = {});

    // Kills it, unless it has been waited for.
    ~RunningProcess();
    RunningProcess(const RunningProcess&) = delete;
    RunningProcess& operator=(const RunningProcess&) = delete;

    // Sends the signal to the process, or to its group.
    void send(int signal) const;
    void sendToGroup(int signal) const;

    // The processes that it has started and that have not been waited for yet.
    std::vector<pid_t> children() const;

    // What it has printed on standard error up to now.
    std::string errorsSoFar() const;

    // Waits for its end.
    ProcessResult wait();

private:
    TempDir outputs;
    pid_t process = 0;  // 0: it has been waited for
};

// Runs `program` with `arguments` (without the program's own name) in `folder` and waits for its end. Standard input is
// empty. The environment holds PATH, the sanitizers' options when they are set, and the "NAME=value" lines of
// `environment`. Throws std::system_error when the program cannot be started.
ProcessResult runProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         const std::filesystem::path& folder, const std::vector<std::string>& environment = {});
