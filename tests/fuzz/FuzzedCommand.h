// Command lines made of letters, so that a fuzzer's every change of a letter gives another command or option.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

struct FuzzedCommand {
    std::vector<std::string> words;
    std::vector<int> statuses;  // that it may end with, beside 2: the words are wrong
    bool mayUpdate = false;     // the target
};

// The command that the first letter stands for, with the options of the others. ARCHIVE, INPUT, SECOND, TARGET, OUTPUT
// and NAMES among the words become what `meanings` has for them.
FuzzedCommand commandOf(std::string_view letters, const std::map<std::string, std::string>& meanings);
