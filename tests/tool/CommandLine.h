// Command lines written as lists of words, parsed or run in process.
#pragma once

#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include "tool/Arguments.h"
#include "tool/Run.h"

// The words after the tool's own name, as main() is given them.
class CommandLine {
public:
    CommandLine(std::initializer_list<std::string> words) : texts(words)
    {
        pointers.push_back("trellan-update");
        for (const std::string& text : texts) {
            pointers.push_back(text.c_str());
        }
    }
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    int count() const { return static_cast<int>(pointers.size()); }
    const char* const* words() const { return pointers.data(); }

private:
    std::vector<std::string> texts;
    std::vector<const char*> pointers;
};

// What the tool's run function gave.
struct RunResult {
    int status = 0;
    std::string out;  // what it wrote to its output stream (not the library's text)
    std::string err;
};

inline TrellanTool::Arguments parsed(std::initializer_list<std::string> words)
{
    const CommandLine line(words);
    return TrellanTool::parseArguments(line.count(), line.words());
}

inline RunResult ran(std::initializer_list<std::string> words)
{
    const CommandLine line(words);
    std::ostringstream out;
    std::ostringstream err;
    const int status = TrellanTool::run(line.count(), line.words(), out, err);
    return {status, out.str(), err.str()};
}
