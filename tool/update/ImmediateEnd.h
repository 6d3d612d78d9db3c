// Before the target is locked, a signal that stops the update ends the process at once.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace TrellanTool {

// What a process has to say when it ends, prepared beforehand: a signal's handler can make no texts.
struct LastWords {
    std::string errors;  // for standard error
    std::string output;  // for standard output
};

class ImmediateEnd {
public:
    // From now on each of the signals writes its words, which `wordsFor` is asked for now, past all buffers, and ends
    // the process with the exit status 128 + its number. One at a time.
    ImmediateEnd(const std::vector<int>& signals, const std::function<LastWords(int signal)>& wordsFor);

    // Puts back what the signals did before, except where that was changed meanwhile.
    ~ImmediateEnd();
    ImmediateEnd(const ImmediateEnd&) = delete;
    ImmediateEnd& operator=(const ImmediateEnd&) = delete;

private:
    const std::vector<int> signals;
};

}  // namespace TrellanTool
