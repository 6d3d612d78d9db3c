// Command lines written as lists of words, parsed or run in process.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "tool/Run.h"
#include "tool/arguments/Arguments.h"

// What the tool's run function gave.
struct RunResult {
    int status = 0;
    std::string out;  // what it wrote to its output stream
    std::string err;  // what it wrote to its error stream
};

inline TrellanTool::Arguments parsed(const std::vector<std::string>& words)
{
    return TrellanTool::parseArguments(words);
}

// Runs the tool with the words that stand behind its own name.
inline RunResult ran(const std::vector<std::string>& words)
{
    std::vector<const char*> pointers = {"trellan-update"};
    for (const std::string& word : words) {
        pointers.push_back(word.c_str());
    }
    std::ostringstream out;
    std::ostringstream err;
    const int status = TrellanTool::run(static_cast<int>(pointers.size()), pointers.data(), out, err);
    return {status, out.str(), err.str()};
}
