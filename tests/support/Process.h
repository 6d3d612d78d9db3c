// Runs another program and takes what it prints.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

struct ProcessResult {
    int status = 0;      // exit status; -N when signal N ended it
    std::string output;  // all of its standard output
    std::string errors;  // all of its standard error
};

// Runs `program` with `arguments` (without the program's own name) in `folder` and waits for its end. Standard input is
// empty. The environment holds PATH, the sanitizers' options when they are set, and the "NAME=value" lines of
// `environment`. Throws std::system_error when the program cannot be started.
ProcessResult runProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         const std::filesystem::path& folder, const std::vector<std::string>& environment = {});
