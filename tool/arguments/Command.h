// The tool's commands: one line of a table for each.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace TrellanTool {

struct Arguments;
struct Streams;

// What a command does, as far as it decides which options have a meaning for it.
enum Trait : unsigned {
    LIBRARY = 1 << 0,   // works with the library
    ARCHIVE = 1 << 1,   // has the library read an archive's description
    TARGET = 1 << 2,    // reads the target
    ELEMENTS = 1 << 3,  // is about the target's elements, those that the filters select
    FILES = 1 << 4,     // gives the elements update files
    UPDATES = 1 << 5,   // updates the target
    DOCUMENT = 1 << 6,  // has a JSON document
    CHECKS = 1 << 7,    // checks an archive without the target
    RESULT = 1 << 8,    // has a result that can be written to a file
    EXPLAINS = 1 << 9,  // explains the matching
    TELLS = 1 << 10,    // may end with whether there is something to update
    HIDDEN = 1 << 11,   // is for programs: help does not show it
    COVERS = 1 << 12,   // holds an archive against many targets
};
constexpr unsigned EVERYTHING = ~0u;

// What it means that a command ends with 1, where nothing more can be said.
constexpr const char* failedOrReported = "the command failed, or errors were reported";

// Carries out what is asked for and returns an ExitStatus. May throw what derives from std::exception.
using Action = int(const Arguments& arguments, const Streams& streams);

struct Command {
    const char* name;
    const char* operands;  // as its help shows them: "[COMMAND]" may be left out, of "FILE..." there may be several
    unsigned traits;
    std::uint32_t code;  // for the library (ZoNTrellanUpdater::ZoTCommand)
    Action* action;
    const char* description;
    const char* example;  // what is typed, run in the folder examples/, whose target.json is the target
    const char* failure = failedOrReported;  // what it means that it ends with 1

    bool has(unsigned anyOfTheseTraits) const { return (traits & anyOfTheseTraits) != 0; }
};

// All commands, in the order in which help shows them.
std::span<const Command> allCommands();

// The command with this name, or null.
const Command* findCommand(std::string_view name);

// The command with this name. Throws UsageError where there is none, with the one that may have been meant.
const Command& commandNamed(const std::string& name);

}  // namespace TrellanTool
