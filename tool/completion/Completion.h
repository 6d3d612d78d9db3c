// What a word of a command line may become that is being typed.
#pragma once

#include <string>
#include <vector>

#include "tool/completion/Candidate.h"

namespace TrellanTool {

struct Completion {
    // What the word is; of files and folders, which the shell knows, there are no candidates.
    enum Kind { WORDS, LIST, FILES, FOLDERS };

    Kind kind = WORDS;
    std::vector<Candidate> candidates;
};

// What the last of `words`, the words behind the tool's name, may become. Without any, what may come first. Reads the
// target that --target names among them, and no other. May throw what derives from std::exception.
Completion completionOf(const std::vector<std::string>& words);

}  // namespace TrellanTool
