// Help, made of the tables of commands and options.
#pragma once

#include <string>

namespace TrellanTool {

struct Command;

// What the tool does, and its commands.
std::string toolHelp();

// What a command does, and the options that have a meaning for it.
std::string commandHelp(const Command& command);

// For a command line without a command: the commands and one example, without a line end.
std::string commandsAndExample();

}  // namespace TrellanTool
