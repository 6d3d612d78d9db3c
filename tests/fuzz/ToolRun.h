// Runs of the tool in process.
#pragma once

#include <string>
#include <vector>

struct ToolRun {
    int status = 0;
    std::string out;
    std::string err;
};

// Runs the tool with the words that stand behind its own name. Holds what holds for every run: --json gives one
// document, with the right first members and with an error just where the run was refused, and nothing is left over.
ToolRun runTool(const std::vector<std::string>& words);
