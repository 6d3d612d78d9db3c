// Runs a program step by step, from one system call to the next, and kills it before one of them.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

// Who is killed: the program alone, so that what it has started goes on, or its whole process group.
enum class Killed { alone, group };

// Before which system call: from 0, counted over the program with all of its threads and all that it starts, in the
// order in which they come.
struct KillPoint {
    std::size_t call;
    Killed who;
};

struct TracedRun {
    int status = 0;         // exit status; -N when signal N ended the program
    std::size_t calls = 0;  // system calls that were begun
};

// Runs `program` with `arguments` (without the program's own name) and the "NAME=value" lines of `environment` in a
// process group of its own, its standard streams being /dev/null, and waits until it and everything that it has started
// has ended. With a `point`, SIGKILL is sent there, and that system call does nothing any more. A run may have fewer
// calls than the point says: it then ends by itself. Throws std::system_error when the program cannot be traced.
TracedRun runTraced(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                    const std::vector<std::string>& environment, const std::optional<KillPoint>& point);
