// The tool's options: one line of a table for each, and a field of Arguments.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace TrellanTool {

struct Arguments;
struct Command;

// How an option behaves beside others.
enum Manner : unsigned {
    NOTED = 1 << 0,  // for a command that it has no meaning for it is noted and changes nothing; else it is refused
    REPEATABLE = 1 << 1,  // may be given several times
};

struct Option {
    const char* name;         // with its dashes
    char letter;              // of its short form, which flags alone have; 0: it has none
    const char* placeholder;  // for its value; null: a flag, which has none
    // Puts the value into its field; throws UsageError where it is none, and std::exception.
    void (*take)(Arguments& arguments, const Option& option, const std::string& value);
    unsigned meaning;  // traits (Command.h) of the commands that it has a meaning for
    unsigned manners;
    const char* description;

    bool isMeantFor(const Command& command) const;
};

// All options, in the order in which help shows them.
std::span<const Option> allOptions();

// The option with this name ("--force") or short form ('v'), or null.
const Option* findOption(std::string_view name);
const Option* findOption(char letter);

}  // namespace TrellanTool
