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
    TAKEN = 1 << 2,       // for a command that it has no meaning for it changes nothing, and nothing is said of it
};

// What an option's value is, for whoever completes it.
enum class Value {
    OTHER,  // nothing that could be known, or one of its choices
    FILE,
    BOARD_TYPES,  // lists of what the target has
    SERIAL_NUMBERS,
    ELEMENT_NAMES,
    ELEMENT,  // index of an element of the target
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
    Value value = Value::OTHER;
    std::span<const char* const> choices = {};  // all values that it may have, where they are few

    bool isMeantFor(const Command& command) const;
};

// All options, in the order in which help shows them.
std::span<const Option> allOptions();

// The option with this name ("--force") or short form ('v'), or null.
const Option* findOption(std::string_view name);
const Option* findOption(char letter);

}  // namespace TrellanTool
