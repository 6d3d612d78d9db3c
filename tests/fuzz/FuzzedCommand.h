// Command lines made of letters, so that a fuzzer's every change of a letter gives another command or option.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

// The words of the command that the first letter stands for, and of the options of the others. ARCHIVE, INPUT, SECOND,
// TARGET, OUTPUT and NAMES among them become what `meanings` has for them.
std::vector<std::string> commandOf(std::string_view letters, const std::map<std::string, std::string>& meanings);
